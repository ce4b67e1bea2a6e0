#include "ScriptedRecordingCapturer.h"

#include <QCoroSignal>

namespace kestrum::test {

QCoro::Task<std::optional<ReferenceDate>> ScriptedRecordingCapturer::startCapture() {
    ++startCount_;
    if (!holdStarts_) co_return startResult_;
    ++suspendedStarts_;
    co_await qCoro(this, &ScriptedRecordingCapturer::startsReleased);
    --suspendedStarts_;
    co_return releasedResult_;
}

QCoro::Task<void> ScriptedRecordingCapturer::finishCapture(
    std::optional<RecordingMetadata> metadata, std::vector<RecordingEvent> events,
    std::vector<RecordingScoreboardSnapshot> scoreboard) {
    finishCalls_.push_back({std::move(metadata), std::move(events), std::move(scoreboard)});
    if (holdFinishes_) {
        ++suspendedFinishes_;
        co_await qCoro(this, &ScriptedRecordingCapturer::finishesReleased);
        --suspendedFinishes_;
    }
    ++completedFinishes_;
}

void ScriptedRecordingCapturer::releaseStarts(std::optional<ReferenceDate> result) {
    holdStarts_ = false;
    releasedResult_ = result;
    emit startsReleased();
}

void ScriptedRecordingCapturer::releaseFinishes() {
    holdFinishes_ = false;
    emit finishesReleased();
}

}  // namespace kestrum::test
