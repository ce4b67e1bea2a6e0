#include "LibraryTestSupport.h"
#include "core/library/MatchVideoDerivation.h"

namespace kestrum {
namespace {

using std::nullopt;
using Ids = std::optional<std::vector<std::int64_t>>;
using test::boardPlayer;
using test::participant;
using test::snapshotAt;

MatchVideo derive(const char* fileName, const std::optional<RecordingSessionData>& session) {
    const QString path = QStringLiteral("/videos/") + QString::fromUtf8(fileName);
    return deriveMatchVideo(path, ReferenceDate{8e8}, ParsedRecordingFileName::parse(path), session);
}

RecordingSessionData withMatch(std::vector<RecordingMatchData::Participant> participants,
                               std::int64_t queue = 420) {
    RecordingSessionData session = test::savedSession();
    session.matchData =
        RecordingMatchData{"EUW1_1", "14.1.1", queue, 1834, nullopt, std::move(participants), {}};
    return session;
}

RecordingSessionData withBoard(std::vector<RecordingScoreboardSnapshot> snapshots) {
    RecordingSessionData session = test::savedSession();
    session.scoreboard = std::move(snapshots);
    return session;
}

// The local player's share of the team's kills, from the post-game record or, without one, from the
// last snapshot: rounded half away from zero and capped at 100; a team without kills gives 0.
TEST(MatchVideoDerivation, KillParticipation) {
    const auto me = [](std::int64_t kills, std::int64_t assists) {
        return participant("Ahri", "MIDDLE", 100, kills, assists);
    };
    const auto mate = [](std::int64_t kills) { return participant("Garen", "TOP", 100, kills, 0); };
    const auto enemy = participant("Zed", "MIDDLE", 200, 30, 0);
    const auto board = [](std::int64_t kills, std::int64_t assists, std::int64_t mateKills) {
        return withBoard({snapshotAt(100, {boardPlayer("MIDDLE", "Ahri", "ORDER", {assists, 0, 0, kills}),
                                           boardPlayer("TOP", "Garen", "ORDER", {0, 0, 0, mateKills}),
                                           boardPlayer("MIDDLE", "Zed", "CHAOS", {0, 0, 0, 40})})});
    };
    const std::vector<std::tuple<const char*, RecordingSessionData, std::optional<std::int64_t>>> rows{
        {"(10 + 12) / 20 is capped", withMatch({me(10, 12), mate(10), enemy}), 100},
        {"1 / 8 = 12.5 rounds up", withMatch({me(1, 0), mate(7), enemy}), 13},
        {"2 / 3", withMatch({me(1, 1), mate(2), enemy}), 67},
        {"team without kills", withMatch({me(0, 3), mate(0), enemy}), 0},
        {"scoreboard: 5 / 8", board(2, 3, 6), 63},
        {"scoreboard team without kills", board(0, 0, 0), 0},
        {"no local participant, no board", withMatch({mate(3), enemy}), nullopt},
    };
    for (const auto& [what, session, expected] : rows) {
        EXPECT_EQ(derive("x_y_CLASSIC_Ahri_MIDDLE.mov", session).killParticipation, expected) << what;
    }
}

TEST(MatchVideoDerivation, ItemLists) {
    const auto me = [](const test::Items& items) {
        return boardPlayer("MIDDLE", "Ahri", "ORDER", {}, items);
    };
    const auto other = boardPlayer("TOP", "Garen", "ORDER", {}, {{3078, 0}});
    // Arena names carry no lane, so the local player there is the one without a position.
    const auto arenaMe = boardPlayer(nullopt, "Ahri", "ORDER", {}, {{3078, 0}, {447100, 1}});
    const char* classic = "x_y_CLASSIC_Ahri_MIDDLE.mov";
    const std::vector<std::tuple<const char*, const char*, RecordingSessionData, Ids, Ids>> rows{
        {"slots 0 to 5 by slot", classic,
         withBoard({snapshotAt(9, {other, me({{1001, 3}, {3078, 0}, {3340, 6}, {2003, 1}, {3031, -1}})})}),
         Ids{{3078, 2003, 1001}}, Ids{{3078}}},
        {"first purchase by game time; a variant counts as its item, kept raw", classic,
         withBoard({snapshotAt(600, {me({{3031, 1}, {3078, 0}})}), snapshotAt(300, {me({{773078, 2}})}),
                    snapshotAt(900, {me({{3031, 0}, {3078, 1}, {1001, 2}})})}),
         Ids{{3031, 3078, 1001}}, Ids{{773078, 3078, 3031}}},
        {"Arena list in Arena", "x_y_CHERRY_Ahri.mov",
         withBoard({snapshotAt(60, {me({{3031, 0}}), arenaMe})}), Ids{{3078, 447100}}, Ids{{447100}}},
        {"Arena ids elsewhere", classic, withBoard({snapshotAt(60, {me({{447100, 0}, {220001, 1}})})}),
         Ids{{447100, 220001}}, nullopt},
        {"no items", classic, withBoard({snapshotAt(60, {me({})})}), Ids{std::vector<std::int64_t>{}},
         nullopt},
        {"not in the last snapshot", classic,
         withBoard({snapshotAt(60, {me({{3078, 0}})}), snapshotAt(120, {other})}), nullopt, Ids{{3078}}},
        {"empty scoreboard", classic, withBoard({}), nullopt, nullopt},
        {"a name that finds nobody", "clip.mov", withBoard({snapshotAt(60, {me({{3078, 0}})})}), nullopt,
         nullopt},
    };
    for (const auto& [what, fileName, session, finalItems, legendary] : rows) {
        const MatchVideo video = derive(fileName, session);
        EXPECT_EQ(video.finalItemIDs, finalItems) << what;
        EXPECT_EQ(video.legendaryItemIDsInPurchaseOrder, legendary) << what;
    }
}

// Scores favour the scoreboard, champion and role the post-game record; the file name fills the rest.
TEST(MatchVideoDerivation, FieldsFromBothSourcesAndTheName) {
    RecordingSessionData session =
        withMatch({participant("Zed", "MIDDLE", 200, 9, 9), participant("MonkeyKing", "JUNGLE", 100, 1, 3)});
    auto& wukongAfter = session.matchData->participants[1];
    wukongAfter.totalMinionsKilled = 100;
    wukongAfter.neutralMinionsKilled = 20;
    wukongAfter.win = true;
    RecordingScoreboardPlayer wukong = boardPlayer("JUNGLE", "Wukong", "ORDER", {7, 150, 6, 5});
    wukong.rawChampionName = "game_character_displayname_MonkeyKing";
    session.scoreboard = {snapshotAt(1799.9, {wukong})};

    const MatchVideo full = derive("x_y_CLASSIC_monkeyking_JUNGLE.mov", session);
    using Values = std::vector<std::optional<std::int64_t>>;
    EXPECT_EQ((Values{full.finalKills, full.finalDeaths, full.finalAssists, full.finalCreepScore}),
              (Values{5, 6, 7, 150}));
    EXPECT_EQ((Values{full.queueID, full.mapID, full.gameDuration}), (Values{420, 11, 1834}));
    EXPECT_EQ(full.champion, "MonkeyKing");
    EXPECT_EQ(full.didWin, true);
    EXPECT_EQ(full.matchTitle, "Classic · Wukong · Jungle");

    session.scoreboard.reset();
    wukongAfter.teamPosition = "";
    const MatchVideo postGame = derive("x_y_CLASSIC_monkeyking.mov", session);
    EXPECT_EQ(postGame.finalCreepScore, 120);
    EXPECT_EQ(postGame.championAssetName, "MonkeyKing");
    EXPECT_EQ(postGame.role, nullopt);  // an empty position gives way to the name's, which is absent

    session.matchData.reset();
    session.scoreboard = {snapshotAt(1799.9, {wukong})};
    const MatchVideo boardOnly = derive("x_y_CLASSIC_monkeyking_JUNGLE.mov", session);
    EXPECT_EQ(boardOnly.champion, "monkeyking");
    EXPECT_EQ(boardOnly.championAssetName, "MonkeyKing");
    EXPECT_EQ((Values{boardOnly.gameDuration, boardOnly.mapID}), (Values{1799, nullopt}));

    const MatchVideo nameOnly = derive("2026-01-02_10-00-00_ARAM_Ahri_NONE.mov", nullopt);
    MatchVideo expected = test::entry("/videos/2026-01-02_10-00-00_ARAM_Ahri_NONE.mov", {}, "ARAM");
    expected.date = ReferenceDate{8e8};
    expected.matchTitle = "ARAM · Ahri";
    expected.champion = expected.championAssetName = "Ahri";
    expected.mapID = 12;
    EXPECT_EQ(nameOnly, expected);
}

// The map of every row of the queue table, and the mode words of the name that come before it.
TEST(MatchVideoDerivation, MapByModeWordThenQueue) {
    using Map = std::optional<std::int64_t>;
    std::vector<std::tuple<std::optional<std::string>, std::optional<std::int64_t>, Map>> rows;
    for (const std::int64_t queue :
         {0, 4, 6, 42, 400, 420, 430, 440, 480, 490, 700, 830, 840, 850, 900, 1020, 1400})
        rows.emplace_back("CLASSIC", queue, 11);
    rows.emplace_back("CLASSIC", 450, 12);
    rows.emplace_back("CLASSIC", 1300, 21);
    for (const std::int64_t queue : {1700, 1710, 1740}) rows.emplace_back("CLASSIC", queue, 30);
    for (const std::int64_t queue : {1, 410, 1720, 1810, 2000, -1})
        rows.emplace_back("CLASSIC", queue, nullopt);
    rows.emplace_back("CLASSIC", nullopt, nullopt);
    rows.emplace_back(nullopt, 420, 11);
    // The mode word of the name wins over the queue, in any case.
    rows.emplace_back("ARAM", 420, 12);
    rows.emplace_back("kiwi", nullopt, 12);
    rows.emplace_back("Cherry", 450, 30);
    rows.emplace_back("URF", 900, 11);
    for (const auto& [mode, queue, expected] : rows) {
        std::optional<RecordingMatchData> matchData;
        if (queue) matchData = RecordingMatchData{"EUW1_1", "14.1.1", *queue, 1834, nullopt, {}, {}};
        EXPECT_EQ(mapIDFor(mode, matchData), expected)
            << mode.value_or("(no mode)") << " " << queue.value_or(-99);
    }
}

TEST(MatchVideoDerivation, SortIsNewestFirstAndStable) {
    std::vector<MatchVideo> matches;
    for (const auto& [path, seconds] :
         std::vector<std::pair<QString, int>>{{"a", 10}, {"b", 30}, {"c", 10}, {"d", 20}, {"e", 30}}) {
        matches.push_back(test::entry(path, QDateTime::fromSecsSinceEpoch(seconds)));
    }
    sortNewestFirst(matches);
    QStringList order;
    for (const auto& video : matches) order << video.url;
    EXPECT_EQ(order, (QStringList{"b", "e", "d", "a", "c"}));
}

}  // namespace
}  // namespace kestrum
