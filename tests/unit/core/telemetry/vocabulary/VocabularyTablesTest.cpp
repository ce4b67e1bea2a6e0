#include "core/telemetry/vocabulary/ChampionNames.h"
#include "core/telemetry/vocabulary/DragonKind.h"
#include "core/telemetry/vocabulary/EventPresentation.h"
#include "core/telemetry/vocabulary/GameModeTitle.h"
#include "core/telemetry/vocabulary/LiveEventNames.h"
#include "core/telemetry/vocabulary/NameNormalForm.h"
#include "core/telemetry/vocabulary/PlayerDisplayName.h"
#include "core/telemetry/vocabulary/QueueTitle.h"
#include "core/telemetry/vocabulary/StructureCode.h"

#include "VocabularyFixtures.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace kestrum {
namespace {

TEST(normalizedName, TrimsWhiteSpaceAndLineEndsThenLowerCases) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"Ashen Kite", "ashen kite"},
        {"  Ashen Kite\r\n", "ashen kite"},
        {"\tGILDED\tMOTH\t", "gilded\tmoth"},
        {"\xc2\xa0\xc3\x89lodie\xe2\x80\xa8", "\xc3\xa9lodie"},  // no-break space, É, line separator
        {"\xce\xa3\xce\x9f\xce\xa6\xce\x99\xce\x91", "\xcf\x83\xce\xbf\xcf\x86\xce\xb9\xce\xb1"},  // ΣΟΦΙΑ
        {" \n ", ""},
    };
    for (const auto& [input, expected] : cases) {
        SCOPED_TRACE(input);
        EXPECT_EQ(normalizedName(input), expected);
    }
}

TEST(isKeptEventName, KeepsTheFifteenNamesAndQuestsOnly) {
    for (const char* name :
         {"ChampionKill", "Multikill", "Ace", "DragonKill", "BaronKill", "HeraldKill", "HordeKill",
          "VoidGrubKill", "TurretKilled", "InhibKilled", "NexusKill", "NexusKilled", "NexusDestroyed",
          "GameStart", "GameEnd", "RoleQuestCompleted", "QUESTdone", "quest"}) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(isKeptEventName(name));
    }
    for (const char* name : {"FirstBlood", "FirstBrick", "MinionsSpawning", "InhibRespawningSoon",
                             "championkill", "ChampionKill ", "Ques t", ""}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(isKeptEventName(name));
    }
}

