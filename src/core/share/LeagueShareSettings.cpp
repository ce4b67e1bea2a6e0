#include "core/share/LeagueShareSettings.h"

#include "core/settings/SettingsKeys.h"
#include "core/settings/SettingsReaders.h"

namespace kestrum {

LeagueShareResolution LeagueShareSettings::resolution() const {
    return readLeagueShareResolution(defaults_);
}

VideoFrameRate LeagueShareSettings::frameRate() const {
    return readLeagueShareFrameRate(defaults_);
}

bool LeagueShareSettings::includesAudio() const {
    return readLeagueShareIncludesAudio(defaults_);
}

void LeagueShareSettings::setResolution(LeagueShareResolution resolution) {
    defaults_.setString(rawValue(resolution), SettingsKeys::leagueShareResolution);
}

void LeagueShareSettings::setFrameRate(VideoFrameRate frameRate) {
    defaults_.setInteger(rawValue(frameRate), SettingsKeys::leagueShareFrameRate);
}

void LeagueShareSettings::setIncludesAudio(bool includesAudio) {
    defaults_.setBool(includesAudio, SettingsKeys::leagueShareIncludesAudio);
}

}  // namespace kestrum
