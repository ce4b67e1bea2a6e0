#include "app/CaptureSystemLogInstallation.h"

#include "base/log/CaptureLog.h"

#include <utility>

namespace kestrum {

CaptureSystemLogInstallation::CaptureSystemLogInstallation(std::shared_ptr<SystemLog> systemLog) {
    installCaptureSystemLog(std::move(systemLog));
}

CaptureSystemLogInstallation::~CaptureSystemLogInstallation() {
    installCaptureSystemLog(nullptr);
    waitForCaptureLogWrites();
}

}  // namespace kestrum