TEST(structureCodeTeam, ReadsTheOwnerFromTheCode) {
    const std::vector<std::pair<std::optional<std::string>, std::optional<RecordingTeam>>> cases{
        {std::nullopt, std::nullopt},
        {"Turret_T1_C_05_A", RecordingTeam::blue},
        {"Turret_T2_L_03_A", RecordingTeam::red},
        {"Minion_T100L1S05N0106", RecordingTeam::blue},
        {"minion_t200l0s40n0999", RecordingTeam::red},
        {"Barracks_T1_L1", RecordingTeam::blue},
        {"barracks_t2_c1", RecordingTeam::red},
        {"Turret_T2_T100", RecordingTeam::blue},  // the blue codes are tried before the red ones
        {"T1_", std::nullopt},
        {"Turret_T12_A", std::nullopt},
        {"SRU_RiftHerald17.1.1", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [name, expected] : cases) {
        SCOPED_TRACE(name.value_or("(absent)"));
        EXPECT_EQ(structureCodeTeam(name), expected);
    }
}

TEST(eventDisplayTitle, TitlesEveryNameByTheTable) {
    struct Case {
        std::string name;
        std::optional<std::int64_t> multiKillCount;
        std::string title;
    };
    const std::vector<Case> cases{
        {"RoleQuestCompleted", std::nullopt, "Position quest completed"},
        {"positionQUEST", std::nullopt, "Position quest completed"},
        {"ChampionKill", std::nullopt, "Champion kill"},
        {"FirstBlood", std::nullopt, "First blood"},
        {"Multikill", std::nullopt, "Multikill"},
        {"Multikill", 1, "Multikill"},
        {"Multikill", 2, "Double kill"},
        {"Multikill", 3, "Triple kill"},
        {"Multikill", 4, "Quadra kill"},
        {"Multikill", 5, "Pentakill"},
        {"Multikill", 6, "Multikill"},
        {"Multikill", -3, "Multikill"},
        {"Ace", std::nullopt, "Ace"},
        {"DragonKill", std::nullopt, "Dragon"},
        {"BaronKill", std::nullopt, "Baron"},
        {"HeraldKill", std::nullopt, "Rift Herald"},
        {"HordeKill", std::nullopt, "Void Grub"},
        {"VoidGrubKill", std::nullopt, "Void Grub"},
        {"TurretKilled", std::nullopt, "Turret"},
        {"InhibKilled", std::nullopt, "Inhibitor"},
        {"NexusKill", std::nullopt, "Nexus destroyed"},
        {"NexusKilled", std::nullopt, "Nexus destroyed"},
        {"NexusDestroyed", std::nullopt, "Nexus destroyed"},
        {"GameStart", std::nullopt, "Game started"},
        {"GameEnd", std::nullopt, "Game ended"},
        {"ChampionSpecialKill", std::nullopt, "ChampionSpecialKill"},
        {"championkill", std::nullopt, "championkill"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name + " " + std::to_string(c.multiKillCount.value_or(0)));
        RecordingEvent event;
        event.name = c.name;
        event.multiKillCount = c.multiKillCount;
        EXPECT_EQ(eventDisplayTitle(event), c.title);
    }
}

TEST(eventSymbolName, NamesTheSymbolOfEveryRow) {
    const std::vector<std::tuple<std::string, std::optional<std::string>, std::string>> cases{
        {"DragonKill", "Fire", "flame.fill"},
        {"DragonKill", "Elder", "crown.fill"},
        {"DragonKill", std::nullopt, "circle.hexagongrid.fill"},
        {"BaronKill", std::nullopt, "crown.fill"},
        {"HeraldKill", std::nullopt, "shield.fill"},
        {"HordeKill", std::nullopt, "ladybug.fill"},
        {"VoidGrubKill", std::nullopt, "ladybug.fill"},
        {"TurretKilled", "Fire", "building.columns.fill"},
        {"InhibKilled", std::nullopt, "diamond.bottomhalf.filled"},
        {"NexusKill", std::nullopt, "burst.fill"},
        {"NexusKilled", std::nullopt, "burst.fill"},
        {"NexusDestroyed", std::nullopt, "burst.fill"},
        {"Multikill", std::nullopt, "bolt.horizontal.circle.fill"},
        {"GameStart", std::nullopt, "play.fill"},
        {"GameEnd", std::nullopt, "flag.checkered"},
        {"ChampionKill", std::nullopt, "circle.fill"},
        {"FirstBlood", std::nullopt, "circle.fill"},
        {"Ace", std::nullopt, "circle.fill"},
        {"RoleQuestCompleted", std::nullopt, "circle.fill"},
    };
    for (const auto& [name, detail, symbol] : cases) {
        SCOPED_TRACE(name + " " + detail.value_or("(no detail)"));
        RecordingEvent event;
        event.name = name;
        event.detail = detail;
        EXPECT_EQ(eventSymbolName(event), symbol);
    }
}

TEST(dragonKind, FirstWordFoundDecidesAllThreeFaces) {
    struct Case {
        std::string dragonType;
        std::string symbol;
        NamedColor color;
        std::string asset;
    };
    const std::vector<Case> cases{
        {"Elder", "crown.fill", NamedColor::yellow, "dragon_elder"},
        {"Fire", "flame.fill", NamedColor::orange, "dragon_infernal"},
        {"SRU_Dragon_Infernal", "flame.fill", NamedColor::orange, "dragon_infernal"},
        {"Earth", "mountain.2.fill", NamedColor::brown, "dragon_mountain"},
        {"MOUNTAIN", "mountain.2.fill", NamedColor::brown, "dragon_mountain"},
        {"Water", "drop.fill", NamedColor::cyan, "dragon_ocean"},
        {"ocean", "drop.fill", NamedColor::cyan, "dragon_ocean"},
        {"Air", "wind", NamedColor::mint, "dragon_cloud"},
        {"Cloud", "wind", NamedColor::mint, "dragon_cloud"},
        {"Hextech", "bolt.fill", NamedColor::blue, "dragon_hextech"},
        {"Chemtech", "atom", NamedColor::green, "dragon_chemtech"},
        {"ElderFire", "crown.fill", NamedColor::yellow, "dragon_elder"},     // "elder" is tried first
        {"FireWater", "flame.fill", NamedColor::orange, "dragon_infernal"},  // table order, not text order
        {"Fairy", "wind", NamedColor::mint, "dragon_cloud"},                 // a part of the text: "f-air-y"
        {"Ruined", "circle.hexagongrid.fill", NamedColor::secondary, "dragon_generic"},
        {"", "circle.hexagongrid.fill", NamedColor::secondary, "dragon_generic"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.dragonType);
        EXPECT_EQ(dragonSymbolName(c.dragonType), c.symbol);
        EXPECT_EQ(dragonColor(c.dragonType), c.color);
        EXPECT_EQ(dragonAssetName(c.dragonType), c.asset);
    }
}

TEST(queueTitle, NamesEveryListedQueueAndFallsBack) {
    const std::vector<std::pair<std::int64_t, std::string>> cases{
        {0, "Custom Game"},
        {4, "Ranked Solo/Duo"},
        {420, "Ranked Solo/Duo"},
        {6, "Ranked 5s"},
        {42, "Ranked 5s"},
        {710, "Ranked 5s"},
        {9, "Ranked 3s"},
        {41, "Ranked 3s"},
        {400, "Normal Draft"},
        {430, "Normal Blind"},
        {440, "Ranked Flex"},
        {450, "ARAM"},
        {480, "Quickplay"},
        {490, "Quickplay"},
        {700, "Clash"},
        {830, "Co-op vs. AI"},
        {840, "Co-op vs. AI"},
        {850, "Co-op vs. AI"},
        {900, "URF"},
        {1020, "One for All"},
        {1300, "Nexus Blitz"},
        {1400, "Ultimate Spellbook"},
        {1700, "Arena"},
        {1710, "Arena"},
        {1740, "Arena"},
        {1810, "Swarm"},
        {1820, "Swarm"},
        {1830, "Swarm"},
        {1840, "Swarm"},
        {1720, "League Match"},
        {-1, "League Match"},
        {325, "League Match"},
    };
    for (const auto& [queueID, title] : cases) {
        SCOPED_TRACE(queueID);
        EXPECT_EQ(queueTitle(queueID), title);
    }
}

TEST(gameModeTitle, NamesKnownModesAndCapitalisesOthers) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"ARAM", "ARAM"},
        {"aram", "ARAM"},
        {"KIWI", "ARAM Mayhem"},
        {"URF", "URF"},
        {"CLASSIC", "Classic"},
        {"Classic", "Classic"},
        {"CHERRY", "Arena"},
        {"PRACTICETOOL", "Practice Tool"},
        {"TUTORIAL_MODULE_1", "Tutorial Module 1"},
        {"ULTBOOK", "Ultbook"},
        {"doom_BOTS", "Doom Bots"},
        {"", ""},
    };
    for (const auto& [mode, title] : cases) {
        SCOPED_TRACE(mode);
        EXPECT_EQ(gameModeTitle(mode), title);
    }
}

