#pragma once

#include "core/settings/UserDefaultsValue.h"

#include <QLatin1String>

#include <optional>
#include <vector>

namespace kestrum {

// Every key of the user defaults, with its exact text. A key is read where it is used, through the
// readers of SettingsReaders.h where a default or a quirk applies.
namespace SettingsKeys {
inline constexpr QLatin1String kestrumAppearance("kestrumAppearance");
inline constexpr QLatin1String recordingVideoResolution("recordingVideoResolution");
inline constexpr QLatin1String recordingVideoFrameRate("recordingVideoFrameRate");
inline constexpr QLatin1String recordSystemAudio("recordSystemAudio");
inline constexpr QLatin1String recordMicrophone("recordMicrophone");
inline constexpr QLatin1String systemAudioVolume("systemAudioVolume");
inline constexpr QLatin1String microphoneVolume("microphoneVolume");
inline constexpr QLatin1String recordingStorageMaximumGigabytes("recordingStorageMaximumGigabytes");
inline constexpr QLatin1String recordingStorageLimitEnabled("recordingStorageLimitEnabled");
inline constexpr QLatin1String recordingStorageWarningPercentage("recordingStorageWarningPercentage");
inline constexpr QLatin1String leagueShareResolution("leagueShareResolution");
inline constexpr QLatin1String leagueShareFrameRate("leagueShareFrameRate");
inline constexpr QLatin1String leagueShareIncludesAudio("leagueShareIncludesAudio");
// The chosen recordings folder; where the platform has no bookmarks, the plain path takes their place.
inline constexpr QLatin1String recordingsFolderBookmark("recordingsFolderBookmark");
inline constexpr QLatin1String recordingLibraryCache("recordingLibraryCache");
inline constexpr QLatin1String favoriteRecordingPaths("favoriteRecordingPaths");
inline constexpr QLatin1String recordingGameModeFilter("recordingGameModeFilter");
inline constexpr QLatin1String recordingLaneFilter("recordingLaneFilter");
inline constexpr QLatin1String recordingChampionFilter("recordingChampionFilter");
inline constexpr QLatin1String playbackVolume("playbackVolume");
inline constexpr QLatin1String playbackMuted("playbackMuted");
inline constexpr QLatin1String dataDragonAssetVersion("DataDragonAssetVersion");
// The Data Dragon CDN's address (scheme, host and any path prefix); the asset store appends its paths.
inline constexpr QLatin1String dataDragonBaseAddress("DataDragonBaseAddress");
}  // namespace SettingsKeys

// One row of the table of all keys: the key, the type it is stored with, and the value that applies
// while it is unset (absent where the key simply has no value then).
struct SettingsKeyEntry {
    QLatin1String key;
    UserDefaultsValueType type = UserDefaultsValueType::String;
    std::optional<UserDefaultsValue> defaultValue;
};

// All keys of the system, in the order of the settings table. Built once, thread-safe, never destroyed.
const std::vector<SettingsKeyEntry>& settingsKeyTable();

}  // namespace kestrum
