#include "ReviewTestEvents.h"
#include "core/review/ScoreboardTimers.h"
#include "core/review/TeamObjectives.h"

#include <gtest/gtest.h>

namespace kestrum {
namespace {

using test::kBlue;
using test::kRed;
using test::makeEvent;
using test::withDetail;

TeamObjectives objectivesAt(const std::vector<RecordingEvent>& events, RecordingTeam team,
                            double currentTime) {
    return teamObjectives(elapsedEvents(events, currentTime), team, currentTime);
}

struct NameCase {
    std::optional<std::string> detail;
    const char* name;
};

void PrintTo(const NameCase& row, std::ostream* out) {
    *out << row.name;
}

class DragonNameTable : public testing::TestWithParam<NameCase> {};

TEST_P(DragonNameTable, NamesTheDragon) {
    EXPECT_EQ(dragonName(GetParam().detail), QString::fromUtf8(GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(Table, DragonNameTable,
                         testing::Values(NameCase{"Infernal", "Infernal Dragon"},
                                         NameCase{"Elder Dragon", "Elder Dragon"},
                                         NameCase{"elder DRAGON", "elder DRAGON"}, NameCase{"", "Dragon"},
                                         NameCase{std::nullopt, "Dragon"},
                                         NameCase{"Chemtech", "Chemtech Dragon"}));

TEST(TeamObjectives, CountsGrubsHeraldAndEldersOfTheTeamOnly) {
    const std::vector<RecordingEvent> events{
        makeEvent(1, "HordeKill", 500, kBlue),
        makeEvent(2, "VoidGrubKill", 510, kBlue),
        makeEvent(3, "HordeKill", 520, kRed),
        makeEvent(4, "HeraldKill", 900, kBlue),
        withDetail(makeEvent(5, "DragonKill", 2000, kBlue), "Elder"),
        withDetail(makeEvent(6, "DragonKill", 2400, kBlue), "Elder Dragon"),
        makeEvent(7, "HordeKill", 530)};  // no team: counts for no one
    const TeamObjectives blue = objectivesAt(events, kBlue, 2500);
    EXPECT_EQ(blue.voidGrubCount, 2);
    EXPECT_EQ(blue.voidGrubHelp, QStringLiteral("2 of 3 Void Grubs secured"));
    EXPECT_TRUE(blue.hasRiftHerald);
    EXPECT_EQ(blue.riftHeraldHelp, QStringLiteral("Rift Herald secured"));
    EXPECT_EQ(blue.elderDragonCount, 2);
    EXPECT_EQ(blue.elderDragonHelp, QStringLiteral("2 Elder Dragons secured"));
    EXPECT_FALSE(blue.dragonSlots[0].isFilled) << "Elders take no slot";

    const TeamObjectives blueEarlier = objectivesAt(events, kBlue, 2100);
    EXPECT_EQ(blueEarlier.elderDragonHelp, QStringLiteral("Elder Dragon secured"));

    const TeamObjectives red = objectivesAt(events, kRed, 2500);
    EXPECT_EQ(red.voidGrubCount, 1);
    EXPECT_FALSE(red.hasRiftHerald);
    EXPECT_TRUE(red.riftHeraldHelp.isEmpty());
    EXPECT_EQ(red.elderDragonCount, 0);
}

struct PowerPlayCase {
    double currentTime;
    std::optional<double> seconds;
    const char* text;
};

void PrintTo(const PowerPlayCase& row, std::ostream* out) {
    *out << "at " << row.currentTime;
}

class BaronPowerPlayTable : public testing::TestWithParam<PowerPlayCase> {};

TEST_P(BaronPowerPlayTable, LastsThreeMinutesFromTheTeamsLastBaron) {
    const std::vector<RecordingEvent> events{makeEvent(1, "BaronKill", 1200, kRed),
                                             makeEvent(2, "BaronKill", 1500, kBlue)};
    const TeamObjectives blue = objectivesAt(events, kBlue, GetParam().currentTime);
    ASSERT_EQ(blue.baronPowerPlaySeconds.has_value(), GetParam().seconds.has_value());
    if (GetParam().seconds) {
        EXPECT_NEAR(*blue.baronPowerPlaySeconds, *GetParam().seconds, 1e-9);
    }
    EXPECT_EQ(blue.baronPowerPlayText, QString::fromUtf8(GetParam().text));
    if (GetParam().seconds) {
        EXPECT_EQ(blue.baronPowerPlayHelp, QStringLiteral("Baron power play time remaining"));
    }
}

INSTANTIATE_TEST_SUITE_P(Table, BaronPowerPlayTable,
                         testing::Values(PowerPlayCase{1499, std::nullopt, ""},
                                         PowerPlayCase{1500, 180, "3:00"},
                                         PowerPlayCase{1558.8, 121.2, "2:02"},
                                         PowerPlayCase{1679.5, 0.5, "0:01"},
                                         PowerPlayCase{1680, std::nullopt, ""}));

TEST(TeamObjectives, FillsDragonSlotsInOrderAndMarksTheSoul) {
    std::vector<RecordingEvent> events{withDetail(makeEvent(1, "DragonKill", 400, kRed), "Fire"),
                                       withDetail(makeEvent(2, "DragonKill", 700, kRed), "Ocean"),
                                       withDetail(makeEvent(3, "DragonKill", 1000, kBlue), "Air")};
    const TeamObjectives red = objectivesAt(events, kRed, 1100);
    EXPECT_EQ(red.dragonSlots[0],
              (DragonSlot{true, QStringLiteral("dragon_infernal"), QStringLiteral("Fire Dragon")}));
    EXPECT_EQ(red.dragonSlots[1],
              (DragonSlot{true, QStringLiteral("dragon_ocean"), QStringLiteral("Ocean Dragon")}));
    EXPECT_EQ(red.dragonSlots[2], (DragonSlot{false, QString(), QStringLiteral("Empty dragon slot")}));
    EXPECT_FALSE(red.hasDragonSoul);

    events.push_back(withDetail(makeEvent(4, "DragonKill", 1300, kRed), "Hextech"));
    events.push_back(withDetail(makeEvent(5, "DragonKill", 1600, kRed), "Infernal"));
    const TeamObjectives soul = objectivesAt(events, kRed, 1700);
    EXPECT_TRUE(soul.hasDragonSoul);
    EXPECT_EQ(soul.dragonSlots[2].helpText, QStringLiteral("Hextech Dragon"));
    EXPECT_EQ(soul.dragonSlots[3], (DragonSlot{true, QStringLiteral("dragon_infernal"),
                                               QStringLiteral("Infernal Dragon Soul secured")}));
}

}  // namespace
}  // namespace kestrum
