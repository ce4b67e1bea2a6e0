#include "core/review/ScoreboardClock.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestrum {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Snapshots at the given video times, each with gameTime = videoTime + offset.
std::vector<RecordingScoreboardSnapshot> snapshotsWithOffsets(
    const std::vector<std::pair<double, double>>& timesAndOffsets) {
    std::vector<RecordingScoreboardSnapshot> snapshots;
    for (const auto& [videoTime, offset] : timesAndOffsets)
        snapshots.push_back({videoTime, videoTime + offset, {}});
    return snapshots;
}

struct OffsetCase {
    const char* name;
    std::vector<std::pair<double, double>> snapshots;
    double median;
};

void PrintTo(const OffsetCase& row, std::ostream* out) {
    *out << row.name;
}

class MedianOffsetTable : public testing::TestWithParam<OffsetCase> {};

TEST_P(MedianOffsetTable, TakesTheMedianNotTheMean) {
    EXPECT_DOUBLE_EQ(ScoreboardClock::medianOffsetSeconds(snapshotsWithOffsets(GetParam().snapshots)),
                     GetParam().median);
}

INSTANTIATE_TEST_SUITE_P(
    Table, MedianOffsetTable,
    testing::Values(
        OffsetCase{"10, 12 and 1000 give 12", {{5, 1000}, {1, 10}, {3, 12}}, 12},
        OffsetCase{
            "an even count takes the mean of the middle two", {{1, 10}, {2, 20}, {3, 30}, {4, 99}}, 25},
        OffsetCase{"no snapshots give 0", {}, 0},
        OffsetCase{"values that are not finite are left out", {{1, kNaN}, {2, 7}, {3, 1e308 * 10}}, 7},
        OffsetCase{"only values that are not finite give 0", {{1, kNaN}}, 0}));

struct SnapshotCase {
    const char* name;
    std::vector<double> videoTimes;
    double currentTime;
    std::optional<std::size_t> index;
};

void PrintTo(const SnapshotCase& row, std::ostream* out) {
    *out << row.name;
}

class CurrentSnapshotTable : public testing::TestWithParam<SnapshotCase> {};

TEST_P(CurrentSnapshotTable, TakesTheLastSnapshotNotLaterThanTheTime) {
    std::vector<RecordingScoreboardSnapshot> snapshots;
    for (const double time : GetParam().videoTimes) snapshots.push_back({time, time, {}});
    EXPECT_EQ(ScoreboardClock(snapshots).currentSnapshotIndex(GetParam().currentTime), GetParam().index);
}

INSTANTIATE_TEST_SUITE_P(
    Table, CurrentSnapshotTable,
    testing::Values(SnapshotCase{"before the first snapshot shows the first", {10, 20, 30}, 5, 0},
                    SnapshotCase{"at a snapshot's time, that one", {10, 20, 30}, 20, 1},
                    SnapshotCase{"between two, the earlier", {10, 20, 30}, 29.9, 1},
                    SnapshotCase{"after the last, the last", {10, 20, 30}, 1e6, 2},
                    SnapshotCase{"equal times take the last of them", {10, 20, 20, 30}, 25, 2},
                    SnapshotCase{"an unsorted list is walked from its end", {30, 10, 20}, 25, 2},
                    SnapshotCase{"... and gives the first qualifying from the end", {30, 10, 20}, 15, 1},
                    SnapshotCase{"... or the first when none qualifies", {30, 10, 20}, 5, 0},
                    SnapshotCase{"no snapshots, none", {}, 5, std::nullopt},
                    SnapshotCase{"a time that is not a number shows the first", {10, 20}, kNaN, 0}));

TEST(ScoreboardClock, GameTimeIsTheMovieTimePlusTheOffsetNotBelowZero) {
    const ScoreboardClock behind(snapshotsWithOffsets({{100, -30}}));
    EXPECT_DOUBLE_EQ(behind.gameClock(100), 70);
    EXPECT_DOUBLE_EQ(behind.gameClock(10), 0);
    EXPECT_DOUBLE_EQ(ScoreboardClock().gameClock(61.5), 61.5);
    EXPECT_DOUBLE_EQ(ScoreboardClock().gameClock(kNaN), 0);
}

}  // namespace
}  // namespace kestrum
