#include "core/dashboard/DashboardPlayback.h"

#include "core/dashboard/DashboardTexts.h"
#include "core/dashboard/PlaybackRateSteps.h"
#include "core/settings/SettingsKeys.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrum {

DashboardPlayback::DashboardPlayback(UserDefaults& defaults, Clock& clock, QObject* parent)
    : QObject(parent), defaults_(defaults), clock_(clock), toast_(clock, [this] { emit toastChanged(); }) {}

DashboardPlayback::~DashboardPlayback() {
    stopPositionUpdates();
}

void DashboardPlayback::setPlayer(std::shared_ptr<VideoPlayer> player) {
    if (player == player_) return;
    player_ = std::move(player);
    emit playerChanged();
}

void DashboardPlayback::setCurrentTime(double seconds) {
    if (std::isnan(seconds) || seconds == currentTime_) return;
    currentTime_ = seconds;
    emit currentTimeChanged();
}

void DashboardPlayback::setRecordingShape(double durationSeconds, double aspectRatio) {
    if (durationSeconds == videoDuration_ && aspectRatio == videoAspectRatio_) return;
    videoDuration_ = durationSeconds;
    videoAspectRatio_ = aspectRatio;
    emit recordingShapeChanged();
}

void DashboardPlayback::setPlaybackRate(double rate) {
    if (!(rate > 0) || rate == playbackRate_) return;
    playbackRate_ = rate;
    emit playbackRateChanged();
}

void DashboardPlayback::setLoadingRecording(bool loading) {
    if (loading == isLoadingRecording_) return;
    isLoadingRecording_ = loading;
    emit isLoadingRecordingChanged();
}

void DashboardPlayback::setRequestedIsPlaying(bool requested) {
    if (requested == requestedIsPlaying_) return;
    requestedIsPlaying_ = requested;
    emit requestedIsPlayingChanged();
}

QString DashboardPlayback::toastTitle() const {
    return toast_.feedback() ? toast_.feedback()->title : QString();
}

QString DashboardPlayback::toastSymbol() const {
    return toast_.feedback() ? toast_.feedback()->symbol : QString();
}

void DashboardPlayback::togglePlayback() {
    if (!player_) return;
    setRequestedIsPlaying(!requestedIsPlaying_);
    if (!requestedIsPlaying_) {
        player_->pause();
        showPlaybackFeedback(DashboardTexts::paused());
        return;
    }
    // At the end, play restarts from the movie's start, not from the game's.
    if (videoDuration_ > 0 && currentTime_ >= videoDuration_) {
        setCurrentTime(0);
        player_->seek(0, VideoSeekTolerance::exact());
    }
    // While loading, the detail job starts the player once the recording is ready.
    if (!isLoadingRecording_) player_->playImmediatelyAtRate(playbackRate_);
    showPlaybackFeedback(DashboardTexts::playing());
}

void DashboardPlayback::skip(double seconds) {
    if (!player_ || !(videoDuration_ > 0)) return;
    const double target = std::clamp(currentTime_ + seconds, 0.0, videoDuration_);
    setCurrentTime(target);
    // Exact: a key-frame seek may land a whole key-frame interval (2 s) away, and the position poll would
    // then move the playhead back from the time the user asked for.
    player_->seek(target, VideoSeekTolerance::exact());
    showPlaybackFeedback(DashboardTexts::skipped(seconds));
}

void DashboardPlayback::stepSpeed(int step) {
    if (!player_) return;
    changeRate(steppedPlaybackRate(playbackRate_, step));
}

void DashboardPlayback::resetSpeed() {
    if (!player_) return;
    changeRate(1.0);
}

void DashboardPlayback::changeRate(double rate) {
    if (rate == playbackRate_) return;  // at either end of the list: no toast
    const double previous = playbackRate_;
    setPlaybackRate(rate);
    player_->setDefaultRate(rate);
    // A paused player stays paused.
    if (player_->timeControlStatus() == VideoPlayerTimeControlStatus::playing) player_->setRate(rate);
    emit playbackRateAnimationRequested(nextAnimation(previous, rate));
    showPlaybackFeedback(DashboardTexts::speed(rate));
}

void DashboardPlayback::stepVolume(double step) {
    if (!player_) return;
    const double previous = player_->volume();
    const double volume = std::clamp(previous + step, 0.0, 1.0);
    if (volume != previous) {
        player_->setVolume(volume);
        defaults_.setDouble(volume, SettingsKeys::playbackVolume);
        emit volumeAnimationRequested(nextAnimation(previous, volume));
    }
    // At either limit the toast shows though nothing changed, unlike the speed.
    showPlaybackFeedback(DashboardTexts::volume(volume));
}

void DashboardPlayback::toggleMute() {
    if (!player_) return;
    const bool muted = !player_->isMuted();
    player_->setMuted(muted);
    defaults_.setBool(muted, SettingsKeys::playbackMuted);
    showPlaybackFeedback(DashboardTexts::muted(muted));
}

void DashboardPlayback::showPlaybackFeedback(const QString& title, const QString& symbol) {
    toast_.show(title, symbol);
}

void DashboardPlayback::showPlaybackFeedback(const PlaybackFeedback& feedback) {
    toast_.show(feedback.title, feedback.symbol);
}

PlaybackControlAnimationRequest DashboardPlayback::nextAnimation(double previousValue, double newValue) {
    return {++playbackControlAnimationID_, previousValue, newValue, newValue > previousValue};
}

void DashboardPlayback::startPositionUpdates() {
    if (positionUpdates_ && !positionUpdates_->isFinished()) return;
    positionUpdates_ =
        Job<void>::start([this, clock = &clock_](CancellationToken token) -> QCoro::Task<void> {
            while (!token.isCancelled()) {
                readPosition();
                QCoro::Task<bool> pause = clock->sleep(kPositionInterval, token);
                const bool waited = co_await pause;
                if (!waited || token.isCancelled()) co_return;  // the window went: touch nothing
            }
        });
}

void DashboardPlayback::stopPositionUpdates() {
    if (positionUpdates_) positionUpdates_->cancel();
    positionUpdates_.reset();
}

void DashboardPlayback::stop() {
    stopPositionUpdates();
    toast_.cancelDismissal();
}

void DashboardPlayback::readPosition() {
    if (!player_) return;
    const double seconds = player_->currentTime();
    if (std::isfinite(seconds)) setCurrentTime(seconds);
}

}  // namespace kestrum
