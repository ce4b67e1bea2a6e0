#include "core/settings/SettingsKeys.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Type = kestrum::UserDefaultsValueType;

TEST(settingsKeyTable, HoldsEveryKeyOnceWithItsTypeAndADefaultOfThatType) {
    const std::vector<std::pair<const char*, Type>> expected = {
        {"kestrumAppearance", Type::String},
        {"recordingVideoResolution", Type::String},
        {"recordingVideoFrameRate", Type::Integer},
        {"recordSystemAudio", Type::Boolean},
        {"recordMicrophone", Type::Boolean},
        {"systemAudioVolume", Type::Double},
        {"microphoneVolume", Type::Double},
        {"recordingStorageMaximumGigabytes", Type::Double},
        {"recordingStorageLimitEnabled", Type::Boolean},
        {"recordingStorageWarningPercentage", Type::Double},
        {"leagueShareResolution", Type::String},
        {"leagueShareFrameRate", Type::Integer},
        {"leagueShareIncludesAudio", Type::Boolean},
        {"recordingsFolderBookmark", Type::Data},
        {"recordingLibraryCache", Type::Data},
        {"favoriteRecordingPaths", Type::StringList},
        {"recordingGameModeFilter", Type::String},
        {"recordingLaneFilter", Type::String},
        {"recordingChampionFilter", Type::String},
        {"playbackVolume", Type::Double},
        {"playbackMuted", Type::Boolean},
        {"DataDragonAssetVersion", Type::String},
        {"DataDragonBaseAddress", Type::String},
    };
    const std::vector<kestrum::SettingsKeyEntry>& table = kestrum::settingsKeyTable();
    ASSERT_EQ(table.size(), expected.size());
    for (const auto& [key, type] : expected) {
        SCOPED_TRACE(key);
        int found = 0;
        for (const kestrum::SettingsKeyEntry& entry : table) {
            if (entry.key != QLatin1String(key)) continue;
            ++found;
            EXPECT_EQ(entry.type, type);
            if (entry.defaultValue) {
                EXPECT_EQ(kestrum::valueTypeOf(*entry.defaultValue), type);
            }
        }
        EXPECT_EQ(found, 1);
    }
}

}  // namespace
