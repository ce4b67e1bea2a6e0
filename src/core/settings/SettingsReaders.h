#pragma once

#include "core/settings/KestrumAppearance.h"
#include "core/settings/LeagueShareResolution.h"
#include "core/settings/RecordingVideoResolution.h"
#include "core/settings/UserDefaults.h"
#include "core/settings/VideoFrameRate.h"

#include <QString>

namespace kestrum {

// The typed readers of the stored settings, each with the default and the quirks of the key it reads.
// Settings are read where they are used, so every reader goes to the store each time; none caches.
// "No Boolean" below is bridgedBoolean's rule (UserDefaultsValue.h): a stored Boolean, or a number that
// is exactly 0 or 1, is a Boolean; anything else is not.

// "kestrumAppearance": its case; missing or unknown text gives `system`.
KestrumAppearance readKestrumAppearance(const UserDefaults& defaults);

// "recordingVideoResolution": stringForKey matched against the raw values; missing or unknown gives `p720`.
RecordingVideoResolution readRecordingVideoResolution(const UserDefaults& defaults);

// "recordingVideoFrameRate": `fps60` only when integerForKey gives exactly 60 (so a stored 60.9 or "60"
// also counts, by the integer conversion); anything else, missing included, gives `fps30`.
VideoFrameRate readRecordingVideoFrameRate(const UserDefaults& defaults);

// "recordSystemAudio": true when the key is missing; otherwise boolForKey.
bool readRecordSystemAudio(const UserDefaults& defaults);

// "recordMicrophone": boolForKey, so false when missing.
bool readRecordMicrophone(const UserDefaults& defaults);

// A capture volume ("systemAudioVolume", "microphoneVolume") as a gain: 1.0 when the key is missing;
// otherwise doubleForKey, 0 at or below 0, 2 above 2. A stored NaN, which no bound catches, gives 1.0.
double loadVolume(const UserDefaults& defaults, const QString& key);

// "recordingStorageLimitEnabled": the stored Boolean; true when missing or when the value is no Boolean.
bool readRecordingStorageLimitEnabled(const UserDefaults& defaults);

// "recordingStorageMaximumGigabytes", decimal gigabytes: doubleForKey when positive, otherwise 100.
double readRecordingStorageMaximumGigabytes(const UserDefaults& defaults);

// "recordingStorageWarningPercentage", per cent: doubleForKey when positive, otherwise 80.
double readRecordingStorageWarningPercentage(const UserDefaults& defaults);

// "leagueShareResolution": stringForKey matched against the raw values; missing or unknown gives `p720`.
LeagueShareResolution readLeagueShareResolution(const UserDefaults& defaults);

// "leagueShareFrameRate": `fps60` only when integerForKey gives exactly 60; otherwise `fps30`.
VideoFrameRate readLeagueShareFrameRate(const UserDefaults& defaults);

// "leagueShareIncludesAudio": the stored Boolean; true when missing or when the value is no Boolean.
bool readLeagueShareIncludesAudio(const UserDefaults& defaults);

// "playbackVolume", the player's volume: 1.0 when missing; otherwise doubleForKey within 0...1, the
// player's range. A stored NaN gives 1.0.
double readPlaybackVolume(const UserDefaults& defaults);

// "playbackMuted": boolForKey, so false when missing.
bool readPlaybackMuted(const UserDefaults& defaults);

}  // namespace kestrum
