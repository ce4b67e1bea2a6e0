#pragma once

#include "base/async/Clock.h"
#include "base/async/Job.h"
#include "platform/ports/VideoPlayer.h"

#include <QObject>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace kestrum {

// A player that plays nothing: it keeps a playhead over a movie of a given length, records every call in
// order (seeks with their tolerances), and keeps the port's contract for notices and seek completions,
// delivering them from the event loop. Its playhead moves only when a test calls `advancePlayhead`, or
// when `startTicking` moves it on a Clock (the gallery's moving playhead). It never waits: a non-zero rate
// plays at once, so its status is never `waitingToPlayAtSpecifiedRate` unless a test sets it.
//
// Threads: the main thread only, like the port.
class FakeVideoPlayer final : public VideoPlayer {
  public:
    struct Call {
        enum class Kind {
            replaceCurrentItem,
            setForwardPlaybackEndTime,
            play,
            pause,
            playImmediatelyAtRate,
            setRate,
            setDefaultRate,
            seek,
            setVolume,
            setMuted,
        };
        Kind kind = Kind::play;
        // The rate, volume, seek time, end time (NaN for absent) or mute (0 or 1) given; 0 for the others.
        double value = 0;
        VideoSeekTolerance tolerance;  // seeks only
        std::optional<QString> path;   // replaceCurrentItem only

        friend bool operator==(const Call&, const Call&) = default;
    };

    // A player of the movie at `moviePath`, `movieDurationSeconds` long; absent: a player with no item.
    // It becomes ready for display from the event loop, as a real player does after its first picture.
    explicit FakeVideoPlayer(std::optional<QString> moviePath = std::nullopt,
                             double movieDurationSeconds = 0);
    ~FakeVideoPlayer() override;
    FakeVideoPlayer(const FakeVideoPlayer&) = delete;
    FakeVideoPlayer& operator=(const FakeVideoPlayer&) = delete;

    std::optional<QString> currentItemPath() const override { return itemPath_; }
    void replaceCurrentItem(const std::optional<QString>& moviePath) override;
    std::optional<double> forwardPlaybackEndTime() const override { return forwardEndSeconds_; }
    void setForwardPlaybackEndTime(std::optional<double> seconds) override;
    void play() override;
    void pause() override;
    void playImmediatelyAtRate(double rate) override;
    double rate() const override { return rate_; }
    void setRate(double rate) override;
    double defaultRate() const override { return defaultRate_; }
    void setDefaultRate(double rate) override;
    VideoPlayerTimeControlStatus timeControlStatus() const override { return status_; }
    double currentTime() const override;
    void seek(double timeSeconds, VideoSeekTolerance tolerance, SeekCompletion completion = {}) override;
    double volume() const override { return volume_; }
    void setVolume(double volume) override;
    bool isMuted() const override { return muted_; }
    void setMuted(bool muted) override;
    bool isReadyForDisplay() const override { return readyForDisplay_; }
    void addListener(VideoPlayerListener& listener) override;
    void removeListener(VideoPlayerListener& listener) override;

    // Every call made through the port, in order.
    const std::vector<Call>& calls() const { return calls_; }
    // The seek calls alone, in order.
    std::vector<Call> seeks() const;
    void clearCalls() { calls_.clear(); }

    // The length of the movie that replaceCurrentItem loads from now on, and of the current one.
    void setMovieDurationSeconds(double seconds) { movieDurationSeconds_ = seconds; }
    double movieDurationSeconds() const { return movieDurationSeconds_; }

    // Moves the playhead by `wallSeconds` times the rate while playing, and stops at the end time with the
    // end notice, as a real player does.
    void advancePlayhead(double wallSeconds);

    // Seeks complete from the event loop (true) when set, the default; when cleared they stay running
    // until finishPendingSeek.
    bool completesSeeksAtOnce = true;
    // Completes the running seek, if any, with `finished`.
    void finishPendingSeek(bool finished = true);
    bool hasPendingSeek() const { return pendingSeek_.has_value(); }

    // Set: the item becomes ready for display from the event loop, as a real player's first picture; cleared
    // before the event loop runs, it waits for setReadyForDisplay.
    bool showsPictureByItself = true;
    // Script: the readiness of the picture and a waiting status, each reported as a real player would.
    void setReadyForDisplay(bool ready);
    void setTimeControlStatus(VideoPlayerTimeControlStatus status);
    // Script: the current item turns out not to play (a damaged movie). The player pauses, the picture is
    // not ready, and playbackFailed(reason) is reported once per item; without an item it does nothing.
    void failCurrentItem(const QString& reason);

    // Moves the playhead every `interval` of `clock` by the time that passed, until stopTicking or the
    // player's end. The clock must outlive the ticking.
    void startTicking(Clock& clock, Clock::Duration interval);
    void stopTicking();

  private:
    struct PendingSeek {
        std::uint64_t id = 0;
        SeekCompletion completion;
    };

    void record(Call::Kind kind, double value = 0);
    void playAt(double rate);
    void setStatus(VideoPlayerTimeControlStatus status);
    double endTime() const;
    void abandonPendingSeek();
    // Makes the current item ready for display at the next turn of the event loop.
    void becomeReadyLater();
    // Queues `notice` for every listener registered when it is delivered.
    void post(std::function<void(VideoPlayerListener&)> notice);
    void deliver(const std::function<void(VideoPlayerListener&)>& notice);
    void postCompletion(SeekCompletion completion, bool finished);

    QObject noticeContext_;  // queued notices and completions die with the player
    std::vector<VideoPlayerListener*> listeners_;
    std::vector<Call> calls_;
    std::optional<QString> itemPath_;
    double movieDurationSeconds_ = 0;
    std::optional<double> forwardEndSeconds_;
    double positionSeconds_ = 0;
    double rate_ = 0;
    double defaultRate_ = 1;
    double volume_ = 1;
    bool muted_ = false;
    bool readyForDisplay_ = false;
    bool itemFailed_ = false;  // the current item was failed by the script: it never becomes ready
    VideoPlayerTimeControlStatus status_ = VideoPlayerTimeControlStatus::paused;
    std::optional<PendingSeek> pendingSeek_;
    std::uint64_t nextSeekID_ = 1;
    std::optional<Job<void>> ticking_;
};

}  // namespace kestrum
