#pragma once

// The tables of the session document's records, shared by the codecs that write them in the document's
// own form: the document itself and the telemetry journal of a recording in progress.

#include "core/json/ValueCodec.h"
#include "core/telemetry/RecordingSessionData.h"

namespace kestrum::json {

// The tables of the session document's records: one row per key, in ascending byte order of the keys,
// which is also the order in which they are written. The JSON type of each row is the member's type;
// a row is required exactly when its member is not a std::optional (checked at compile time).

template <>
struct EnumTexts<RecordingTeam> {
    static constexpr std::array<std::string_view, 2> texts{"blue", "red"};
};

template <>
struct EnumTexts<RecordingEnrichmentState::Status> {
    static constexpr std::array<std::string_view, 5> texts{"pending", "retrying", "waitingForAPIKey",
                                                           "complete", "failed"};
};

template <>
struct FieldTable<RecordingEvent> {
    using R = RecordingEvent;
    static constexpr auto fields = fieldTable<R>(
        optionalField<&R::assisterNames>("assisterNames"), optionalField<&R::detail>("detail"),
        requiredField<&R::id>("id"), optionalField<&R::isLocalPlayerAssist>("isLocalPlayerAssist"),
        optionalField<&R::isLocalPlayerDeath>("isLocalPlayerDeath"),
        optionalField<&R::isLocalPlayerKill>("isLocalPlayerKill"),
        optionalField<&R::killerChampion>("killerChampion"), optionalField<&R::killerName>("killerName"),
        optionalField<&R::multiKillCount>("multiKillCount"), requiredField<&R::name>("name"),
        optionalField<&R::team>("team"), optionalField<&R::victimChampion>("victimChampion"),
        optionalField<&R::victimName>("victimName"), requiredField<&R::videoTime>("videoTime"));
};

template <>
struct FieldTable<RecordingScoreboardPlayer::Item> {
    using R = RecordingScoreboardPlayer::Item;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::count>("count"), requiredField<&R::displayName>("displayName"),
                      requiredField<&R::itemID>("itemID"), requiredField<&R::price>("price"),
                      requiredField<&R::slot>("slot"));
};

template <>
struct FieldTable<RecordingScoreboardPlayer::Scores> {
    using R = RecordingScoreboardPlayer::Scores;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::assists>("assists"), requiredField<&R::creepScore>("creepScore"),
                      requiredField<&R::deaths>("deaths"), requiredField<&R::kills>("kills"));
};

template <>
struct FieldTable<RecordingScoreboardPlayer> {
    using R = RecordingScoreboardPlayer;
    static constexpr auto fields = fieldTable<R>(
        requiredField<&R::championName>("championName"), requiredField<&R::isDead>("isDead"),
        requiredField<&R::items>("items"), requiredField<&R::level>("level"),
        optionalField<&R::position>("position"),
        optionalField<&R::positionQuestCompleted>("positionQuestCompleted"),
        optionalField<&R::rawChampionName>("rawChampionName"),
        requiredField<&R::respawnTimer>("respawnTimer"), optionalField<&R::riotId>("riotId"),
        optionalField<&R::riotIdGameName>("riotIdGameName"),
        optionalField<&R::riotIdTagLine>("riotIdTagLine"),
        optionalField<&R::roleQuestCompleted>("roleQuestCompleted"), requiredField<&R::scores>("scores"),
        requiredField<&R::summonerName>("summonerName"), requiredField<&R::team>("team"));
};

template <>
struct FieldTable<RecordingScoreboardSnapshot> {
    using R = RecordingScoreboardSnapshot;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::gameTime>("gameTime"), requiredField<&R::players>("players"),
                      requiredField<&R::videoTime>("videoTime"));
};

template <>
struct FieldTable<RecordingAPMSample> {
    using R = RecordingAPMSample;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::actionsPerMinute>("actionsPerMinute"),
                      requiredField<&R::averageActionsPerMinute>("averageActionsPerMinute"),
                      requiredField<&R::videoTime>("videoTime"));
};

template <>
struct FieldTable<RecordingEnrichmentState> {
    using R = RecordingEnrichmentState;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::attempts>("attempts"), optionalField<&R::lastAttempt>("lastAttempt"),
                      optionalField<&R::lastError>("lastError"), requiredField<&R::status>("status"));
};

