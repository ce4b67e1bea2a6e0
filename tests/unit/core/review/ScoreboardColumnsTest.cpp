#include "core/review/MatchParticipantIndex.h"
#include "core/review/RankToolTip.h"
#include "core/review/ScoreboardColumns.h"
#include "support/ScoreboardPlayerRow.h"

#include <gtest/gtest.h>

namespace kestrum {
namespace {

RecordingScoreboardPlayer player(std::string name, std::string team, std::optional<std::string> position,
                                 std::int64_t kills = 0) {
    RecordingScoreboardPlayer row = test::scoreboardPlayer(std::move(name), "Ahri", std::move(team));
    row.position = std::move(position);
    row.scores.kills = kills;
    return row;
}

std::vector<std::string> namesOf(const std::vector<const RecordingScoreboardPlayer*>& column) {
    std::vector<std::string> names;
    for (const RecordingScoreboardPlayer* row : column) names.push_back(row->summonerName);
    return names;
}

TEST(ScoreboardColumns, SplitsTheSidesAndOrdersByPositionThenName) {
    RecordingScoreboardPlayer withRiotID = player("zed", "order", "MIDDLE", 2);
    withRiotID.riotId = "Aaron#EUW";  // the Riot ID orders, not the summoner name
    const RecordingScoreboardSnapshot snapshot{
        1,
        1,
        {player("Support", "ORDER", "UTILITY", 1), player("Bot", "ORDER", "bottom", 4),
         player("Nobody", "ORDER", std::nullopt), player("Mid", "ORDER", "MIDDLE", 3), withRiotID,
         player("Odd", "ORDER", "MID"), player("Red Top", "CHAOS", "TOP", 5),
         player("Spectator", "NEUTRAL", "TOP", 9)}};

    const auto blue = teamColumn(snapshot, kBlueTeamWord);
    // "MID" is no word of the order: it ranks with the unknown, and equal ranks go by name.
    EXPECT_EQ(namesOf(blue), (std::vector<std::string>{"zed", "Mid", "Bot", "Support", "Nobody", "Odd"}));
    EXPECT_EQ(teamKillTotal(blue), 10);
    const auto red = teamColumn(snapshot, kRedTeamWord);
    EXPECT_EQ(namesOf(red), (std::vector<std::string>{"Red Top"}));
    EXPECT_EQ(teamKillTotal(red), 5);
}

TEST(ScoreboardColumns, RowTexts) {
    EXPECT_EQ(roleName("MIDDLE"), QStringLiteral("Mid"));
    EXPECT_EQ(roleName("utility"), QStringLiteral("Support"));
    EXPECT_EQ(roleName("bottom"), QStringLiteral("Bot"));
    EXPECT_TRUE(roleName("NONE").isEmpty());
    EXPECT_TRUE(roleName(std::nullopt).isEmpty());
    EXPECT_EQ(kdaText({2, 150, 3, 7}), QStringLiteral("7 / 3 / 2"));

    RecordingScoreboardPlayer row = player("Summoner", "ORDER", "TOP");
    EXPECT_EQ(riotIdText(row), QStringLiteral("Summoner"));
    row.riotIdGameName = "Game";
    EXPECT_EQ(riotIdText(row), QStringLiteral("Game"));
    row.riotIdTagLine = "EUW";
    EXPECT_EQ(riotIdText(row), QStringLiteral("Game#EUW"));
    row.riotId = "Full#TAG";
    EXPECT_EQ(riotIdText(row), QStringLiteral("Full#TAG"));
    EXPECT_EQ(riotIdToolTip(QStringLiteral("Full#TAG"), false),
              QStringLiteral("Riot ID Full#TAG. Click to copy"));
    EXPECT_EQ(riotIdToolTip(QStringLiteral("Full#TAG"), true), QStringLiteral("Riot ID copied"));
}

RecordingMatchData::Rank rank(std::string queue, std::string tier, std::string division,
                              std::int64_t points) {
    return {std::move(queue), std::move(tier), std::move(division), points};
}

struct RankCase {
    RecordingMatchData::Rank current;
    std::optional<RecordingMatchData::Rank> high;
    const char* tip;
};

void PrintTo(const RankCase& row, std::ostream* out) {
    *out << row.tip;
}

class RankToolTipTable : public testing::TestWithParam<RankCase> {};

TEST_P(RankToolTipTable, ReadsTheRanks) {
    RecordingMatchData::Participant participant;
    participant.currentRank = GetParam().current;
    participant.seasonHighRank = GetParam().high;
    EXPECT_EQ(rankToolTip(participant), QString::fromUtf8(GetParam().tip));
}

INSTANTIATE_TEST_SUITE_P(
    Table, RankToolTipTable,
    testing::Values(
        RankCase{rank("RANKED_SOLO_5x5", "GOLD", "II", 57), std::nullopt, "Ranked Solo/Duo: Gold II, 57 LP"},
        RankCase{rank("RANKED_FLEX_SR", "MASTER", "", 212), rank("RANKED_FLEX_SR", "GRANDMASTER", "", 0),
                 "Ranked Flex: Master, 212 LP. Highest observed this season: Grandmaster."},
        RankCase{rank("RANKED_TEAM_5x5", "silver", "IV", 0), std::nullopt, "Ranked 5s: Silver IV, 0 LP"},
        RankCase{rank("RANKED_TEAM_3x3", "IRON", "I", 1), std::nullopt, "Ranked 3s: Iron I, 1 LP"},
        RankCase{rank("CHERRY", "EMERALD", "III", 10), std::nullopt, "Ranked: Emerald III, 10 LP"}));

TEST(RankToolTip, NoCurrentRankNoTip) {
    EXPECT_FALSE(rankToolTip(RecordingMatchData::Participant{}).has_value());
}

RecordingMatchData::Participant participant(std::string gameName, std::string tag, std::string champion,
                                            std::int64_t teamID, std::int64_t points) {
    RecordingMatchData::Participant result;
    result.riotIdGameName = std::move(gameName);
    result.riotIdTagline = std::move(tag);
    result.championName = std::move(champion);
    result.teamID = teamID;
    result.currentRank = rank("RANKED_SOLO_5x5", "GOLD", "I", points);
    return result;
}

TEST(MatchParticipantIndex, JoinsByRiotIDThenByChampionOnTheSameSide) {
    RecordingMatchData match;
    match.participants = {participant("Faker", "KR1", "Ahri", 100, 1),
                          participant("Other", "EUW", "Lux", 100, 2),
                          participant("Enemy", "EUW", "Lux", 200, 3)};
    const MatchParticipantIndex index(&match);

    RecordingScoreboardPlayer byID = test::scoreboardPlayer("x", "Zed", "ORDER");
    byID.riotId = " faker#kr1";
    ASSERT_NE(index.find(byID), nullptr);
    EXPECT_EQ(index.find(byID)->currentRank->leaguePoints, 1);

    const RecordingScoreboardPlayer redLux = test::scoreboardPlayer("unknown", "Lux", "CHAOS");
    ASSERT_NE(index.find(redLux), nullptr);
    EXPECT_EQ(index.find(redLux)->currentRank->leaguePoints, 3);
    EXPECT_EQ(index.find(test::scoreboardPlayer("nobody", "Zed", "ORDER")), nullptr);

    // With three team ids the sides are unknown: the champion alone joins.
    match.participants.push_back(participant("Third", "NA", "Zed", 300, 4));
    const MatchParticipantIndex withoutSides(&match);
    EXPECT_EQ(withoutSides.find(test::scoreboardPlayer("nobody", "Zed", "ORDER"))->currentRank->leaguePoints,
              4);
    EXPECT_EQ(MatchParticipantIndex(nullptr).find(redLux), nullptr);
}

}  // namespace
}  // namespace kestrum
