#pragma once

#include "base/async/CancellationToken.h"
#include "base/async/Clock.h"
#include "base/common/ReferenceDate.h"
#include "core/telemetry/RecordingTelemetry.h"
#include "core/telemetry/RecordingTelemetryJournal.h"
#include "core/telemetry/live/ScoreboardSnapshotRule.h"
#include "core/telemetry/vocabulary/EventConversion.h"

#include <QCoroTask>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kestrum {

class LeagueLiveClient;

// One collection run of the game's events and scoreboards on the movie's time axis. Each pass measures
// both clocks at one moment (the wall date right after the statistics arrive, and their gameTime) and
// places the events first seen in it by that offset: videoTime = elapsed - (gameTime - eventTime),
// never below 0. Events are fetched at most once a second and kept by id, first form wins; the
// scoreboard follows ScoreboardSnapshotRule. No failure ends the run; only the token does, after which
// it yields what it holds, events sorted by videoTime. With a journal, every snapshot and the events new
// in each pass are appended to it as soon as they are taken, so that a crash does not lose them.
//
// Thread: main thread; the run's state is touched only by the run itself, between its awaits.
class TelemetryCollector {
  public:
    using WallClock = std::function<ReferenceDate()>;

    static constexpr std::chrono::milliseconds kPassPause{250};
    static constexpr double kEventFetchIntervalSeconds = 1.0;

    // `journal` may be null.
    TelemetryCollector(LeagueLiveClient& client, Clock& clock, WallClock wallClock,
                       std::shared_ptr<RecordingTelemetryJournal> journal = nullptr);

    // Single use: one run per collector.
    QCoro::Task<RecordingTelemetry> run(ReferenceDate startDate, CancellationToken token);

  private:
    QCoro::Task<void> pass(ReferenceDate startDate);
    void addEvents(const std::vector<LiveEvent>& feed, const std::vector<RecordingScoreboardPlayer>& players,
                   double elapsedSeconds, double gameTimeSeconds);
    RecordingTelemetry result() const;

    LeagueLiveClient& client_;
    Clock& clock_;
    WallClock wallClock_;
    std::shared_ptr<RecordingTelemetryJournal> journal_;

    std::optional<std::string> activePlayerName_;
    std::map<std::int64_t, RecordingEvent> eventsByID_;
    KnownEventIDs knownEventIDs_;  // the keys of eventsByID_, in the form the conversion reads
    std::vector<RecordingScoreboardSnapshot> scoreboard_;
    ScoreboardSnapshotRule snapshotRule_;
    std::optional<ReferenceDate> nextEventFetchDate_;  // absent: the distant past
};

}  // namespace kestrum
