#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestrum {

// The answers of the game's local service that the client decodes. Each is decoded strictly: a missing
// or mistyped required key fails the whole answer; everything the records do not name is ignored.

// Answer of /liveclientdata/gamestats.
struct GameStats {
    std::string gameMode;  // key "gameMode"
    double gameTime = 0;   // key "gameTime", seconds of the game's own clock

    friend bool operator==(const GameStats&, const GameStats&) = default;
};

// Answer of /liveclientdata/allgamedata, reduced to what the metadata needs.
struct LiveGameData {
    struct ActivePlayer {
        std::string summonerName;
        friend bool operator==(const ActivePlayer&, const ActivePlayer&) = default;
    };
    struct GameData {
        std::string gameMode;
        friend bool operator==(const GameData&, const GameData&) = default;
    };
    struct Player {
        std::string championName;
        std::string position;
        std::optional<std::string> rawChampionName;
        std::string summonerName;
        friend bool operator==(const Player&, const Player&) = default;
    };

    ActivePlayer activePlayer;       // key "activePlayer"
    std::vector<Player> allPlayers;  // key "allPlayers"
    GameData gameData;               // key "gameData"

    friend bool operator==(const LiveGameData&, const LiveGameData&) = default;
};

// One row of /liveclientdata/eventdata. The feed's keys are upper camel case ("EventID", "EventName", ...).
struct LiveEvent {
    std::int64_t id = 0;                                // "EventID"
    std::string name;                                   // "EventName"
    double time = 0;                                    // "EventTime", game seconds
    std::optional<std::string> killerName;              // "KillerName"
    std::optional<std::string> victimName;              // "VictimName"
    std::optional<std::vector<std::string>> assisters;  // "Assisters"
    std::optional<std::string> dragonType;              // "DragonType"
    std::optional<std::int64_t> killStreak;             // "KillStreak"
    std::optional<std::string> acer;                    // "Acer"
    std::optional<std::string> acingTeam;               // "AcingTeam"
    std::optional<std::string> turretKilled;            // "TurretKilled"
    std::optional<std::string> inhibKilled;             // "InhibKilled"

    friend bool operator==(const LiveEvent&, const LiveEvent&) = default;
};

// Answer of /liveclientdata/eventdata.
struct LiveEventResponse {
    std::vector<LiveEvent> events;  // key "Events"
    friend bool operator==(const LiveEventResponse&, const LiveEventResponse&) = default;
};

}  // namespace kestrum
