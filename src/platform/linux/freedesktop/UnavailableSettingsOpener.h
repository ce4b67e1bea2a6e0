#pragma once

#include "platform/ports/SettingsOpener.h"

namespace kestrum {

// The freedesktop.org desktops have no settings pane for screen capture or for an application's microphone
// access (neither is a permission there), so no link is ever opened: the caller shows its own advice
// instead. Main thread.
class UnavailableSettingsOpener final : public SettingsOpener {
  public:
    bool openSettingsLink(const QUrl&) override { return false; }
};

}  // namespace kestrum
