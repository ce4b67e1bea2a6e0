#include "ReviewTestEvents.h"
#include "core/review/PlaybackControlTexts.h"
#include "core/review/TimelineEventPresentation.h"
#include "core/review/TimelineHoverCardContent.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace kestrum {
namespace {

using test::kBlue;
using test::kRed;
using test::makeEvent;
using test::withDetail;
using test::withLocalKill;

RecordingEvent withDeath(RecordingEvent event) {
    event.isLocalPlayerDeath = true;
    return event;
}

RecordingEvent withStreak(RecordingEvent event, std::int64_t count) {
    event.multiKillCount = count;
    return event;
}

struct TitleCase {
    RecordingEvent event;
    const char* title;
    const char* symbol;
    const char* art;  // "" for none
};

void PrintTo(const TitleCase& row, std::ostream* out) {
    *out << row.title;
}

class TimelineTitleTable : public testing::TestWithParam<TitleCase> {};

TEST_P(TimelineTitleTable, ReadsAndLooksAsTheTimelineShowsIt) {
    const TitleCase& row = GetParam();
    EXPECT_EQ(timelineEventTitle(row.event), QString::fromUtf8(row.title));
    EXPECT_EQ(timelineEventSymbolName(row.event), QString::fromUtf8(row.symbol));
    EXPECT_EQ(timelineEventArtName(row.event).value_or(QString()), QString::fromUtf8(row.art));
}

INSTANTIATE_TEST_SUITE_P(
    Table, TimelineTitleTable,
    testing::Values(
        TitleCase{withLocalKill(makeEvent(1, "ChampionKill", 1)), "Your kill", "circle.fill", ""},
        TitleCase{withDeath(makeEvent(1, "FirstBlood", 1)), "Your death", "circle.fill", ""},
        TitleCase{makeEvent(1, "FirstBlood", 1), "First blood", "circle.fill", ""},
        TitleCase{makeEvent(1, "ChampionKill", 1), "Champion kill", "circle.fill", ""},
        TitleCase{withLocalKill(makeEvent(1, "TurretKilled", 1)), "Turret", "building.columns.fill",
                  "minimap_turret"},
        TitleCase{makeEvent(1, "GameStart", 1), "Game start", "play.fill", ""},
        TitleCase{makeEvent(1, "GameEnd", 1), "Game end", "flag.checkered", ""},
        TitleCase{withStreak(makeEvent(1, "Multikill", 1), 3), "Triple kill", "bolt.horizontal.circle.fill",
                  ""},
        TitleCase{withDetail(makeEvent(1, "DragonKill", 1), "Elder"), "Dragon", "crown.fill", "dragon_elder"},
        TitleCase{withDetail(makeEvent(1, "DragonKill", 1), "Chemtech"), "Dragon", "atom", "dragon_chemtech"},
        TitleCase{makeEvent(1, "BaronKill", 1), "Baron", "crown.fill", "baron"},
        TitleCase{makeEvent(1, "HeraldKill", 1), "Rift Herald", "shield.fill", "rift_herald"},
        TitleCase{makeEvent(1, "HordeKill", 1), "Void Grub", "ladybug.fill", "void_grub"},
        TitleCase{makeEvent(1, "InhibKilled", 1), "Inhibitor", "diamond.bottomhalf.filled",
                  "minimap_inhibitor"},
        TitleCase{makeEvent(1, "NexusDestroyed", 1), "Nexus destroyed", "burst.fill", "minimap_nexus"}));

struct KillerSymbolCase {
    const char* killer;
    const char* symbol;  // "" for a player
};

void PrintTo(const KillerSymbolCase& row, std::ostream* out) {
    *out << row.killer;
}

class KillerSymbolTable : public testing::TestWithParam<KillerSymbolCase> {};

TEST_P(KillerSymbolTable, DrawsKillersWhoAreNoPlayers) {
    EXPECT_EQ(killerSymbolName(GetParam().killer).value_or(QString()), QString::fromUtf8(GetParam().symbol));
}

INSTANTIATE_TEST_SUITE_P(Table, KillerSymbolTable,
                         testing::Values(KillerSymbolCase{"Minion_T200L0S07N0123", "person.3.fill"},
                                         KillerSymbolCase{"Turret_T1_C_05_A", "building.columns.fill"},
                                         KillerSymbolCase{"Barracks_T2_L1", "diamond.bottomhalf.filled"},
                                         KillerSymbolCase{"Inhibitor", "diamond.bottomhalf.filled"},
                                         KillerSymbolCase{"SRU_Dragon_Fire", "flame.fill"},
                                         KillerSymbolCase{"SRU_Baron", "crown.fill"},
                                         KillerSymbolCase{"SRU_RiftHerald", "shield.fill"},
                                         KillerSymbolCase{"SRU_Gromp13.1.1", "pawprint.fill"},
                                         KillerSymbolCase{"Neutral Monster", "pawprint.fill"},
                                         // A minion under a turret names the minion first.
                                         KillerSymbolCase{"turret minion", "person.3.fill"},
                                         KillerSymbolCase{"Faker#KR1", ""},
                                         KillerSymbolCase{"Sru Player", ""}));

struct VolumeCase {
    double volume;
    bool muted;
    const char* symbol;
};

void PrintTo(const VolumeCase& row, std::ostream* out) {
    *out << row.volume << (row.muted ? " muted" : "");
}

class VolumeSymbolTable : public testing::TestWithParam<VolumeCase> {};

TEST_P(VolumeSymbolTable, FollowsTheLevel) {
    EXPECT_EQ(volumeSymbolName(GetParam().volume, GetParam().muted), QString::fromUtf8(GetParam().symbol));
}

INSTANTIATE_TEST_SUITE_P(Table, VolumeSymbolTable,
                         testing::Values(VolumeCase{1, true, "speaker.slash.fill"},
                                         VolumeCase{0, false, "speaker.slash.fill"},
                                         VolumeCase{0.01, false, "speaker.fill"},
                                         VolumeCase{0.33, false, "speaker.fill"},
                                         VolumeCase{0.34, false, "speaker.wave.1.fill"},
                                         VolumeCase{0.66, false, "speaker.wave.1.fill"},
                                         VolumeCase{2.0 / 3.0, false, "speaker.wave.2.fill"},
                                         VolumeCase{1, false, "speaker.wave.2.fill"}));

TEST(PlaybackControlTexts, ButtonsAndSpeeds) {
    EXPECT_EQ(playButtonToolTip(false), QStringLiteral("Play (Space or P)"));
    EXPECT_EQ(playButtonToolTip(true), QStringLiteral("Pause (Space or P)"));
    EXPECT_EQ(playButtonSymbolName(true), QStringLiteral("pause.fill"));
    EXPECT_EQ(muteToolTip(true), QStringLiteral("Unmute"));
    EXPECT_EQ(muteToolTip(false), QStringLiteral("Mute"));
    QStringList labels;
    for (const double rate : kPlaybackRates) labels << playbackRateLabel(rate);
    EXPECT_EQ(labels.join(QLatin1Char(' ')), QString::fromUtf8("0.25× 0.5× 0.75× 1× 1.25× 1.5× 2× 4× 8×"));
}

TEST(TimelineHoverCardContent, AKillShowsItsKillerAndVictim) {
    RecordingEvent kill = withLocalKill(makeEvent(5, "ChampionKill", 754.9, kBlue, "Faker#KR1"));
    kill.killerChampion = "Ahri";
    kill.victimName = "Lux Main#EUW";
    kill.victimChampion = "Lux";
    const TimelineHoverCardContent card = timelineHoverCardContent({kill}, 0, TimelineKillerNames());
    EXPECT_EQ(card.title, QStringLiteral("Your kill"));
    EXPECT_EQ(card.timeText, QStringLiteral("12:34"));
    ASSERT_TRUE(card.showsPeople && card.killer);
    EXPECT_EQ(*card.killer, (TimelineCardPerson{QStringLiteral("Faker"), QStringLiteral("Ahri"), QString()}));
    EXPECT_EQ(
        card.victims,
        (std::vector<TimelineCardPerson>{{QStringLiteral("Lux Main"), QStringLiteral("Lux"), QString()}}));
}

TEST(TimelineHoverCardContent, AnExecutionShowsTheTurretBySymbol) {
    RecordingEvent kill = makeEvent(5, "ChampionKill", 60, kRed, "Turret_T1_L_03_A");
    kill.victimName = "Jinx#EUW";
    kill.victimChampion = "Jinx";
    const TimelineHoverCardContent card = timelineHoverCardContent({kill}, 0, TimelineKillerNames());
    ASSERT_TRUE(card.killer);
    EXPECT_EQ(card.killer->symbolName, QStringLiteral("building.columns.fill"));
    EXPECT_TRUE(card.killer->championIdentifier.isEmpty());
}

TEST(TimelineHoverCardContent, AMultikillGathersItsStreaksVictims) {
    const auto killOf = [](std::int64_t id, double time, const char* killer, const char* victim) {
        RecordingEvent kill = makeEvent(id, "ChampionKill", time, kBlue, killer);
        kill.victimName = victim;
        return kill;
    };
    const std::vector<RecordingEvent> events{
        killOf(1, 80, "Jinx", "Too Early"),  // more than 10 s before the next: another streak
        killOf(2, 95, "Jinx", "Zed"),
        killOf(3, 97, "Lux", "Not Jinx's"),
        killOf(4, 104, "Jinx", "Ahri"),
        killOf(5, 105, "Jinx", "Lee Sin"),
        withStreak(makeEvent(6, "Multikill", 105.2, kBlue, "Jinx"), 4),
        makeEvent(7, "TurretKilled", 106, kBlue)};
    const TimelineHoverCardContent card = timelineHoverCardContent(events, 5, TimelineKillerNames());
    // Four in the streak, but the chain breaks at the 15 s gap before "Zed".
    EXPECT_EQ(card.title, QStringLiteral("Quadra kill"));
    QStringList victims;
    for (const TimelineCardPerson& victim : card.victims) victims << victim.name;
    EXPECT_EQ(victims,
              (QStringList{QStringLiteral("Zed"), QStringLiteral("Ahri"), QStringLiteral("Lee Sin")}));

    const TimelineHoverCardContent turret = timelineHoverCardContent(events, 6, TimelineKillerNames());
    EXPECT_FALSE(turret.showsPeople);
    EXPECT_TRUE(turret.victims.empty());
}

}  // namespace
}  // namespace kestrum
