#pragma once

#include "base/common/ReferenceDate.h"
#include "core/telemetry/RecordingEvent.h"
#include "core/telemetry/RecordingMetadata.h"
#include "core/telemetry/RecordingScoreboardSnapshot.h"
#include "core/telemetry/RecordingTelemetryJournal.h"

#include <QCoroTask>

#include <memory>
#include <optional>
#include <vector>

namespace kestrum {

// What the recording coordinator asks of the capture pipeline (GameCapturer). Both operations run on
// the main thread; neither fails: a failure has been logged by the capturer itself.
class RecordingCapturer {
  public:
    virtual ~RecordingCapturer() = default;

    // Finds the game's window, starts the stream and the movie writer, and yields the wall-clock date of
    // the movie's first video frame; absent when the start failed. The coordinator never cancels it.
    virtual QCoro::Task<std::optional<ReferenceDate>> startCapture() = 0;

    // Stops the capture, finalises the movie and hands it to the save path with the metadata, events and
    // scoreboard. Returns when the movie is saved, or given up. Returns at once when no capture ran.
    virtual QCoro::Task<void> finishCapture(std::optional<RecordingMetadata> metadata,
                                            std::vector<RecordingEvent> events,
                                            std::vector<RecordingScoreboardSnapshot> scoreboard) = 0;

    // The telemetry journal of the recording in progress, which the collection and the metadata are
    // appended to; null when there is none (no capture runs, or the journal could not be made).
    virtual std::shared_ptr<RecordingTelemetryJournal> telemetryJournal() const { return nullptr; }
};

}  // namespace kestrum
