#include "core/review/PlaybackVolumeModel.h"

#include "core/review/PlaybackControlTexts.h"
#include "core/settings/SettingsKeys.h"
#include "core/settings/SettingsReaders.h"

#include <algorithm>
#include <cmath>

namespace kestrum {

PlaybackVolumeModel::PlaybackVolumeModel(UserDefaults& defaults, QObject* parent)
    : QObject(parent), defaults_(defaults) {
    reload();
    connect(&defaults_, &UserDefaults::valueChanged, this, [this](const QString& key) {
        if (key == SettingsKeys::playbackVolume || key == SettingsKeys::playbackMuted) reload();
    });
}

QString PlaybackVolumeModel::symbolName() const {
    return volumeSymbolName(volume_, muted_);
}

QString PlaybackVolumeModel::muteToolTip() const {
    return kestrum::muteToolTip(muted_);
}

QString PlaybackVolumeModel::label() const {
    return kVolumeLabel;
}

void PlaybackVolumeModel::setVolume(double volume) {
    if (std::isnan(volume)) return;
    const double level = std::clamp(volume, 0.0, 1.0);
    if (player_) player_->setVolume(level);
    defaults_.setDouble(level, SettingsKeys::playbackVolume);
    reload();
}

void PlaybackVolumeModel::setMuted(bool muted) {
    if (player_) player_->setMuted(muted);
    defaults_.setBool(muted, SettingsKeys::playbackMuted);
    reload();
}

void PlaybackVolumeModel::reload() {
    const double volume = readPlaybackVolume(defaults_);
    const bool muted = readPlaybackMuted(defaults_);
    if (volume == volume_ && muted == muted_) return;
    volume_ = volume;
    muted_ = muted;
    emit changed();
}

}  // namespace kestrum
