#include "ReviewTestEvents.h"
#include "core/review/TimelineMarkerLayout.h"

#include <gtest/gtest.h>

#include <numeric>

namespace kestrum {
namespace {

using test::kBlue;
using test::kRed;
using test::makeEvent;
using test::withLocalKill;

struct PositionCase {
    const char* name;
    double videoTime;
    std::optional<RecordingTeam> team;
    double width;
    double duration;
    TimelinePoint expected;
};

void PrintTo(const PositionCase& row, std::ostream* out) {
    *out << row.name;
}

class MarkerPositionTable : public testing::TestWithParam<PositionCase> {};

TEST_P(MarkerPositionTable, PlacesTheMarker) {
    const PositionCase& row = GetParam();
    EXPECT_EQ(markerPosition(makeEvent(1, "DragonKill", row.videoTime, row.team), row.width, row.duration),
              row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, MarkerPositionTable,
    testing::Values(
        PositionCase{"the middle of the track, no team", 900, std::nullopt, 1000, 1800, {500, 32}},
        PositionCase{"blue below the centre", 900, kBlue, 1000, 1800, {500, 44}},
        PositionCase{"red above the centre", 900, kRed, 1000, 1800, {500, 20}},
        PositionCase{"the start is kept 11 points in", 0, std::nullopt, 1000, 1800, {11, 32}},
        PositionCase{"the end is kept 11 points in", 1800, std::nullopt, 1000, 1800, {989, 32}},
        PositionCase{"a movie of no length puts everything at 11", 900, kBlue, 1000, 0, {11, 44}},
        PositionCase{
            "a track narrower than both insets ends at width - 11", 5, std::nullopt, 10, 10, {-1, 32}}));

// A marker at (x, y) standing for `event`, as the layout makes it.
TimelineMarker markerAt(const RecordingEvent& event, double x, double y) {
    std::vector<TimelineMarker> markers = layoutTimelineMarkers({event}, {0}, 1000, 1000);
    markers.front().x = x;
    markers.front().y = y;
    return markers.front();
}

struct HitCase {
    const char* name;
    std::vector<TimelineMarker> markers;
    double px;
    double py;
    std::optional<std::int64_t> hitID;
};

void PrintTo(const HitCase& row, std::ostream* out) {
    *out << row.name;
}

class HitSearchTable : public testing::TestWithParam<HitCase> {};

TEST_P(HitSearchTable, FindsTheHoveredMarker) {
    const HitCase& row = GetParam();
    const std::optional<std::size_t> hit = hitTimelineMarker(row.markers, row.px, row.py);
    std::optional<std::int64_t> id;
    if (hit) id = row.markers[*hit].eventID;
    EXPECT_EQ(id, row.hitID);
}

const RecordingEvent kTurret = makeEvent(7, "TurretKilled", 10, kBlue);

INSTANTIATE_TEST_SUITE_P(
    Table, HitSearchTable,
    testing::Values(
        HitCase{"14 points away in x hits", {markerAt(kTurret, 100, 44)}, 114, 44, 7},
        HitCase{"15 points away in x misses", {markerAt(kTurret, 100, 44)}, 115, 44, std::nullopt},
        HitCase{"18 points away in y hits", {markerAt(kTurret, 100, 44)}, 100, 26, 7},
        HitCase{"19 points away in y misses", {markerAt(kTurret, 100, 44)}, 100, 63, std::nullopt},
        HitCase{"the nearest in x wins",
                {markerAt(makeEvent(1, "TurretKilled", 1, kBlue), 100, 44),
                 markerAt(makeEvent(2, "TurretKilled", 2, kBlue), 104, 44)},
                103,
                44,
                2},
        HitCase{"a local kill beats its multikill 0.3 points away",
                {markerAt(withLocalKill(makeEvent(10, "ChampionKill", 1, kBlue)), 100, 44),
                 markerAt(withLocalKill(makeEvent(11, "Multikill", 1, kBlue)), 100.3, 44)},
                100.3,
                44,
                10},
        HitCase{"a multikill beats an ace, an ace beats an objective",
                {markerAt(makeEvent(20, "TurretKilled", 1, kBlue), 100, 44),
                 markerAt(makeEvent(21, "Ace", 1, kBlue), 100.2, 44),
                 markerAt(makeEvent(22, "Multikill", 1, kBlue), 99.8, 44)},
                100,
                44,
                22},
        HitCase{"equal priority goes to the later event",
                {markerAt(makeEvent(31, "TurretKilled", 1, kBlue), 100, 44),
                 markerAt(makeEvent(30, "InhibKilled", 1, kBlue), 100.4, 44)},
                100,
                44,
                31},
        HitCase{"0.6 points apart is no tie: the nearer wins",
                {markerAt(withLocalKill(makeEvent(40, "ChampionKill", 1, kBlue)), 100.6, 44),
                 markerAt(makeEvent(41, "TurretKilled", 1, kBlue), 100, 44)},
                100,
                44,
                41},
        HitCase{"a kill that is not the local player's has no priority over objectives",
                {markerAt(makeEvent(50, "ChampionKill", 1, kBlue), 100, 44),
                 markerAt(makeEvent(49, "DragonKill", 1, kBlue), 100, 44)},
                100,
                44,
                50},
        HitCase{"game start and end are never hovered",
                {markerAt(makeEvent(60, "GameStart", 1), 100, 32),
                 markerAt(makeEvent(61, "GameEnd", 1), 100, 32)},
                100,
                32,
                std::nullopt}));

TEST(TimelineMarkerLayout, LaysOutVisibleEventsWithTheirSymbolsAndArt) {
    const std::vector<RecordingEvent> events{
        makeEvent(1, "GameStart", 0), test::withDetail(makeEvent(2, "DragonKill", 600, kRed), "Infernal"),
        withLocalKill(makeEvent(3, "ChampionKill", 900, kBlue))};
    const std::vector<TimelineMarker> markers = layoutTimelineMarkers(events, {1, 2}, 1200, 1800);
    ASSERT_EQ(markers.size(), 2U);
    EXPECT_EQ(markers[0].eventID, 2);
    EXPECT_EQ(markers[0].kind, TimelineMarkerKind::objective);
    EXPECT_EQ(markers[0].symbolName, QStringLiteral("flame.fill"));
    EXPECT_EQ(markers[0].artName, QStringLiteral("dragon_infernal"));
    EXPECT_EQ(markers[0].x, 400);
    EXPECT_EQ(markers[1].kind, TimelineMarkerKind::localKill);
    EXPECT_EQ(markers[1].priority, 4);
    EXPECT_TRUE(markers[1].artName.isEmpty());
}

TEST(TimelineMarkerLayout, TrackPositionsTurnIntoTimesWithinTheMovie) {
    EXPECT_DOUBLE_EQ(timeAtTrackPosition(250, 1000, 1800), 450);
    EXPECT_DOUBLE_EQ(timeAtTrackPosition(-20, 1000, 1800), 0);
    EXPECT_DOUBLE_EQ(timeAtTrackPosition(1200, 1000, 1800), 1800);
    EXPECT_DOUBLE_EQ(timeAtTrackPosition(500, 1000, 0), 0);
    EXPECT_DOUBLE_EQ(timeAtTrackPosition(500, 0, 1800), 0);
}

}  // namespace
}  // namespace kestrum
