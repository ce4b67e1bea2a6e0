#pragma once

#include "platform/ports/Subscription.h"

namespace kestrum {

// A subscription to a Workspace notice: the ports' common Subscription, under the name the workspace's
// users know.
using WorkspaceSubscription = Subscription;

}  // namespace kestrum
