#include "core/telemetry/live/LiveGameMetadata.h"

#include <QString>

#include <string_view>

namespace kestrum {

std::string metadataChampionName(const LiveGameData::Player& player) {
    if (!player.rawChampionName) return player.championName;
    const std::string_view raw = *player.rawChampionName;
    constexpr std::string_view kDisplayNamePrefix = "game_character_displayname_";
    constexpr std::string_view kCharacterPrefix = "Character_";
    constexpr std::string_view kNameSuffix = "_Name";
    if (raw.starts_with(kDisplayNamePrefix)) return std::string(raw.substr(kDisplayNamePrefix.size()));
    if (raw.starts_with(kCharacterPrefix) && raw.ends_with(kNameSuffix)) {
        // "Character_Name" shares its "_" between both ends: nothing lies between them.
        const std::size_t inner = raw.size() - kCharacterPrefix.size();
        return inner <= kNameSuffix.size()
                   ? std::string()
                   : std::string(raw.substr(kCharacterPrefix.size(), inner - kNameSuffix.size()));
    }
    return player.championName;
}

RecordingMetadata recordingMetadataFrom(const LiveGameData& data) {
    RecordingMetadata metadata;
    metadata.gameMode = data.gameData.gameMode;
    const QString activeName = QString::fromStdString(data.activePlayer.summonerName);
    for (const auto& player : data.allPlayers) {
        if (QString::fromStdString(player.summonerName).compare(activeName, Qt::CaseInsensitive) != 0)
            continue;
        metadata.champion = metadataChampionName(player);
        metadata.position = player.position;
        break;
    }
    return metadata;
}

}  // namespace kestrum
