#pragma once

#include "base/log/SystemLog.h"

#include <memory>

namespace kestrum {

// Makes the platform's system log the capture log's system sink for as long as it lives, and on its
// end removes it and lets the queued file lines land. The recording side holds it as its first member
// after the adapters, so that everything made after it, the folder store's launch-time errors first
// ("Could not migrate the recordings folder to Kestrum: ...", "Could not restore recordings folder:
// ..."), reaches the system log too and not the file alone. Main thread.
class CaptureSystemLogInstallation {
  public:
    explicit CaptureSystemLogInstallation(std::shared_ptr<SystemLog> systemLog);
    ~CaptureSystemLogInstallation();
    CaptureSystemLogInstallation(const CaptureSystemLogInstallation&) = delete;
    CaptureSystemLogInstallation& operator=(const CaptureSystemLogInstallation&) = delete;
};

}  // namespace kestrum
