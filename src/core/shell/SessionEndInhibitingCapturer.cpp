#include "core/shell/SessionEndInhibitingCapturer.h"

#include <utility>

namespace kestrum {

QCoro::Task<std::optional<ReferenceDate>> SessionEndInhibitingCapturer::startCapture() {
    ++startingCaptures_;  // held from before the window search: a start may take a minute
    updateHold();
    QCoro::Task<std::optional<ReferenceDate>> starting = capturer_.startCapture();
    const std::optional<ReferenceDate> startDate = co_await std::move(starting);
    --startingCaptures_;
    if (startDate) ++startedCaptures_;
    updateHold();
    co_return startDate;
}

QCoro::Task<void> SessionEndInhibitingCapturer::finishCapture(
    std::optional<RecordingMetadata> metadata, std::vector<RecordingEvent> events,
    std::vector<RecordingScoreboardSnapshot> scoreboard) {
    if (startedCaptures_ > 0) --startedCaptures_;
    ++finishingCaptures_;
    updateHold();
    QCoro::Task<void> finishing =
        capturer_.finishCapture(std::move(metadata), std::move(events), std::move(scoreboard));
    co_await std::move(finishing);
    --finishingCaptures_;
    updateHold();
}

void SessionEndInhibitingCapturer::updateHold() {
    inhibitor_.setHeld(hasActiveCapture());
}

}  // namespace kestrum
