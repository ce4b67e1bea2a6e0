#include "core/dashboard/VideoPlayerSurfaceModel.h"

#include "core/review/PlaybackControlTexts.h"
#include "core/review/ReviewTimeText.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace kestrum {

// Follows the player on show; the player calls it from the event loop.
class VideoPlayerSurfaceModel::Listener final : public VideoPlayerListener {
  public:
    explicit Listener(VideoPlayerSurfaceModel& model) : model_(model) {}

    void timeControlStatusChanged(VideoPlayerTimeControlStatus status) override {
        model_.setPlaying(status == VideoPlayerTimeControlStatus::playing);
    }
    void didPlayToEndTime() override {
        model_.setPlaying(false);
        model_.playback_.setCurrentTime(model_.playback_.videoDuration());
    }
    void readyForDisplayChanged(bool isReady) override {
        if (isReady) emit model_.readyForDisplay();
    }

  private:
    VideoPlayerSurfaceModel& model_;
};

VideoPlayerSurfaceModel::VideoPlayerSurfaceModel(DashboardPlayback& playback, Clock& clock, QObject* parent)
    : QObject(parent),
      playback_(playback),
      listener_(std::make_unique<Listener>(*this)),
      speedRates_(new ReviewRowListModel({"rate", "label", "isSelected"}, this)),
      delays_(clock) {
    connect(&playback_, &DashboardPlayback::playerChanged, this, &VideoPlayerSurfaceModel::followPlayer);
    connect(&playback_, &DashboardPlayback::currentTimeChanged, this, &VideoPlayerSurfaceModel::timesChanged);
    connect(&playback_, &DashboardPlayback::recordingShapeChanged, this,
            &VideoPlayerSurfaceModel::timesChanged);
    // The keys change the speed through the review window; the menu follows.
    connect(&playback_, &DashboardPlayback::playbackRateChanged, this, [this] {
        if (playback_.playbackRate() == playbackRate_) return;
        playbackRate_ = playback_.playbackRate();
        publishRates();
        emit playbackRateChanged();
    });
    followPlayer();
}

VideoPlayerSurfaceModel::~VideoPlayerSurfaceModel() {
    if (player_) player_->removeListener(*listener_);
}

double VideoPlayerSurfaceModel::scrubberMaximum() const {
    return std::max(playback_.videoDuration(), kMinimumScrubberRange);
}

double VideoPlayerSurfaceModel::scrubberValue() const {
    return std::clamp(playback_.currentTime(), 0.0, std::max(playback_.videoDuration(), 0.0));
}

QString VideoPlayerSurfaceModel::currentTimeText() const {
    return playheadTimeText(playback_.currentTime(), playback_.videoDuration());
}

QString VideoPlayerSurfaceModel::durationText() const {
    return formatTime(playback_.videoDuration());
}

QString VideoPlayerSurfaceModel::positionAccessibilityValue() const {
    return currentTimeText() + QStringLiteral(" of ") + durationText();
}

QString VideoPlayerSurfaceModel::playPauseSymbol() const {
    return playButtonSymbolName(isPlaying_);
}

QString VideoPlayerSurfaceModel::playPauseHelp() const {
    return isPlaying_ ? QStringLiteral("Pause") : QStringLiteral("Play");
}

void VideoPlayerSurfaceModel::setDoubleClickIntervalMs(int intervalMs) {
    if (intervalMs == doubleClickIntervalMs_ || intervalMs < 0) return;
    doubleClickIntervalMs_ = intervalMs;
    emit doubleClickIntervalChanged();
}

void VideoPlayerSurfaceModel::mouseDown(int clickCount) {
    if (clickCount == 1) {
        if (pendingSingleClick_) pendingSingleClick_->cancel();
        pendingSingleClick_ = delays_.after(std::chrono::milliseconds(doubleClickIntervalMs_), [this] {
            emit interacted();
            togglePlayPause();
        });
    } else if (clickCount == 2) {
        if (pendingSingleClick_) pendingSingleClick_->cancel();
        pendingSingleClick_.reset();
        emit doubleClicked();
        emit interacted();
    }
}

void VideoPlayerSurfaceModel::seek(double seconds) {
    const double duration = playback_.videoDuration();
    if (!std::isfinite(duration) || !(duration > 0) || std::isnan(seconds)) return;
    const double target = std::clamp(seconds, 0.0, duration);
    playback_.setCurrentTime(target);
    if (VideoPlayer* player = playback_.player()) player->seek(target, VideoSeekTolerance::exact());
    emit seeked(target);
}

void VideoPlayerSurfaceModel::togglePlayPause() {
    VideoPlayer* player = playback_.player();
    if (!player) return;
    if (player->timeControlStatus() == VideoPlayerTimeControlStatus::playing) {
        player->pause();
        emit playingChanged(false);
        return;
    }
    const double duration = playback_.videoDuration();
    if (duration > 0 && playback_.currentTime() >= duration) {
        playback_.setCurrentTime(0);
        player->seek(0, VideoSeekTolerance::exact());
    }
    player->play();
    emit playingChanged(true);
}

void VideoPlayerSurfaceModel::selectRate(double rate) {
    if (!(rate > 0)) return;
    playbackRate_ = rate;
    if (VideoPlayer* player = playback_.player()) {
        player->setDefaultRate(rate);
        if (isPlaying_) player->setRate(rate);
    }
    publishRates();
    emit playbackRateChanged();
    emit rateChanged(rate);
}

void VideoPlayerSurfaceModel::followPlayer() {
    if (player_) player_->removeListener(*listener_);
    player_ = playback_.sharedPlayer();
    if (player_) player_->addListener(*listener_);
    // At the start both are read from the player, the rate from its default rate.
    setPlaying(player_ && player_->timeControlStatus() == VideoPlayerTimeControlStatus::playing);
    const double rate = player_ ? player_->defaultRate() : 1.0;
    if (rate != playbackRate_) {
        playbackRate_ = rate;
        emit playbackRateChanged();
    }
    publishRates();
}

void VideoPlayerSurfaceModel::setPlaying(bool playing) {
    if (playing == isPlaying_) return;
    isPlaying_ = playing;
    emit isPlayingChanged();
}

void VideoPlayerSurfaceModel::publishRates() {
    speedRates_->setRows(playbackRateRows(playbackRate_));
}

}  // namespace kestrum
