#include "base/async/SerialQueueTimer.h"

#include <utility>

namespace kestrum {

SerialQueueTimer::SerialQueueTimer(SerialQueueTimer&& other) noexcept
    : canceller_(std::exchange(other.canceller_, nullptr)) {}

SerialQueueTimer& SerialQueueTimer::operator=(SerialQueueTimer&& other) noexcept {
    if (this != &other) {
        cancel();
        canceller_ = std::exchange(other.canceller_, nullptr);
    }
    return *this;
}

SerialQueueTimer::~SerialQueueTimer() {
    cancel();
}

void SerialQueueTimer::cancel() {
    if (const std::function<void()> canceller = std::exchange(canceller_, nullptr)) canceller();
}

}  // namespace kestrum
