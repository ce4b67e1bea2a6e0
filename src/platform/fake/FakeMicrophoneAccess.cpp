#include "platform/fake/FakeMicrophoneAccess.h"

#include <QCoroSignal>

namespace kestrum {

QCoro::Task<bool> FakeMicrophoneAccess::request() {
    ++requestCount_;
    requestOpen_ = true;
    const std::optional<bool> granted = co_await qCoro(this, &FakeMicrophoneAccess::answered);
    co_return granted.value_or(false);
}

void FakeMicrophoneAccess::answer(bool granted) {
    if (!requestOpen_) return;
    requestOpen_ = false;
    status_ = granted ? Status::authorized : Status::denied;
    emit answered(granted);
}

}  // namespace kestrum
