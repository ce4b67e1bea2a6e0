#include "core/dashboard/MatchCardPresentation.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

namespace kestrum {
namespace {

namespace card = MatchCardPresentation;
using std::nullopt;

MatchVideo withMap(std::optional<std::int64_t> mapID, std::optional<std::string> gameMode) {
    MatchVideo match;
    match.url = QStringLiteral("/r/a.mov");
    match.mapID = mapID;
    match.gameMode = std::move(gameMode);
    return match;
}

MatchVideo withKda(std::optional<std::int64_t> kills, std::optional<std::int64_t> deaths,
                   std::optional<std::int64_t> assists) {
    MatchVideo match;
    match.finalKills = kills;
    match.finalDeaths = deaths;
    match.finalAssists = assists;
    return match;
}

TEST(MatchCardPresentation, TheMapComesFromItsIdentifierThenFromTheMode) {
    struct Row {
        std::optional<std::int64_t> mapID;
        std::optional<std::string> mode;
        std::optional<QString> art;
        QString label;
    };
    const std::vector<Row> rows = {
        {11, "CLASSIC", "map_summoners_rift", "Summoner's Rift"},
        {11, "ARAM", "map_summoners_rift", "Summoner's Rift"},  // the identifier wins
        {12, "ARAM", "map_howling_abyss", "Howling Abyss"},
        {21, nullopt, "map_nexus_blitz", "Nexus Blitz"},
        {30, "CHERRY", "map_arena", "Arena"},
        {nullopt, "classic", "map_summoners_rift", "League map"},
        {99, "CLASSIC", "map_summoners_rift", "League map"},
        {nullopt, "ARAM", nullopt, "League map"},
        {nullopt, nullopt, nullopt, "League map"},
        {11, "PRACTICE", "map_practice_tool", "Practice Tool"},
        {nullopt, "tool", "map_practice_tool", "Practice Tool"},
    };
    for (const Row& row : rows) {
        const card::MapArt art = card::mapArt(withMap(row.mapID, row.mode));
        EXPECT_EQ(art.artName, row.art) << row.mode.value_or("-");
        EXPECT_EQ(art.label, row.label) << row.mode.value_or("-");
    }
}

TEST(MatchCardPresentation, ATitleBreaksOnlyBetweenItsParts) {
    const QString nbsp(QChar(0x00A0));
    const struct {
        const char* title;
        QString drawn;
    } rows[] = {
        {"Ranked Solo/Duo · Lee Sin · Jungle", "Ranked" + nbsp + "Solo/Duo · Lee" + nbsp + "Sin · Jungle"},
        {"Classic · Ahri · Mid", "Classic · Ahri · Mid"},
        {"Lee Sin", "Lee" + nbsp + "Sin"},
        {"", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(card::cardTitle(QString::fromUtf8(row.title)), row.drawn);
    }
}

TEST(MatchCardPresentation, RolesMapInAnyCase) {
    struct Row {
        std::optional<std::string> position;
        std::optional<QString> art;
        std::optional<QString> label;
    };
    const std::vector<Row> rows = {
        {"TOP", "role_top", "Top"},
        {"jungle", "role_jungle", "Jungle"},
        {"Middle", "role_mid", "Mid"},
        {"BOTTOM", "role_bot", "Bot"},
        {"utility", "role_support", "Support"},
        {"SUPPORT", "role_support", nullopt},
        {"MID", nullopt, nullopt},
        {nullopt, nullopt, nullopt},
    };
    for (const Row& row : rows) {
        const card::RoleArt role = card::roleArt(row.position);
        EXPECT_EQ(role.artName, row.art) << row.position.value_or("-");
        EXPECT_EQ(role.label, row.label) << row.position.value_or("-");
    }
}

TEST(MatchCardPresentation, KdaLineAndRatio) {
    struct Row {
        MatchVideo match;
        QString line;
        QString ratio;
    };
    const std::vector<Row> rows = {
        {withKda(5, 2, 7), "5/2/7", "6.00:1 KDA"},  {withKda(0, 0, 0), "0/0/0", "Perfect KDA"},
        {withKda(3, 0, 9), "3/0/9", "Perfect KDA"}, {withKda(1, 3, 1), "1/3/1", "0.67:1 KDA"},
        {withKda(4, nullopt, 2), "–/–/–", "—"},     {withKda(nullopt, nullopt, nullopt), "–/–/–", "—"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(card::kdaLine(row.match), row.line);
        EXPECT_EQ(card::kdaRatio(row.match), row.ratio) << row.line.toStdString();
    }
}

TEST(MatchCardPresentation, TheAccessibilityLabelReadsResultChampionPositionAndKda) {
    MatchVideo full = withKda(5, 2, 7);
    full.didWin = true;
    full.champion = "Ahri";
    full.role = "MIDDLE";
    MatchVideo loss = full;
    loss.didWin = false;
    loss.role = "SUPPORT";
    MatchVideo unknown = withKda(nullopt, 1, 1);
    unknown.champion = "Lux";
    const std::vector<std::pair<MatchVideo, QString>> rows = {
        {full, "Victory, Ahri, Mid, final KDA 5/2/7"},
        {loss, "Defeat, Ahri, SUPPORT, final KDA 5/2/7"},
        {unknown, "Lux"},
    };
    for (const auto& [match, label] : rows) EXPECT_EQ(card::accessibilityLabel(match), label);
}

TEST(MatchCardPresentation, ThePortraitIsKeyedByTheAssetNameFirst) {
    MatchVideo match;
    EXPECT_EQ(card::championIdentifier(match), QString());
    match.champion = "Kai'Sa";
    EXPECT_EQ(card::championIdentifier(match), QStringLiteral("Kai'Sa"));
    match.championAssetName = "Kaisa";
    EXPECT_EQ(card::championIdentifier(match), QStringLiteral("Kaisa"));
}

}  // namespace
}  // namespace kestrum
