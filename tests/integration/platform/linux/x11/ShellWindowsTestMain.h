#pragma once

#include <QString>

namespace kestrum::test {

// Why the managed X display could not be started; empty when the tests run on one.
QString managedDisplayMissing();

}  // namespace kestrum::test
