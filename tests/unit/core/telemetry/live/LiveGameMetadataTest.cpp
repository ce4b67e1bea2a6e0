#include "core/telemetry/live/LiveGameMetadata.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace kestrum {
namespace {

LiveGameData::Player player(std::string summonerName, std::string championName,
                            std::optional<std::string> rawChampionName = std::nullopt,
                            std::string position = "MIDDLE") {
    return {std::move(championName), std::move(position), std::move(rawChampionName),
            std::move(summonerName)};
}

TEST(metadataChampionName, TakesTheKeyOnlyFromTheTwoKnownForms) {
    struct Case {
        std::optional<std::string> raw;
        std::string expected;
    };
    const std::vector<Case> cases = {
        {std::nullopt, "Miss Fortune"},
        {"game_character_displayname_MissFortune", "MissFortune"},
        {"Character_MissFortune_Name", "MissFortune"},
        // The scoreboard's wider rule would take "MissFortune" here; the recording's does not.
        {"TFT_Set9_MissFortune", "Miss Fortune"},
        {"Character_MissFortune", "Miss Fortune"},
        {"MissFortune_Name", "Miss Fortune"},
        {"game_character_displayname_", ""},
        {"Character_Name", ""},
        {"", "Miss Fortune"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.raw.value_or("<absent>"));
        EXPECT_EQ(metadataChampionName(player("p", "Miss Fortune", c.raw)), c.expected);
    }
}

TEST(recordingMetadataFrom, FindsTheActivePlayerIgnoringCaseOnly) {
    struct Case {
        const char* name;
        std::string activeName;
        std::optional<std::string> champion;
        std::optional<std::string> position;
    };
    const std::vector<Case> cases = {
        {"exact", "Kestrel", "Ahri", "MIDDLE"},
        {"other case", "kESTREL", "Ahri", "MIDDLE"},
        {"untrimmed does not match", " Kestrel", std::nullopt, std::nullopt},
        {"first of two matches", "Twin", "Garen", "TOP"},
        {"no match is still a result", "Nobody", std::nullopt, std::nullopt},
    };
    LiveGameData data;
    data.gameData.gameMode = "CLASSIC";
    data.allPlayers = {player("Kestrel", "Ahri", "game_character_displayname_Ahri"),
                       player("twin", "Garen", std::nullopt, "TOP"),
                       player("Twin", "Darius", std::nullopt, "JUNGLE")};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        data.activePlayer.summonerName = c.activeName;
        const RecordingMetadata metadata = recordingMetadataFrom(data);
        EXPECT_EQ(metadata.gameID, std::nullopt);
        EXPECT_EQ(metadata.gameMode, "CLASSIC");
        EXPECT_EQ(metadata.champion, c.champion);
        EXPECT_EQ(metadata.position, c.position);
    }
}

}  // namespace
}  // namespace kestrum