TEST(cleanedChampionName, ReducesEveryRawForm) {
    const std::vector<std::pair<std::optional<std::string>, std::string>> cases{
        {std::nullopt, "Lee Sin"},
        {"game_character_displayname_LeeSin", "LeeSin"},
        {"game_character_displayname_", ""},
        {"Character_MonkeyKing_Name", "MonkeyKing"},
        {"Character_Name", ""},
        {"Character_Lee_Sin", "Sin"},  // no "_Name" end: the last part
        {"TFT9_Ahri", "Ahri"},
        {"Kayn", "Kayn"},
        {"Kayn__", "Kayn"},
        {"___", "Lee Sin"},
        {"", "Lee Sin"},
        {"GAME_CHARACTER_DISPLAYNAME_Ahri", "Ahri"},  // the prefixes are matched with their case
    };
    for (const auto& [raw, expected] : cases) {
        SCOPED_TRACE(raw.value_or("(absent)"));
        RecordingScoreboardPlayer player = test::scoreboardPlayer("Gilded Moth", "Lee Sin", "CHAOS");
        player.rawChampionName = raw;
        EXPECT_EQ(cleanedChampionName(player), expected);
    }
}

TEST(championDisplayName, IrregularNamesAndCapitalisedKeys) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"AurelionSol", "Aurelion Sol"},
        {"Belveth", "Bel'Veth"},
        {"Chogath", "Cho'Gath"},
        {"DrMundo", "Dr. Mundo"},
        {"JarvanIV", "Jarvan IV"},
        {"Kaisa", "Kai'Sa"},
        {"Khazix", "Kha'Zix"},
        {"KogMaw", "Kog'Maw"},
        {"KSante", "K'Sante"},
        {"LeeSin", "Lee Sin"},
        {"MasterYi", "Master Yi"},
        {"MissFortune", "Miss Fortune"},
        {"MonkeyKing", "Wukong"},
        {"monkeyking", "Wukong"},
        {"NunuWillump", "Nunu & Willump"},
        {"RekSai", "Rek'Sai"},
        {"RenataGlasc", "Renata Glasc"},
        {"TahmKench", "Tahm Kench"},
        {"TwistedFate", "Twisted Fate"},
        {"Velkoz", "Vel'Koz"},
        {"XinZhao", "Xin Zhao"},
        {"Ahri", "Ahri"},
        {"AHRI", "Ahri"},
        {"KayN", "Kayn"},
        {"lee sin", "Lee Sin"},
        {"\xc3\xa9lise", "\xc3\x89lise"},  // élise
        {"", ""},
    };
    for (const auto& [key, name] : cases) {
        SCOPED_TRACE(key);
        EXPECT_EQ(championDisplayName(key), name);
    }
}

