#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestrum {

// One player of a scoreboard snapshot. The same record is the payload of the local service's
// `/liveclientdata/playerlist`, whose answer decodes directly into it with the same keys.
struct RecordingScoreboardPlayer {
    struct Item {
        std::int64_t count = 0;
        std::string displayName;
        std::int64_t itemID = 0;
        std::int64_t price = 0;
        std::int64_t slot = 0;

        friend bool operator==(const Item&, const Item&) = default;
    };

    struct Scores {
        std::int64_t assists = 0;
        std::int64_t creepScore = 0;
        std::int64_t deaths = 0;
        std::int64_t kills = 0;

        friend bool operator==(const Scores&, const Scores&) = default;
    };

    std::string championName;
    bool isDead = false;
    std::vector<Item> items;
    std::int64_t level = 0;
    // Lane as the service spells it.
    std::optional<std::string> position;
    // The game's internal champion key, cleaned.
    std::optional<std::string> rawChampionName;
    // Seconds until respawn.
    double respawnTimer = 0;
    // Name and tag joined by "#".
    std::optional<std::string> riotId;
    std::optional<std::string> riotIdGameName;
    // Stored under "riotIdTagLine" with a capital L; the match participant's key differs on purpose.
    std::optional<std::string> riotIdTagLine;
    // The service reports the role quest under two keys; both are kept, independently.
    std::optional<bool> roleQuestCompleted;
    std::optional<bool> positionQuestCompleted;
    Scores scores;
    // Player name; may hold a "#" tag.
    std::string summonerName;
    // The service's side word, "ORDER" or "CHAOS", kept as text.
    std::string team;

    friend bool operator==(const RecordingScoreboardPlayer&, const RecordingScoreboardPlayer&) = default;
};

}  // namespace kestrum
