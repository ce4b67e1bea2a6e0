#include "core/settings/SettingsReaders.h"

#include "core/settings/SettingsKeys.h"

#include <algorithm>
#include <cmath>

namespace kestrum {

namespace {

// A Boolean that defaults to true: only a stored Boolean can say false.
bool readBooleanDefaultingToTrue(const UserDefaults& defaults, const QString& key) {
    const std::optional<UserDefaultsValue> value = defaults.objectForKey(key);
    if (!value) return true;
    return bridgedBoolean(*value).value_or(true);
}

VideoFrameRate frameRateOf(qint64 stored) {
    return stored == 60 ? VideoFrameRate::fps60 : VideoFrameRate::fps30;
}

double positiveOr(double value, double fallback) {
    return value > 0 ? value : fallback;
}

}  // namespace

KestrumAppearance readKestrumAppearance(const UserDefaults& defaults) {
    const std::optional<QString> stored = defaults.stringForKey(SettingsKeys::kestrumAppearance);
    if (!stored) return KestrumAppearance::system;
    return parseKestrumAppearance(*stored).value_or(KestrumAppearance::system);
}

RecordingVideoResolution readRecordingVideoResolution(const UserDefaults& defaults) {
    const std::optional<QString> stored = defaults.stringForKey(SettingsKeys::recordingVideoResolution);
    if (!stored) return RecordingVideoResolution::p720;
    return parseRecordingVideoResolution(*stored).value_or(RecordingVideoResolution::p720);
}

VideoFrameRate readRecordingVideoFrameRate(const UserDefaults& defaults) {
    return frameRateOf(defaults.integerForKey(SettingsKeys::recordingVideoFrameRate));
}

bool readRecordSystemAudio(const UserDefaults& defaults) {
    if (!defaults.objectForKey(SettingsKeys::recordSystemAudio)) return true;
    return defaults.boolForKey(SettingsKeys::recordSystemAudio);
}

bool readRecordMicrophone(const UserDefaults& defaults) {
    return defaults.boolForKey(SettingsKeys::recordMicrophone);
}

double loadVolume(const UserDefaults& defaults, const QString& key) {
    if (!defaults.objectForKey(key)) return 1.0;
    const double stored = defaults.doubleForKey(key);
    if (std::isnan(stored)) return 1.0;
    if (stored <= 0) return 0.0;
    if (stored > 2) return 2.0;
    return stored;
}

bool readRecordingStorageLimitEnabled(const UserDefaults& defaults) {
    return readBooleanDefaultingToTrue(defaults, SettingsKeys::recordingStorageLimitEnabled);
}

double readRecordingStorageMaximumGigabytes(const UserDefaults& defaults) {
    return positiveOr(defaults.doubleForKey(SettingsKeys::recordingStorageMaximumGigabytes), 100.0);
}

double readRecordingStorageWarningPercentage(const UserDefaults& defaults) {
    return positiveOr(defaults.doubleForKey(SettingsKeys::recordingStorageWarningPercentage), 80.0);
}

LeagueShareResolution readLeagueShareResolution(const UserDefaults& defaults) {
    const std::optional<QString> stored = defaults.stringForKey(SettingsKeys::leagueShareResolution);
    if (!stored) return LeagueShareResolution::p720;
    return parseLeagueShareResolution(*stored).value_or(LeagueShareResolution::p720);
}

VideoFrameRate readLeagueShareFrameRate(const UserDefaults& defaults) {
    return frameRateOf(defaults.integerForKey(SettingsKeys::leagueShareFrameRate));
}

bool readLeagueShareIncludesAudio(const UserDefaults& defaults) {
    return readBooleanDefaultingToTrue(defaults, SettingsKeys::leagueShareIncludesAudio);
}

double readPlaybackVolume(const UserDefaults& defaults) {
    if (!defaults.objectForKey(SettingsKeys::playbackVolume)) return 1.0;
    const double stored = defaults.doubleForKey(SettingsKeys::playbackVolume);
    if (std::isnan(stored)) return 1.0;
    return std::clamp(stored, 0.0, 1.0);
}

bool readPlaybackMuted(const UserDefaults& defaults) {
    return defaults.boolForKey(SettingsKeys::playbackMuted);
}

}  // namespace kestrum
