#include "core/shell/SettingsModel.h"

#include "core/settings/KestrumAppearance.h"
#include "core/settings/LeagueShareResolution.h"
#include "core/settings/RecordingVideoResolution.h"
#include "core/settings/SettingsKeys.h"
#include "core/settings/SettingsReaders.h"
#include "core/settings/VideoFrameRate.h"

namespace kestrum {

namespace {

template <class Enumeration, std::size_t count>
std::vector<SettingsChoice::Option> textOptions(const std::array<Enumeration, count>& cases) {
    std::vector<SettingsChoice::Option> options;
    for (const Enumeration value : cases)
        options.push_back({displayText(value), UserDefaultsValue(rawValue(value))});
    return options;
}

std::vector<SettingsChoice::Option> frameRateOptions() {
    std::vector<SettingsChoice::Option> options;
    for (const VideoFrameRate rate : kVideoFrameRates) {
        options.push_back({displayText(rate), UserDefaultsValue(qint64{rawValue(rate)})});
    }
    return options;
}

const UserDefaultsValue kDefaultFrameRate(qint64{rawValue(VideoFrameRate::fps30)});

}  // namespace

SettingsModel::SettingsModel(Environment environment, QObject* parent)
    : QObject(parent),
      version_(environment.version),
      storageRefresh_(environment.storageBudget, environment.defaults, environment.folderStore,
                      environment.notifications),
      theme_(environment.defaults, SettingsKeys::kestrumAppearance, QStringLiteral("Theme"),
             textOptions(kKestrumAppearances), UserDefaultsValue(rawValue(KestrumAppearance::system))),
      permissions_(environment.permissions, environment.permissionTexts, environment.clock),
      videoResolution_(environment.defaults, SettingsKeys::recordingVideoResolution,
                       QStringLiteral("Resolution"), textOptions(kRecordingVideoResolutions),
                       UserDefaultsValue(rawValue(RecordingVideoResolution::p720))),
      videoFrameRate_(environment.defaults, SettingsKeys::recordingVideoFrameRate,
                      QStringLiteral("Frame rate"), frameRateOptions(), kDefaultFrameRate),
      shareResolution_(environment.defaults, SettingsKeys::leagueShareResolution,
                       QStringLiteral("Resolution"), textOptions(kLeagueShareResolutions),
                       UserDefaultsValue(rawValue(LeagueShareResolution::p720))),
      shareFrameRate_(environment.defaults, SettingsKeys::leagueShareFrameRate, QStringLiteral("Frame rate"),
                      frameRateOptions(), kDefaultFrameRate),
      shareIncludesAudio_(environment.defaults, SettingsKeys::leagueShareIncludesAudio,
                          QStringLiteral("System audio"), readLeagueShareIncludesAudio),
      recordSystemAudio_(environment.defaults, SettingsKeys::recordSystemAudio,
                         QStringLiteral("System audio"), readRecordSystemAudio),
      systemAudioVolume_(environment.defaults, SettingsKeys::systemAudioVolume,
                         QStringLiteral("System volume")),
      recordMicrophone_(environment.defaults, SettingsKeys::recordMicrophone, QStringLiteral("Microphone"),
                        readRecordMicrophone),
      microphoneVolume_(environment.defaults, SettingsKeys::microphoneVolume,
                        QStringLiteral("Microphone volume")),
      folder_(environment.folderStore, environment.fileActions),
      storage_(environment.defaults, storageRefresh_),
      startup_(environment.autostart) {}

QStringList SettingsModel::sectionTitles() const {
    return {QStringLiteral("Appearance"), QString(),       QStringLiteral("Video"), QStringLiteral("Share"),
            QStringLiteral("Video"),      folder_.title(), storage_.title(),        startup_.title(),
            QStringLiteral("About")};
}

QString SettingsModel::version() const {
    return version_.isEmpty() ? QStringLiteral("—") : version_;
}

QString SettingsModel::notice() const {
    return QStringLiteral(
        "Kestrum isn't endorsed by Riot Games and doesn't reflect the views or opinions of Riot Games or "
        "anyone "
        "officially involved in producing or managing Riot Games properties. Riot Games and all associated "
        "properties are trademarks or registered trademarks of Riot Games, Inc.");
}

void SettingsModel::opened() {
    emit scrollToTopRequested();
    storageRefresh_.refresh();
    folder_.reload();
    startup_.reload();
    permissions_.startPolling();
}

void SettingsModel::closed() {
    permissions_.stopPolling();
}

}  // namespace kestrum
