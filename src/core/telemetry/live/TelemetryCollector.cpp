#include "core/telemetry/live/TelemetryCollector.h"

#include "core/telemetry/live/LeagueLiveClient.h"
#include "core/telemetry/vocabulary/EventConversion.h"

#include <algorithm>

namespace kestrum {

TelemetryCollector::TelemetryCollector(LeagueLiveClient& client, Clock& clock, WallClock wallClock,
                                       std::shared_ptr<RecordingTelemetryJournal> journal)
    : client_(client), clock_(clock), wallClock_(std::move(wallClock)), journal_(std::move(journal)) {}

QCoro::Task<RecordingTelemetry> TelemetryCollector::run(ReferenceDate startDate, CancellationToken token) {
    while (!token.isCancelled()) {
        co_await pass(startDate);
        // A cancelled sleep only ends the pause early; the loop head sees the cancellation.
        co_await clock_.sleep(kPassPause, token);
    }
    co_return result();
}

QCoro::Task<void> TelemetryCollector::pass(ReferenceDate startDate) {
    if (!activePlayerName_) activePlayerName_ = co_await client_.fetchActivePlayerName();

    // Both requests run at once; `now` is taken the moment the statistics arrive, so it belongs to the
    // gameTime of that answer however long the player list takes.
    auto statsRequest = client_.fetchGameStats();
    auto playersRequest = client_.fetchPlayerList();
    const std::optional<GameStats> stats = co_await statsRequest;
    const ReferenceDate now = wallClock_();
    const std::vector<RecordingScoreboardPlayer> players =
        (co_await playersRequest).value_or(std::vector<RecordingScoreboardPlayer>{});
    if (!stats) co_return;

    const double elapsedSeconds = now.secondsSince(startDate);
    if (auto snapshot = snapshotRule_.offer(elapsedSeconds, stats->gameTime, players)) {
        if (journal_) journal_->appendSnapshot(*snapshot);
        scoreboard_.push_back(std::move(*snapshot));
    }

    const ReferenceDate fetchDate = wallClock_();
    if (nextEventFetchDate_ && fetchDate < *nextEventFetchDate_) co_return;
    const std::optional<std::vector<LiveEvent>> feed = co_await client_.fetchEventData();
    nextEventFetchDate_ = ReferenceDate{wallClock_().secondsSince2001 + kEventFetchIntervalSeconds};
    if (feed) addEvents(*feed, players, elapsedSeconds, stats->gameTime);
}

void TelemetryCollector::addEvents(const std::vector<LiveEvent>& feed,
                                   const std::vector<RecordingScoreboardPlayer>& players,
                                   double elapsedSeconds, double gameTimeSeconds) {
    std::vector<RecordingEvent> added =
        convertEvents(feed, players, activePlayerName_, elapsedSeconds, gameTimeSeconds, knownEventIDs_);
    if (journal_) journal_->appendEvents(added);
    for (auto& event : added) {
        // The first conversion of an id stands for good.
        knownEventIDs_.insert(event.id);
        eventsByID_.try_emplace(event.id, std::move(event));
    }
}

RecordingTelemetry TelemetryCollector::result() const {
    RecordingTelemetry telemetry;
    telemetry.events.reserve(eventsByID_.size());
    for (const auto& [id, event] : eventsByID_) telemetry.events.push_back(event);
    std::stable_sort(
        telemetry.events.begin(), telemetry.events.end(),
        [](const RecordingEvent& a, const RecordingEvent& b) { return a.videoTime < b.videoTime; });
    telemetry.scoreboard = scoreboard_;
    return telemetry;
}

}  // namespace kestrum
