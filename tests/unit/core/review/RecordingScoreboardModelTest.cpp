#include "ReviewTestEvents.h"
#include "base/async/ManualClock.h"
#include "core/review/RecordingScoreboardModel.h"
#include "platform/fake/FakeFileActions.h"
#include "support/ScoreboardPlayerRow.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSignalSpy>

namespace kestrum {
namespace {

using namespace std::chrono_literals;
using test::kBlue;
using test::makeEvent;

RecordingScoreboardPlayer player(const std::string& name, const std::string& champion,
                                 const std::string& team, const std::string& position, std::int64_t kills) {
    RecordingScoreboardPlayer row = test::scoreboardPlayer(name, champion, team);
    row.position = position;
    row.riotId = name + "#EUW";
    row.scores = {1, 100, 2, kills};
    row.items = {{1, "Boots", 3006, 1100, 1}, {1, "Ward", 3340, 0, 6}};
    return row;
}

// Five blue players and four red ones, kills growing with the snapshot.
RecordingScoreboardSnapshot snapshotAt(double videoTime, double gameTime, std::int64_t kills) {
    return {
        videoTime,
        gameTime,
        {player("Blue Sup", "Nautilus", "ORDER", "UTILITY", 0),
         player("Blue Top", "Garen", "ORDER", "TOP", kills), player("Blue Mid", "Ahri", "ORDER", "MIDDLE", 1),
         player("Blue Bot", "Jinx", "ORDER", "BOTTOM", 2), player("Blue Jgl", "Kayn", "ORDER", "JUNGLE", 0),
         player("Red Top", "Darius", "CHAOS", "TOP", 3), player("Red Mid", "Lux", "CHAOS", "MIDDLE", 0),
         player("Red Bot", "Kai'Sa", "CHAOS", "BOTTOM", 1),
         player("Red Sup", "Rell", "CHAOS", "UTILITY", 0)}};
}

std::shared_ptr<const RecordingDetail> recording() {
    auto detail = std::make_shared<RecordingDetail>();
    // Offsets 10, 12, 1000: the clock runs 12 s ahead of the movie.
    detail->scoreboard = {snapshotAt(100, 110, 1), snapshotAt(101, 113, 2), snapshotAt(102, 1102, 3)};
    detail->events = {makeEvent(1, "HordeKill", 100.5, kBlue), makeEvent(2, "BaronKill", 101.5, kBlue)};
    detail->duration = 1800;
    RecordingMatchData match;
    RecordingMatchData::Participant ahri;
    ahri.riotIdGameName = "Blue Mid";
    ahri.riotIdTagline = "EUW";
    ahri.championName = "Ahri";
    ahri.currentRank = RecordingMatchData::Rank{"RANKED_SOLO_5x5", "DIAMOND", "IV", 75};
    match.participants = {ahri};
    detail->matchData = match;
    return detail;
}

class RecordingScoreboardModelTest : public testing::Test {
  protected:
    RecordingScoreboardModelTest() { model.setRecording(recording()); }
    ~RecordingScoreboardModelTest() override { QCoreApplication::processEvents(); }

    QStringList column(const ReviewRowListModel& rows, const char* role) const {
        QStringList values;
        for (int row = 0; row < rows.count(); ++row) values << rows.value(row, role).toString();
        return values;
    }
    QString blueID(int row) const { return model.blueRows()->value(row, "playerID").toString(); }

