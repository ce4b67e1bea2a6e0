#pragma once

#include "core/recording/RecordingCapturer.h"
#include "platform/ports/SessionEndInhibitor.h"

namespace kestrum {

// Keeps the system from shutting down while a recording runs: stands between the coordinator and the
// capture pipeline, and holds the session-end hold while any capture is starting, running or being
// finished. It is taken when a capture starts and given back when nothing is left: the last movie is
// finalised and saved (or given up), or the only start failed. A new capture may start while the
// previous one is still being finalised; the hold then lasts until both have ended.
//
// Threads: main thread, like the coordinator's calls. The capturer and the inhibitor must outlive it.
class SessionEndInhibitingCapturer final : public RecordingCapturer {
  public:
    SessionEndInhibitingCapturer(RecordingCapturer& capturer, SessionEndInhibitor& inhibitor)
        : capturer_(capturer), inhibitor_(inhibitor) {}

    QCoro::Task<std::optional<ReferenceDate>> startCapture() override;
    QCoro::Task<void> finishCapture(std::optional<RecordingMetadata> metadata,
                                    std::vector<RecordingEvent> events,
                                    std::vector<RecordingScoreboardSnapshot> scoreboard) override;

    // The wrapped capturer's: what the collection gathers reaches the journal beside its movie.
    std::shared_ptr<RecordingTelemetryJournal> telemetryJournal() const override {
        return capturer_.telemetryJournal();
    }

    // Whether any capture is starting, running or finishing. Main thread.
    bool hasActiveCapture() const { return startingCaptures_ + startedCaptures_ + finishingCaptures_ > 0; }

  private:
    void updateHold();

    RecordingCapturer& capturer_;
    SessionEndInhibitor& inhibitor_;
    // Main thread. A finish takes one started capture, if any, and counts itself until it returns, so that
    // a finish after a failed start never gives back the hold of a movie still being finalised.
    int startingCaptures_ = 0;
    int startedCaptures_ = 0;
    int finishingCaptures_ = 0;
};

}  // namespace kestrum
