#pragma once

#include "base/async/CancellationToken.h"
#include "base/async/Clock.h"
#include "base/common/ReferenceDate.h"
#include "core/telemetry/RecordingMetadata.h"
#include "core/telemetry/RecordingTelemetry.h"
#include "core/telemetry/RecordingTelemetryJournal.h"

#include <QCoroTask>

#include <memory>
#include <optional>

namespace kestrum {

// What the recording coordinator asks of the client of the game's local service (LeagueLiveClient).
// Every operation runs on the main thread and suspends at its requests; none of them fails.
class RecordingLiveClient {
  public:
    virtual ~RecordingLiveClient() = default;

    // True when the running game is a replay; false for a live game, and whenever the service gives no
    // proof of a replay. Asks the local service, not the process.
    virtual QCoro::Task<bool> classifyGameProcess() = 0;

    // Polls game mode, champion and position, up to `attempts` times `delay` apart. Absent after the
    // last attempt, or at once when `token` is cancelled.
    virtual QCoro::Task<std::optional<RecordingMetadata>> fetchRecordingMetadata(int attempts,
                                                                                 Clock::Duration delay,
                                                                                 CancellationToken token) = 0;

    // Collects events and scoreboards on the movie's time axis, whose zero is `startDate` (the wall-clock
    // date of the first video frame), until `token` is cancelled; then yields what it holds. What it
    // gathers also goes to `journal` as it comes, when there is one.
    virtual QCoro::Task<RecordingTelemetry> collectTelemetry(
        ReferenceDate startDate, std::shared_ptr<RecordingTelemetryJournal> journal,
        CancellationToken token) = 0;
};

}  // namespace kestrum