template <>
struct FieldTable<RecordingMatchData::Rank> {
    using R = RecordingMatchData::Rank;
    static constexpr auto fields = fieldTable<R>(
        requiredField<&R::division>("division"), requiredField<&R::leaguePoints>("leaguePoints"),
        requiredField<&R::queueType>("queueType"), requiredField<&R::tier>("tier"));
};

template <>
struct FieldTable<RecordingMatchData::Participant> {
    using R = RecordingMatchData::Participant;
    static constexpr auto fields = fieldTable<R>(
        requiredField<&R::assists>("assists"), requiredField<&R::championName>("championName"),
        optionalField<&R::currentRank>("currentRank"), requiredField<&R::deaths>("deaths"),
        requiredField<&R::goldEarned>("goldEarned"), requiredField<&R::goldSpent>("goldSpent"),
        requiredField<&R::kills>("kills"), requiredField<&R::neutralMinionsKilled>("neutralMinionsKilled"),
        requiredField<&R::participantID>("participantID"), requiredField<&R::puuid>("puuid"),
        requiredField<&R::riotIdGameName>("riotIdGameName"),
        requiredField<&R::riotIdTagline>("riotIdTagline"), optionalField<&R::roleBoundItem>("roleBoundItem"),
        optionalField<&R::runeIDs>("runeIDs"), optionalField<&R::seasonHighRank>("seasonHighRank"),
        requiredField<&R::teamID>("teamID"), requiredField<&R::teamPosition>("teamPosition"),
        requiredField<&R::totalDamageDealtToChampions>("totalDamageDealtToChampions"),
        requiredField<&R::totalMinionsKilled>("totalMinionsKilled"),
        requiredField<&R::visionScore>("visionScore"), requiredField<&R::win>("win"));
};

template <>
struct FieldTable<RecordingMatchData::PlayerFrame::Position> {
    using R = RecordingMatchData::PlayerFrame::Position;
    static constexpr auto fields = fieldTable<R>(requiredField<&R::x>("x"), requiredField<&R::y>("y"));
};

template <>
struct FieldTable<RecordingMatchData::PlayerFrame> {
    using R = RecordingMatchData::PlayerFrame;
    static constexpr auto fields = fieldTable<R>(
        requiredField<&R::currentGold>("currentGold"),
        requiredField<&R::jungleMinionsKilled>("jungleMinionsKilled"), requiredField<&R::level>("level"),
        requiredField<&R::minionsKilled>("minionsKilled"), requiredField<&R::participantID>("participantID"),
        optionalField<&R::position>("position"), requiredField<&R::totalGold>("totalGold"),
        requiredField<&R::xp>("xp"));
};

template <>
struct FieldTable<RecordingMatchData::Frame> {
    using R = RecordingMatchData::Frame;
    static constexpr auto fields = fieldTable<R>(requiredField<&R::participants>("participants"),
                                                 requiredField<&R::timestamp>("timestamp"));
};

template <>
struct FieldTable<RecordingMatchData> {
    using R = RecordingMatchData;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::frames>("frames"), requiredField<&R::gameDuration>("gameDuration"),
                      optionalField<&R::gameEndTimestamp>("gameEndTimestamp"),
                      requiredField<&R::gameVersion>("gameVersion"), requiredField<&R::matchID>("matchID"),
                      requiredField<&R::participants>("participants"), requiredField<&R::queueID>("queueID"));
};

template <>
struct FieldTable<RecordingSessionData> {
    using R = RecordingSessionData;
    static constexpr auto fields = fieldTable<R>(
        optionalField<&R::apmSamples>("apmSamples"), optionalField<&R::enrichment>("enrichment"),
        requiredField<&R::events>("events"), optionalField<&R::gameID>("gameID"),
        optionalField<&R::matchData>("matchData"), optionalField<&R::mediaKind>("mediaKind"),
        optionalField<&R::metadataRevision>("metadataRevision"),
        optionalField<&R::recordingID>("recordingID"), optionalField<&R::schemaVersion>("schemaVersion"),
        optionalField<&R::scoreboard>("scoreboard"),
        optionalField<&R::sourceRecordingID>("sourceRecordingID"), optionalField<&R::title>("title"));
};

}  // namespace kestrum::json
