#include "core/library/detail/RecordingTimelineSpan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace kestrum {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

RecordingEvent eventAt(const char* name, double videoTime) {
    RecordingEvent event;
    event.name = name;
    event.videoTime = videoTime;
    return event;
}

RecordingScoreboardSnapshot snapshotAt(double videoTime, double gameTime) {
    RecordingScoreboardSnapshot snapshot;
    snapshot.videoTime = videoTime;
    snapshot.gameTime = gameTime;
    return snapshot;
}

RecordingMatchData matchLasting(std::int64_t gameDurationSeconds) {
    RecordingMatchData match;
    match.gameDuration = gameDurationSeconds;
    return match;
}

struct SpanCase {
    const char* name;
    std::optional<double> movieDurationSeconds;
    std::vector<RecordingEvent> events;
    std::vector<RecordingScoreboardSnapshot> scoreboard;
    std::optional<RecordingMatchData> matchData;
    double expectedSeconds;
};

void PrintTo(const SpanCase& row, std::ostream* out) {
    *out << row.name;
}

class RecordingTimelineSpanTest : public testing::TestWithParam<SpanCase> {};

TEST_P(RecordingTimelineSpanTest, SpansTheMovieOrElseTheDocumentsGame) {
    const SpanCase& row = GetParam();
    EXPECT_DOUBLE_EQ(
        recordingTimelineSpanSeconds(row.movieDurationSeconds, row.events, row.scoreboard, row.matchData),
        row.expectedSeconds);
}

// A game whose clock starts 6 s into the movie; its last snapshot, 1,500 s of game, stands at 1,506 s.
const std::vector<RecordingEvent> kGame{eventAt("GameStart", 6), eventAt("ChampionKill", 400),
                                        eventAt("TurretKilled", 1200)};
const std::vector<RecordingScoreboardSnapshot> kSnapshots{snapshotAt(16, 10), snapshotAt(1506, 1500)};

INSTANTIATE_TEST_SUITE_P(
    Table, RecordingTimelineSpanTest,
    testing::Values(
        SpanCase{"an opened movie keeps its own duration", 1510.5, kGame, kSnapshots, matchLasting(1800),
                 1510.5},
        SpanCase{"an opened movie measured at 0 stays 0", 0.0, kGame, kSnapshots, std::nullopt, 0},
        SpanCase{"damaged: the last snapshot's game time after GameStart",
                 std::nullopt,
                 kGame,
                 {snapshotAt(16, 10), snapshotAt(1500, 1500)},
                 std::nullopt,
                 1506},
        SpanCase{"damaged: the post-game record's length wins over the snapshots", std::nullopt, kGame,
                 kSnapshots, matchLasting(1700), 1706},
        SpanCase{"damaged without GameStart: the game's length alone",
                 std::nullopt,
                 {eventAt("ChampionKill", 100)},
                 {snapshotAt(300, 300)},
                 std::nullopt,
                 300},
        SpanCase{"damaged: an event after the game's end still fits",
                 std::nullopt,
                 {eventAt("GameStart", 6), eventAt("GameEnd", 1620)},
                 kSnapshots,
                 std::nullopt,
                 1620},
        SpanCase{"damaged: a snapshot stored later than its game time fits",
                 std::nullopt,
                 kGame,
                 {snapshotAt(1540, 1500)},
                 std::nullopt,
                 1540},
        SpanCase{"damaged: events alone span to the last", std::nullopt, kGame, {}, std::nullopt, 1200},
        SpanCase{"damaged: events out of order span to the latest",
                 std::nullopt,
                 {eventAt("TurretKilled", 900), eventAt("GameStart", 6), eventAt("ChampionKill", 50)},
                 {},
                 std::nullopt,
                 900},
        SpanCase{"damaged: a bad length or time places nothing",
                 std::nullopt,
                 {eventAt("GameStart", kNaN), eventAt("ChampionKill", -4)},
                 {snapshotAt(kNaN, -30)},
                 matchLasting(-5),
                 0},
        SpanCase{"damaged with no document: 0", std::nullopt, {}, {}, std::nullopt, 0}),
    [](const testing::TestParamInfo<SpanCase>& info) { return "row" + std::to_string(info.index); });

}  // namespace
}  // namespace kestrum
