#include "core/settings/SettingsKeys.h"

namespace kestrum {

const std::vector<SettingsKeyEntry>& settingsKeyTable() {
    using Type = UserDefaultsValueType;
    namespace Keys = SettingsKeys;
    static const auto* const table = new std::vector<SettingsKeyEntry>{
        {Keys::kestrumAppearance, Type::String, UserDefaultsValue(QStringLiteral("system"))},
        {Keys::recordingVideoResolution, Type::String, UserDefaultsValue(QStringLiteral("p720"))},
        {Keys::recordingVideoFrameRate, Type::Integer, UserDefaultsValue(qint64{30})},
        {Keys::recordSystemAudio, Type::Boolean, UserDefaultsValue(true)},
        {Keys::recordMicrophone, Type::Boolean, UserDefaultsValue(false)},
        {Keys::systemAudioVolume, Type::Double, UserDefaultsValue(1.0)},
        {Keys::microphoneVolume, Type::Double, UserDefaultsValue(1.0)},
        {Keys::recordingStorageMaximumGigabytes, Type::Double, UserDefaultsValue(100.0)},
        {Keys::recordingStorageLimitEnabled, Type::Boolean, UserDefaultsValue(true)},
        {Keys::recordingStorageWarningPercentage, Type::Double, UserDefaultsValue(80.0)},
        {Keys::leagueShareResolution, Type::String, UserDefaultsValue(QStringLiteral("p720"))},
        // 30; only a stored 60 counts as 60.
        {Keys::leagueShareFrameRate, Type::Integer, UserDefaultsValue(qint64{30})},
        {Keys::leagueShareIncludesAudio, Type::Boolean, UserDefaultsValue(true)},
        {Keys::recordingsFolderBookmark, Type::Data, std::nullopt},
        {Keys::recordingLibraryCache, Type::Data, std::nullopt},
        {Keys::favoriteRecordingPaths, Type::StringList, std::nullopt},
        {Keys::recordingGameModeFilter, Type::String, std::nullopt},
        {Keys::recordingLaneFilter, Type::String, std::nullopt},
        {Keys::recordingChampionFilter, Type::String, std::nullopt},
        // The player's full volume.
        {Keys::playbackVolume, Type::Double, UserDefaultsValue(1.0)},
        {Keys::playbackMuted, Type::Boolean, UserDefaultsValue(false)},
        {Keys::dataDragonAssetVersion, Type::String, std::nullopt},
        {Keys::dataDragonBaseAddress, Type::String,
         UserDefaultsValue(QStringLiteral("https://ddragon.leagueoflegends.com"))},
    };
    return *table;
}

}  // namespace kestrum
