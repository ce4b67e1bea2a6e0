#include "core/telemetry/vocabulary/LiveGamePayloadCodec.h"

#include "core/json/JsonDocument.h"
#include "core/telemetry/SessionDocumentCodec.h"

namespace kestrum::json {

// The tables of the service's answers: one row per key the system reads, in ascending byte order of
// the keys. The feed's keys are upper camel case, so they sort before the lower-case ones of the other
// answers; upper-case letters also sort before lower-case ones inside a key ("KillStreak" < "KillerName").

template <>
struct FieldTable<GameStats> {
    using R = GameStats;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::gameMode>("gameMode"), requiredField<&R::gameTime>("gameTime"));
};

template <>
struct FieldTable<LiveGameData::ActivePlayer> {
    using R = LiveGameData::ActivePlayer;
    static constexpr auto fields = fieldTable<R>(requiredField<&R::summonerName>("summonerName"));
};

template <>
struct FieldTable<LiveGameData::GameData> {
    using R = LiveGameData::GameData;
    static constexpr auto fields = fieldTable<R>(requiredField<&R::gameMode>("gameMode"));
};

template <>
struct FieldTable<LiveGameData::Player> {
    using R = LiveGameData::Player;
    static constexpr auto fields = fieldTable<R>(requiredField<&R::championName>("championName"),
                                                 requiredField<&R::position>("position"),
                                                 optionalField<&R::rawChampionName>("rawChampionName"),
                                                 requiredField<&R::summonerName>("summonerName"));
};

template <>
struct FieldTable<LiveGameData> {
    using R = LiveGameData;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::activePlayer>("activePlayer"),
                      requiredField<&R::allPlayers>("allPlayers"), requiredField<&R::gameData>("gameData"));
};

template <>
struct FieldTable<LiveEvent> {
    using R = LiveEvent;
    static constexpr auto fields = fieldTable<R>(
        optionalField<&R::acer>("Acer"), optionalField<&R::acingTeam>("AcingTeam"),
        optionalField<&R::assisters>("Assisters"), optionalField<&R::dragonType>("DragonType"),
        requiredField<&R::id>("EventID"), requiredField<&R::name>("EventName"),
        requiredField<&R::time>("EventTime"), optionalField<&R::inhibKilled>("InhibKilled"),
        optionalField<&R::killStreak>("KillStreak"), optionalField<&R::killerName>("KillerName"),
        optionalField<&R::turretKilled>("TurretKilled"), optionalField<&R::victimName>("VictimName"));
};

template <>
struct FieldTable<LiveEventResponse> {
    using R = LiveEventResponse;
    static constexpr auto fields = fieldTable<R>(requiredField<&R::events>("Events"));
};

}  // namespace kestrum::json

namespace kestrum {

Result<GameStats> decodeGameStats(std::string_view bytes) {
    return json::decodeDocument<GameStats>(bytes);
}

Result<LiveGameData> decodeLiveGameData(std::string_view bytes) {
    return json::decodeDocument<LiveGameData>(bytes);
}

Result<std::vector<LiveEvent>> decodeEventData(std::string_view bytes) {
    Result<LiveEventResponse> response = json::decodeDocument<LiveEventResponse>(bytes);
    if (!response.ok()) return response.error();
    return std::move(response).value().events;
}

Result<std::string> decodeActivePlayerName(std::string_view bytes) {
    return json::decodeDocument<std::string>(bytes);
}

Result<std::vector<RecordingScoreboardPlayer>> decodePlayerList(std::string_view bytes) {
    return decodeScoreboardPlayers(bytes);
}

}  // namespace kestrum
