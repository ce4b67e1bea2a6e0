#include "ReviewTestEvents.h"
#include "core/review/TimelineVisibility.h"
#include "support/ScoreboardPlayerRow.h"

#include <gtest/gtest.h>

#include <functional>

namespace kestrum {
namespace {

using test::kBlue;
using test::kRed;
using test::makeEvent;
using test::withLocalKill;

TimelineFilterSet filtersWith(std::initializer_list<TimelineActorFilter> actors,
                              std::initializer_list<TimelineEventFilter> classesOff = {}) {
    TimelineFilterSet filters;
    for (const TimelineActorFilter actor : actors) {
        if (!filters.contains(actor)) filters.toggle(actor);
    }
    for (const TimelineEventFilter off : classesOff) filters.toggle(off);
    return filters;
}

RecordingEvent withFlag(RecordingEvent event, std::optional<bool> RecordingEvent::*flag) {
    event.*flag = true;
    return event;
}

struct VisibilityCase {
    const char* name;
    std::vector<RecordingEvent> events;
    TimelineFilterSet filters;
    std::vector<std::int64_t> visibleIDs;
};

void PrintTo(const VisibilityCase& row, std::ostream* out) {
    *out << row.name;
}

class TimelineVisibilityTable : public testing::TestWithParam<VisibilityCase> {};

TEST_P(TimelineVisibilityTable, ShowsTheExpectedMarkers) {
    const VisibilityCase& row = GetParam();
    std::vector<std::int64_t> ids;
    for (const std::size_t index : visibleEventIndices(row.events, row.filters, TimelineKillerNames())) {
        ids.push_back(row.events[index].id);
    }
    EXPECT_EQ(ids, row.visibleIDs);
}

const TimelineFilterSet kDefaults;
const TimelineFilterSet kBothTeams = filtersWith({TimelineActorFilter::blue, TimelineActorFilter::red});

INSTANTIATE_TEST_SUITE_P(
    Table, TimelineVisibilityTable,
    testing::Values(
        VisibilityCase{
            "an Ace 2 s after the same killer's multikill says nothing new",
            {makeEvent(1, "ChampionKill", 100, kBlue, "Ahri#EUW"),
             makeEvent(2, "Multikill", 100.5, kBlue, "Ahri#EUW"), makeEvent(3, "Ace", 102.5, kBlue, "ahri")},
            kBothTeams,
            {1, 2}},
        VisibilityCase{
            "the same Ace 4 s after the multikill shows",
            {makeEvent(1, "ChampionKill", 100, kBlue, "Ahri#EUW"),
             makeEvent(2, "Multikill", 100.5, kBlue, "Ahri#EUW"), makeEvent(3, "Ace", 104.5, kBlue, "ahri")},
            kBothTeams,
            {1, 2, 3}},
        VisibilityCase{
            "an Ace 2 s after another killer's multikill shows",
            {makeEvent(1, "ChampionKill", 100, kBlue, "Jinx#EUW"),
             makeEvent(2, "Multikill", 99, kBlue, "Ahri#EUW"), makeEvent(3, "Ace", 101, kBlue, "Jinx")},
            kBothTeams,
            {1, 2, 3}},
        VisibilityCase{
            "an Ace of the other team than the multikill shows",
            {makeEvent(1, "ChampionKill", 100, kRed, "Ahri#EUW"),
             makeEvent(2, "Multikill", 100.5, kBlue, "Ahri#EUW"), makeEvent(3, "Ace", 101, kRed, "Ahri")},
            kBothTeams,
            {1, 2, 3}},
        VisibilityCase{
            "default filters: a red kill without the local player hides, turrets of both sides show",
            {makeEvent(1, "ChampionKill", 50, kRed, "Zed"), makeEvent(2, "TurretKilled", 60, kRed),
             makeEvent(3, "TurretKilled", 70, kBlue), makeEvent(4, "ChampionKill", 80, kBlue, "Lux")},
            kDefaults,
            {2, 3}},
        VisibilityCase{
            "default filters: the local player's kill, death and assist show on either side",
            {withLocalKill(makeEvent(1, "ChampionKill", 50, kRed)),
             withFlag(makeEvent(2, "FirstBlood", 40, kBlue), &RecordingEvent::isLocalPlayerDeath),
             withFlag(makeEvent(3, "ChampionKill", 60, kRed), &RecordingEvent::isLocalPlayerAssist)},
            kDefaults,
            {1, 2, 3}},
        VisibilityCase{
            "a multikill is the local player's when its kill is",
            {withLocalKill(makeEvent(1, "ChampionKill", 200, kBlue, "Me#1")),
             makeEvent(2, "Multikill", 201, kBlue, "Me#1"), makeEvent(3, "Multikill", 206, kBlue, "Me#1")},
            kDefaults,
            {1, 2}},
        VisibilityCase{"a kill without team or local part hides even with both teams on",
                       {makeEvent(1, "ChampionKill", 10), makeEvent(2, "Multikill", 11)},
                       kBothTeams,
                       {}},
        VisibilityCase{"objectives need no team; unknown names never show",
                       {makeEvent(1, "GameStart", 0), makeEvent(2, "DragonKill", 300),
                        makeEvent(3, "PositionQuestCompleted", 400, kBlue),
                        makeEvent(4, "FirstBrick", 500, kBlue), makeEvent(5, "GameEnd", 1800)},
                       kBothTeams,
                       {1, 2, 5}},
        VisibilityCase{
            "classes turned off hide, whatever the actor",
            {withLocalKill(makeEvent(1, "ChampionKill", 10, kBlue)),
             withLocalKill(makeEvent(2, "Multikill", 11, kBlue)), makeEvent(3, "BaronKill", 20, kBlue)},
            filtersWith({}, {TimelineEventFilter::multikills, TimelineEventFilter::objectives}),
            {1}},
        VisibilityCase{
            "an empty actor set leaves only the objectives",
            {withLocalKill(makeEvent(1, "ChampionKill", 10, kBlue)), makeEvent(2, "InhibKilled", 20, kRed)},
            [] {
                TimelineFilterSet filters;
                filters.toggle(TimelineActorFilter::localPlayer);
                return filters;
            }(),
            {2}}));

struct RelatedKillCase {
    const char* name;
    std::vector<RecordingEvent> events;  // the multikill or ace is the last
    std::optional<std::int64_t> killID;
};

void PrintTo(const RelatedKillCase& row, std::ostream* out) {
    *out << row.name;
}

class RelatedKillTable : public testing::TestWithParam<RelatedKillCase> {};

TEST_P(RelatedKillTable, FindsTheKill) {
    const RelatedKillCase& row = GetParam();
    const std::optional<std::size_t> kill =
        relatedKillIndex(row.events, row.events.size() - 1, TimelineKillerNames());
    std::optional<std::int64_t> id;
    if (kill) id = row.events[*kill].id;
    EXPECT_EQ(id, row.killID);
}

INSTANTIATE_TEST_SUITE_P(Table, RelatedKillTable,
                         testing::Values(RelatedKillCase{"the latest kill within the window wins",
                                                         {makeEvent(1, "ChampionKill", 97, kBlue, "A"),
                                                          makeEvent(2, "ChampionKill", 99, kBlue, "A"),
                                                          makeEvent(3, "Multikill", 100, kBlue, "A")},
                                                         2},
                                         RelatedKillCase{"at equal times the earlier in the list wins",
                                                         {makeEvent(1, "ChampionKill", 99, kBlue, "A"),
                                                          makeEvent(2, "FirstBlood", 99, kBlue, "A"),
                                                          makeEvent(3, "Multikill", 100, kBlue, "A")},
                                                         1},
                                         RelatedKillCase{"exactly 3 s before still counts",
                                                         {makeEvent(1, "ChampionKill", 97, kBlue, "A"),
                                                          makeEvent(2, "Multikill", 100, kBlue, "A")},
                                                         1},
                                         RelatedKillCase{"3.01 s before does not",
                                                         {makeEvent(1, "ChampionKill", 96.99, kBlue, "A"),
                                                          makeEvent(2, "Multikill", 100, kBlue, "A")},
                                                         std::nullopt},
                                         RelatedKillCase{"a kill after the event does not",
                                                         {makeEvent(1, "ChampionKill", 100.1, kBlue, "A"),
                                                          makeEvent(2, "Ace", 100, kBlue, "A")},
                                                         std::nullopt},
                                         RelatedKillCase{"another team's kill does not",
                                                         {makeEvent(1, "ChampionKill", 99, kRed, "A"),
                                                          makeEvent(2, "Multikill", 100, kBlue, "A")},
                                                         std::nullopt},
                                         RelatedKillCase{"a kill without team matches any team",
                                                         {makeEvent(1, "ChampionKill", 99, std::nullopt, "A"),
                                                          makeEvent(2, "Multikill", 100, kBlue, "A")},
                                                         1},
                                         RelatedKillCase{"a multikill needs its own killer's kill",
                                                         {makeEvent(1, "ChampionKill", 99.5, kBlue, "B"),
                                                          makeEvent(2, "ChampionKill", 99, kBlue, "A"),
                                                          makeEvent(3, "Multikill", 100, kBlue, "A")},
                                                         2},
                                         RelatedKillCase{
                                             "an ace takes the team's latest kill, whoever made it",
                                             {makeEvent(1, "ChampionKill", 99, kBlue, "A"),
                                              makeEvent(2, "ChampionKill", 99.5, kBlue, "B"),
                                              makeEvent(3, "Ace", 100, kBlue, "A")},
                                             2},
                                         RelatedKillCase{"other events have none",
                                                         {makeEvent(1, "ChampionKill", 99, kBlue, "A"),
                                                          makeEvent(2, "ChampionKill", 100, kBlue, "A")},
                                                         std::nullopt}));

struct KillerCase {
    const char* name;
    RecordingEvent first;
    RecordingEvent second;
    bool same;
};

void PrintTo(const KillerCase& row, std::ostream* out) {
    *out << row.name;
}

RecordingEvent byChampion(std::optional<std::string> killerName, std::optional<std::string> champion) {
    RecordingEvent event = makeEvent(1, "ChampionKill", 1, kBlue, std::move(killerName));
    event.killerChampion = std::move(champion);
    return event;
}

class KillerNamesTable : public testing::TestWithParam<KillerCase> {};

TEST_P(KillerNamesTable, ComparesKillers) {
    RecordingScoreboardPlayer ahri = test::scoreboardPlayer("Faker#KR1", "Ahri", "ORDER");
    ahri.riotIdGameName = "Faker";
    RecordingScoreboardPlayer lux = test::scoreboardPlayer("Lux Main#EUW", "Lux", "CHAOS");
    const TimelineKillerNames killers({RecordingScoreboardSnapshot{1, 1, {ahri, lux}}});
    EXPECT_EQ(killers.sameKiller(GetParam().first, GetParam().second), GetParam().same);
    EXPECT_EQ(killers.sameKiller(GetParam().second, GetParam().first), GetParam().same);
}

INSTANTIATE_TEST_SUITE_P(
    Table, KillerNamesTable,
    testing::Values(KillerCase{"names are cut at the tag, trimmed and lower-cased",
                               byChampion("Faker#KR1", {}), byChampion("  FAKER ", {}), true},
                    KillerCase{"different names differ", byChampion("Faker#KR1", {}),
                               byChampion("Lux Main", {}), false},
                    KillerCase{"without a name on one side the scoreboard names the champion's player",
                               byChampion("Faker#KR1", "Ahri"), byChampion({}, "Lux"), false},
                    KillerCase{"the same champion's player matches", byChampion({}, "ahri"),
                               byChampion({}, "Ahri"), true},
                    KillerCase{"a champion not on the scoreboard matches anything", byChampion({}, "Zed"),
                               byChampion({}, "Lux"), true},
                    KillerCase{"no usable name on a side matches", byChampion("#", {}),
                               byChampion("Lux Main", {}), true}));

}  // namespace
}  // namespace kestrum