TEST(playerDisplayName, PrefersGameNameThenRiotIdThenSummonerName) {
    struct Case {
        const char* label;
        std::optional<std::string> riotIdGameName;
        std::optional<std::string> riotId;
        std::string summonerName;
        std::string expected;
    };
    const std::vector<Case> cases{
        {"game name", "Ashen Kite", "Other#EUW", "Third#1", "Ashen Kite"},
        {"empty game name falls to the id", "", "Ashen Kite#EUW", "Third#1", "Ashen Kite"},
        {"id without tag", std::nullopt, "Ashen Kite", "Third#1", "Ashen Kite"},
        {"id with an empty name part", std::nullopt, "#EUW", "Third#1", "Third"},
        {"summoner name with tag", std::nullopt, std::nullopt, "Ashen Kite#EUW", "Ashen Kite"},
        {"summoner name with two tags", std::nullopt, std::nullopt, "Ashen#Kite#EUW", "Ashen"},
        {"summoner name of only a tag", std::nullopt, std::nullopt, "#EUW", "#EUW"},
        {"plain summoner name", std::nullopt, std::nullopt, "Ashen Kite", "Ashen Kite"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        RecordingScoreboardPlayer player = test::scoreboardPlayer(c.summonerName, "Kayn", "ORDER");
        player.riotIdGameName = c.riotIdGameName;
        player.riotId = c.riotId;
        EXPECT_EQ(playerDisplayName(player), c.expected);
    }
}

}  // namespace
}  // namespace kestrum
