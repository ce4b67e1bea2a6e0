#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestrum {

// A player's place on the map in a match frame; reached as RecordingMatchData::PlayerFrame::Position.
// It stands outside PlayerFrame because PlayerFrame holds it in a std::optional, and clang takes a
// nested struct with default member initializers for not default-constructible until its enclosing
// class is complete.
struct RecordingMatchDataPlayerPosition {
    std::int64_t x = 0;
    std::int64_t y = 0;

    friend bool operator==(const RecordingMatchDataPlayerPosition&,
                           const RecordingMatchDataPlayerPosition&) = default;
};

// The post-game match record. Part of the format, read and kept; nothing in this system fills it.
// The units of `gameDuration`, `gameEndTimestamp` and `Frame::timestamp` are whatever the file holds;
// the review side passes `gameDuration` on as seconds. The nested records are defined below the class
// for the same reason as the position above.
struct RecordingMatchData {
    struct Rank;
    struct Participant;
    struct PlayerFrame;
    struct Frame;

    std::string matchID;
    std::string gameVersion;
    std::int64_t queueID = 0;
    std::int64_t gameDuration = 0;
    std::optional<std::int64_t> gameEndTimestamp;
    std::vector<Participant> participants;
    std::vector<Frame> frames;

    friend bool operator==(const RecordingMatchData&, const RecordingMatchData&) = default;
};

struct RecordingMatchData::Rank {
    std::string queueType;
    std::string tier;
    std::string division;
    std::int64_t leaguePoints = 0;

    friend bool operator==(const Rank&, const Rank&) = default;
};

struct RecordingMatchData::Participant {
    std::int64_t participantID = 0;
    std::string puuid;
    std::string championName;
    std::int64_t teamID = 0;
    std::string teamPosition;
    std::string riotIdGameName;
    // Stored under "riotIdTagline" with a small l; the scoreboard player's key differs on purpose.
    std::string riotIdTagline;
    std::int64_t kills = 0;
    std::int64_t deaths = 0;
    std::int64_t assists = 0;
    std::int64_t totalMinionsKilled = 0;
    std::int64_t neutralMinionsKilled = 0;
    std::int64_t goldEarned = 0;
    std::int64_t goldSpent = 0;
    std::int64_t totalDamageDealtToChampions = 0;
    std::int64_t visionScore = 0;
    bool win = false;
    std::optional<std::int64_t> roleBoundItem;
    std::optional<std::vector<std::int64_t>> runeIDs;
    std::optional<Rank> currentRank;
    std::optional<Rank> seasonHighRank;

    friend bool operator==(const Participant&, const Participant&) = default;
};

struct RecordingMatchData::PlayerFrame {
    using Position = RecordingMatchDataPlayerPosition;

    std::int64_t participantID = 0;
    std::int64_t currentGold = 0;
    std::int64_t totalGold = 0;
    std::int64_t level = 0;
    std::int64_t minionsKilled = 0;
    std::int64_t jungleMinionsKilled = 0;
    std::int64_t xp = 0;
    std::optional<Position> position;

    friend bool operator==(const PlayerFrame&, const PlayerFrame&) = default;
};

struct RecordingMatchData::Frame {
    std::int64_t timestamp = 0;
    std::vector<PlayerFrame> participants;

    friend bool operator==(const Frame&, const Frame&) = default;
};

}  // namespace kestrum