    ManualClock clock;
    FakeFileActions fileActions;
    RecordingScoreboardModel model{fileActions, clock};
};

TEST_F(RecordingScoreboardModelTest, PairsTheTeamsByIndexInTheirOrder) {
    model.setCurrentTime(50);  // before the first snapshot: the first one shows
    EXPECT_EQ(model.currentSnapshotIndex(), 0U);
    ASSERT_EQ(model.blueRows()->count(), 5);
    ASSERT_EQ(model.redRows()->count(), 5);
    EXPECT_EQ(column(*model.blueRows(), "displayName"),
              (QStringList{"Blue Top", "Blue Jgl", "Blue Mid", "Blue Bot", "Blue Sup"}));
    EXPECT_EQ(column(*model.redRows(), "roleName"), (QStringList{"Top", "Mid", "Bot", "Support", ""}));
    EXPECT_FALSE(model.redRows()->value(4, "exists").toBool()) << "the shorter team leaves a gap";
    EXPECT_EQ(model.blueRows()->value(0, "kdaText").toString(), QStringLiteral("1 / 2 / 1"));
    EXPECT_EQ(
        model.blueRows()->value(0, "itemIDs").toList(),
        (QVariantList{qint64{0}, qint64{3006}, qint64{0}, qint64{0}, qint64{0}, qint64{0}, qint64{3340}}));
    EXPECT_EQ(model.blueRows()->value(2, "rankToolTip").toString(),
              QStringLiteral("Ranked Solo/Duo: Diamond IV, 75 LP"));
    EXPECT_TRUE(model.blueRows()->value(0, "rankToolTip").toString().isEmpty());
    EXPECT_EQ(model.blueTeam()->killsText(), QStringLiteral("4"));

    model.setCurrentTime(101.9);
    EXPECT_EQ(model.blueTeam()->killsText(), QStringLiteral("5"));
    EXPECT_EQ(model.redTeam()->killsText(), QStringLiteral("4"));
}

TEST_F(RecordingScoreboardModelTest, TheHeaderFollowsThePlayhead) {
    model.setCurrentTime(101.6);
    EXPECT_EQ(model.clockText(), QStringLiteral("01:53")) << "101.6 s of movie plus the median offset of 12";
    EXPECT_EQ(model.nextObjectiveName(), QStringLiteral("Void Grubs"));
    EXPECT_EQ(model.nextObjectiveText(), QStringLiteral("6:07"));
    EXPECT_EQ(model.nextDragonHelp(), QStringLiteral("Dragon is available in 3:07"));
    ReviewRowListModel& badges = *model.blueTeam()->badges();
    ASSERT_EQ(badges.count(), 2);
    EXPECT_EQ(badges.value(0, "helpText").toString(), QStringLiteral("1 of 3 Void Grubs secured"));
    EXPECT_EQ(badges.value(1, "kind").toString(), QStringLiteral("baronPowerPlay"));
    EXPECT_EQ(badges.value(1, "text").toString(), QStringLiteral("3:00"));
    EXPECT_EQ(model.redTeam()->badges()->count(), 0);
    EXPECT_EQ(model.blueTeam()->dragonSlots()->count(), 4);

    model.setCurrentTime(100.2);
    EXPECT_EQ(model.blueTeam()->badges()->count(), 0) << "a seek shows the match as it stood then";
}

TEST_F(RecordingScoreboardModelTest, AHoverShowsOnlyAfterItsDelay) {
    QSignalSpy hoverChanged(&model, &RecordingScoreboardModel::hoverChanged);
    model.enterRow(blueID(0));
    clock.advance(119ms);
    EXPECT_TRUE(model.hoveredPlayerID().isEmpty());
    clock.advance(1ms);
    EXPECT_EQ(model.hoveredPlayerID(), blueID(0));
    EXPECT_TRUE(model.blueRows()->value(0, "isHovered").toBool());

    model.leaveRow();
    EXPECT_TRUE(model.hoveredPlayerID().isEmpty()) << "leaving clears at once";

    // Passing over a row on the way to another: the first never shows.
    model.enterRow(blueID(1));
    clock.advance(60ms);
    model.leaveRow();
    model.enterRow(blueID(2));
    clock.advance(60ms);
    EXPECT_TRUE(model.hoveredPlayerID().isEmpty());
    clock.advance(60ms);
    EXPECT_EQ(model.hoveredPlayerID(), blueID(2));
    EXPECT_EQ(hoverChanged.count(), 3);
}

TEST_F(RecordingScoreboardModelTest, LeavingARowAfterTheNextWasEnteredKeepsTheNextOnesHover) {
    model.enterRow(blueID(0));
    clock.advance(120ms);
    model.enterRow(blueID(1));  // the pointer reaches the next row before the first is told it left
    model.leaveRowOf(blueID(0));
    clock.advance(120ms);
    EXPECT_EQ(model.hoveredPlayerID(), blueID(1));
    model.leaveRowOf(blueID(3));  // a row that holds nothing changes nothing
    EXPECT_EQ(model.hoveredPlayerID(), blueID(1));
    model.leaveRowOf(blueID(1));
    EXPECT_TRUE(model.hoveredPlayerID().isEmpty());
    // Left while still pending: the delay ends with no hover.
    model.enterRow(blueID(2));
    model.leaveRowOf(blueID(2));
    clock.advance(200ms);
    EXPECT_TRUE(model.hoveredPlayerID().isEmpty());
}

TEST_F(RecordingScoreboardModelTest, ACopiedRiotIdIsMarkedForOnePointTwoSeconds) {
    QSignalSpy copied(&model, &RecordingScoreboardModel::riotIdCopied);
    model.copyRiotId(blueID(0));
    EXPECT_EQ(fileActions.copiedTexts(), (QStringList{QStringLiteral("Blue Top#EUW")}));
    ASSERT_EQ(copied.count(), 1);
    EXPECT_EQ(copied.front().front().toString(), QStringLiteral("Blue Top#EUW"));
    EXPECT_EQ(model.blueRows()->value(0, "riotIdToolTip").toString(), QStringLiteral("Riot ID copied"));

    clock.advance(600ms);
    model.copyRiotId(blueID(1));  // the first mark's task wakes to another player, and leaves it
    clock.advance(600ms);
    EXPECT_EQ(model.copiedPlayerID(), blueID(1));
    EXPECT_EQ(model.blueRows()->value(0, "riotIdToolTip").toString(),
              QStringLiteral("Riot ID Blue Top#EUW. Click to copy"));
    clock.advance(600ms);
    EXPECT_TRUE(model.copiedPlayerID().isEmpty());

    model.copyRiotId(QStringLiteral("ORDER|nobody"));
    EXPECT_EQ(fileActions.copiedTexts().size(), 2) << "an unknown player copies nothing";
}

TEST_F(RecordingScoreboardModelTest, MarksTheLocalPlayersRow) {
    model.setLocalPlayer({std::string("kaisa"), std::string("BOT")});
    EXPECT_TRUE(model.redRows()->value(2, "isLocalPlayer").toBool());
    EXPECT_FALSE(model.redRows()->value(0, "isLocalPlayer").toBool());
    model.setLocalPlayer({std::string("kaisa"), std::string("TOP")});
    EXPECT_FALSE(model.redRows()->value(2, "isLocalPlayer").toBool());
}

TEST_F(RecordingScoreboardModelTest, NoRecordingMeansNoRowsAndTheUnshiftedClock) {
    model.setRecording(nullptr);
    model.setCurrentTime(75);
    EXPECT_FALSE(model.hasSnapshot());
    EXPECT_EQ(model.blueRows()->count(), 0);
    EXPECT_EQ(model.clockText(), QStringLiteral("01:15"));
    EXPECT_EQ(model.blueTeam()->killsText(), QStringLiteral("0"));
}

}  // namespace
}  // namespace kestrum
