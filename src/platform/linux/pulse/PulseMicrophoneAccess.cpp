#include "platform/linux/pulse/PulseMicrophoneAccess.h"

#include <algorithm>

namespace kestrum {

MicrophoneAccess::Status PulseMicrophoneAccess::status() const {
    Result<std::shared_ptr<PulseMainLoop>> loop = PulseMainLoop::connect(QStringLiteral("Kestrum"), timeout_);
    if (!loop.ok()) return Status::notDetermined;
    const auto sources = loop.value()->sources(timeout_);
    if (!sources) return Status::notDetermined;
    const bool hasInput =
        std::any_of(sources->begin(), sources->end(),
                    [](const PulseMainLoop::SourceDescription& source) { return !source.isMonitor; });
    return hasInput ? Status::authorized : Status::denied;
}

QCoro::Task<bool> PulseMicrophoneAccess::request() {
    co_return status() == Status::authorized;
}

}  // namespace kestrum
