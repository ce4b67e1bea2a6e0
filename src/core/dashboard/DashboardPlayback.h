#pragma once

#include "base/async/Clock.h"
#include "base/async/Job.h"
#include "core/dashboard/DashboardToast.h"
#include "core/review/PlaybackControlAnimationRequest.h"
#include "core/settings/UserDefaults.h"
#include "platform/ports/VideoPlayer.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

namespace kestrum {

// The playback side of the review window: the player of the selected recording with what the window
// knows of it (the current time, the movie's duration and shape, the rate, whether it loads, whether the
// user wants it playing), the commands of the keys and buttons, the toast they show, and the 20 Hz read
// of the player's position that drives the timeline and the scoreboard.
//
// `requestedIsPlaying` is what the user wants; the player may not be ready yet. While the recording
// loads, a play request only sets it: the detail job starts the player when the load ends.
//
// A command without a player does nothing and shows nothing; so does `skip` without a duration.
// Speed steps at either end of the list show no toast; volume steps at 0 or 1 still do.
//
// Threads: the main thread; the toast and the position read run on the Clock. The store and the clock
// must outlive it.
class DashboardPlayback : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasPlayer READ hasPlayer NOTIFY playerChanged)
    Q_PROPERTY(QObject* playerObject READ playerObject NOTIFY playerChanged)
    Q_PROPERTY(double currentTime READ currentTime WRITE setCurrentTime NOTIFY currentTimeChanged)
    Q_PROPERTY(double videoDuration READ videoDuration NOTIFY recordingShapeChanged)
    Q_PROPERTY(double videoAspectRatio READ videoAspectRatio NOTIFY recordingShapeChanged)
    Q_PROPERTY(double playbackRate READ playbackRate WRITE setPlaybackRate NOTIFY playbackRateChanged)
    Q_PROPERTY(bool isLoadingRecording READ isLoadingRecording NOTIFY isLoadingRecordingChanged)
    Q_PROPERTY(bool requestedIsPlaying READ requestedIsPlaying WRITE setRequestedIsPlaying NOTIFY
                   requestedIsPlayingChanged)
    Q_PROPERTY(bool hasToast READ hasToast NOTIFY toastChanged)
    Q_PROPERTY(QString toastTitle READ toastTitle NOTIFY toastChanged)
    Q_PROPERTY(QString toastSymbol READ toastSymbol NOTIFY toastChanged)

  public:
    static constexpr std::chrono::milliseconds kPositionInterval{50};
    static constexpr double kVolumeStep = 0.05;
    static constexpr double kDefaultAspectRatio = 16.0 / 9.0;

    DashboardPlayback(UserDefaults& defaults, Clock& clock, QObject* parent = nullptr);
    ~DashboardPlayback() override;

    VideoPlayer* player() const { return player_.get(); }
    const std::shared_ptr<VideoPlayer>& sharedPlayer() const { return player_; }
    void setPlayer(std::shared_ptr<VideoPlayer> player);
    bool hasPlayer() const { return player_ != nullptr; }
    // The player as the item that draws it takes it (an adapter that is a QObject); null with none or
    // with a player that is no QObject (a fake).
    QObject* playerObject() const { return dynamic_cast<QObject*>(player_.get()); }

    double currentTime() const { return currentTime_; }
    // A NaN time is not stored.
    void setCurrentTime(double seconds);
    double videoDuration() const { return videoDuration_; }
    double videoAspectRatio() const { return videoAspectRatio_; }
    void setRecordingShape(double durationSeconds, double aspectRatio);
    double playbackRate() const { return playbackRate_; }
    // The rate as the window knows it (the speed pop-up sets the player itself); not below or at 0.
    void setPlaybackRate(double rate);
    bool isLoadingRecording() const { return isLoadingRecording_; }
    void setLoadingRecording(bool loading);
    bool requestedIsPlaying() const { return requestedIsPlaying_; }
    void setRequestedIsPlaying(bool requested);

    bool hasToast() const { return toast_.feedback().has_value(); }
    QString toastTitle() const;
    QString toastSymbol() const;

    // The commands. Play and pause: a play at or past the end of a known duration starts again from 0.
    Q_INVOKABLE void togglePlayback();
    // By `seconds` from the current time, within 0 and the duration.
    Q_INVOKABLE void skip(double seconds);
    // One place along the list of speeds from the nearest entry; `step` is +1 or -1.
    Q_INVOKABLE void stepSpeed(int step);
    Q_INVOKABLE void resetSpeed();
    // By `step` (±kVolumeStep) within 0 and 1; stored under "playbackVolume".
    Q_INVOKABLE void stepVolume(double step);
    // Stored under "playbackMuted".
    Q_INVOKABLE void toggleMute();
    Q_INVOKABLE void showPlaybackFeedback(const QString& title, const QString& symbol);
    void showPlaybackFeedback(const PlaybackFeedback& feedback);

    // The 20 Hz read of the player's position, while the review window shows.
    void startPositionUpdates();
    void stopPositionUpdates();
    // The window goes: the position read and the toast's dismissal stop.
    void stop();

  signals:
    void playerChanged();
    void currentTimeChanged();
    void recordingShapeChanged();
    void playbackRateChanged();
    void isLoadingRecordingChanged();
    void requestedIsPlayingChanged();
    void toastChanged();
    // A key changed the speed or the volume: the timeline shows the control briefly.
    void playbackRateAnimationRequested(const kestrum::PlaybackControlAnimationRequest& request);
    void volumeAnimationRequested(const kestrum::PlaybackControlAnimationRequest& request);

  private:
    void changeRate(double rate);
    PlaybackControlAnimationRequest nextAnimation(double previousValue, double newValue);
    void readPosition();

    UserDefaults& defaults_;
    Clock& clock_;
    // All main thread.
    std::shared_ptr<VideoPlayer> player_;
    double currentTime_ = 0;
    double videoDuration_ = 0;
    double videoAspectRatio_ = kDefaultAspectRatio;
    double playbackRate_ = 1;
    bool isLoadingRecording_ = false;
    bool requestedIsPlaying_ = false;
    std::int64_t playbackControlAnimationID_ = 0;
    std::optional<Job<void>> positionUpdates_;
    DashboardToast toast_;  // last: its dismissal is cancelled before the fields above go
};

}  // namespace kestrum
