#pragma once

#include "core/recording/RecordingCapturer.h"

#include <QObject>

#include <optional>
#include <vector>

namespace kestrum::test {

// A capturer whose starts and finishes either answer at once or stay suspended until the test releases
// them, so that a test can drive every interleaving of the coordinator. Main thread only.
class ScriptedRecordingCapturer final : public QObject, public RecordingCapturer {
    Q_OBJECT

  public:
    struct FinishCall {
        std::optional<RecordingMetadata> metadata;
        std::vector<RecordingEvent> events;
        std::vector<RecordingScoreboardSnapshot> scoreboard;
    };

    QCoro::Task<std::optional<ReferenceDate>> startCapture() override;
    QCoro::Task<void> finishCapture(std::optional<RecordingMetadata> metadata,
                                    std::vector<RecordingEvent> events,
                                    std::vector<RecordingScoreboardSnapshot> scoreboard) override;

    // What a start that is not held yields (default: a date, i.e. success).
    void setStartResult(std::optional<ReferenceDate> result) { startResult_ = result; }
    // While held, starts (finishes) suspend until releaseStarts (releaseFinishes).
    void holdStarts(bool hold) { holdStarts_ = hold; }
    void holdFinishes(bool hold) { holdFinishes_ = hold; }
    void releaseStarts(std::optional<ReferenceDate> result);
    void releaseFinishes();

    int startCount() const { return startCount_; }
    int suspendedStarts() const { return suspendedStarts_; }
    int suspendedFinishes() const { return suspendedFinishes_; }
    const std::vector<FinishCall>& finishCalls() const { return finishCalls_; }
    int completedFinishes() const { return completedFinishes_; }

  signals:
    void startsReleased();
    void finishesReleased();

  private:
    std::optional<ReferenceDate> startResult_ = ReferenceDate{800'000'000.0};
    std::optional<ReferenceDate> releasedResult_;
    bool holdStarts_ = false;
    bool holdFinishes_ = false;
    int startCount_ = 0;
    int suspendedStarts_ = 0;
    int suspendedFinishes_ = 0;
    int completedFinishes_ = 0;
    std::vector<FinishCall> finishCalls_;
};

}  // namespace kestrum::test
