#include "ReviewTestEvents.h"
#include "core/review/ScoreboardTimers.h"

#include <gtest/gtest.h>

namespace kestrum {
namespace {

using test::kBlue;
using test::kRed;
using test::makeEvent;
using test::withDetail;

RecordingEvent dragon(double time, RecordingTeam team, const char* kind = "Fire") {
    return withDetail(makeEvent(0, "DragonKill", time, team), kind);
}

struct TimerCase {
    const char* name;
    std::vector<RecordingEvent> events;
    double currentTime;
    double gameTime;
    // The dragon's timer, then the big objective's: seconds, name, text and help.
    double dragonSeconds;
    const char* dragonName;
    const char* objectiveName;
    double objectiveSeconds;
    const char* objectiveText;
    const char* objectiveHelp;
};

void PrintTo(const TimerCase& row, std::ostream* out) {
    *out << row.name;
}

class ObjectiveTimerTable : public testing::TestWithParam<TimerCase> {};

TEST_P(ObjectiveTimerTable, CountsDownToTheNextObjectives) {
    const TimerCase& row = GetParam();
    const std::vector<const RecordingEvent*> elapsed = elapsedEvents(row.events, row.currentTime);
    const ObjectiveTimer dragonTimer = nextDragonTimer(elapsed, row.currentTime, row.gameTime);
    EXPECT_DOUBLE_EQ(dragonTimer.secondsFromNow, row.dragonSeconds);
    EXPECT_EQ(dragonTimer.name, QString::fromUtf8(row.dragonName));
    const ObjectiveTimer objective = nextBigObjectiveTimer(elapsed, row.currentTime, row.gameTime);
    EXPECT_EQ(objective.name, QString::fromUtf8(row.objectiveName));
    EXPECT_DOUBLE_EQ(objective.secondsFromNow, row.objectiveSeconds);
    EXPECT_EQ(objective.text, QString::fromUtf8(row.objectiveText));
    EXPECT_EQ(objective.helpText, QString::fromUtf8(row.objectiveHelp));
}

INSTANTIATE_TEST_SUITE_P(
    Table, ObjectiveTimerTable,
    testing::Values(
        TimerCase{"before anything, the first dragon and the grubs",
                  {},
                  100,
                  120,
                  180,
                  "Dragon",
                  "Void Grubs",
                  360,
                  "6:00",
                  "Void Grubs is available in 6:00"},
        TimerCase{"at game time 899 with two grubs, the grubs are live",
                  {makeEvent(1, "HordeKill", 500, kBlue), makeEvent(2, "VoidGrubKill", 520, kRed)},
                  880,
                  899,
                  -599,
                  "Dragon",
                  "Void Grubs",
                  -419,
                  "LIVE",
                  "Void Grubs is available"},
        TimerCase{"after the third grub the herald shows before 480",
                  {makeEvent(1, "HordeKill", 300, kBlue), makeEvent(2, "HordeKill", 310, kBlue),
                   makeEvent(3, "HordeKill", 320, kBlue)},
                  380,
                  400,
                  -100,
                  "Dragon",
                  "Rift Herald",
                  500,
                  "8:20",
                  "Rift Herald is available in 8:20"},
        TimerCase{"from game time 900 the grubs are over",
                  {},
                  880,
                  900,
                  -600,
                  "Dragon",
                  "Rift Herald",
                  0,
                  "LIVE",
                  "Rift Herald is available"},
        TimerCase{"a taken herald leaves the baron",
                  {makeEvent(1, "HeraldKill", 950, kRed)},
                  980,
                  1000,
                  -700,
                  "Dragon",
                  "Baron",
                  200,
                  "3:20",
                  "Baron is available in 3:20"},
        TimerCase{"from game time 1200 the herald is over",
                  {},
                  1180,
                  1200,
                  -900,
                  "Dragon",
                  "Baron",
                  0,
                  "LIVE",
                  "Baron is available"},
        TimerCase{"a baron taken at 1500 respawns 360 s later",
                  {makeEvent(1, "HeraldKill", 900, kRed), makeEvent(2, "BaronKill", 1500, kBlue)},
                  1859,
                  1880,
                  -1580,
                  "Dragon",
                  "Baron",
                  1,
                  "0:01",
                  "Baron is available in 0:01"},
        TimerCase{"... and reads LIVE from 1860 on",
                  {makeEvent(1, "HeraldKill", 900, kRed), makeEvent(2, "BaronKill", 1500, kBlue)},
                  1860,
                  1881,
                  -1581,
                  "Dragon",
                  "Baron",
                  0,
                  "LIVE",
                  "Baron is available"},
        TimerCase{"a dragon respawns 300 s after the last",
                  {dragon(600, kBlue), dragon(700, kRed, "Ocean")},
                  761.2,
                  780,
                  238.8,
                  "Dragon",
                  "Void Grubs",
                  -300,
                  "LIVE",
                  "Void Grubs is available"},
        TimerCase{
            "four dragons of one team make the next an Elder, 360 s on",
            {dragon(400, kBlue), dragon(800, kBlue, "Earth"), dragon(1100, kRed), dragon(1300, kBlue, "Air"),
             dragon(1600, kBlue, "Hextech"), makeEvent(1, "HeraldKill", 900, kRed)},
            1700,
            1720,
            260,
            "Elder Dragon",
            "Baron",
            -520,
            "LIVE",
            "Baron is available"},
        TimerCase{"an Elder makes the next 360 s on too",
                  {dragon(1900, kRed, "Elder"), makeEvent(1, "HeraldKill", 900, kRed)},
                  2000,
                  2020,
                  260,
                  "Elder Dragon",
                  "Baron",
                  -820,
                  "LIVE",
                  "Baron is available"},
        TimerCase{"three and one dragons hold no soul",
                  {dragon(400, kBlue), dragon(800, kBlue), dragon(1100, kRed), dragon(1300, kBlue)},
                  1400,
                  1420,
                  200,
                  "Dragon",
                  "Baron",
                  -220,
                  "LIVE",
                  "Baron is available"},
        TimerCase{"once the game is over every timer is done",
                  {makeEvent(1, "NexusKill", 1700, kBlue), makeEvent(2, "GameEnd", 1702)},
                  1705,
                  1725,
                  -1425,
                  "Dragon",
                  "Baron",
                  -525,
                  "DONE",
                  ""}));

TEST(ScoreboardTimers, ElapsedEventsStopAtTheCurrentTime) {
    const std::vector<RecordingEvent> events{makeEvent(1, "GameStart", 1), makeEvent(2, "HordeKill", 10),
                                             makeEvent(3, "HordeKill", 10.5)};
    EXPECT_EQ(elapsedEvents(events, 10).size(), 2U);
    EXPECT_EQ(elapsedEvents(events, 0.5).size(), 0U);
    EXPECT_EQ(timerHelpText(QStringLiteral("Baron"), 61.2), QStringLiteral("Baron is available in 1:02"));
}

}  // namespace
}  // namespace kestrum
