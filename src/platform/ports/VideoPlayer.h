#pragma once

#include <QString>

#include <functional>
#include <limits>
#include <memory>
#include <optional>

namespace kestrum {

// Whether a player plays: `paused` (rate 0, stopped at its end, or no item), `waitingToPlayAtSpecifiedRate`
// (a non-zero rate, but the picture is not moving yet: loading, or a seek not done), `playing`. The raw
// values are the ones the review window compares (playing is 2).
enum class VideoPlayerTimeControlStatus : int { paused = 0, waitingToPlayAtSpecifiedRate = 1, playing = 2 };

// How far from the asked time a seek may land, in seconds before and after it. Zero both ways is an exact
// seek: the picture shown is the frame at (or just before) the time. A wider window lets the player land
// on a key frame inside it, which is faster; an adapter that cannot land inside a window (mpv: a key frame
// may be a whole key-frame interval away) seeks exactly instead. Infinity both ways lets the player take
// the nearest key frame wherever it is.
struct VideoSeekTolerance {
    double beforeSeconds = 0;
    double afterSeconds = 0;

    static constexpr VideoSeekTolerance exact() { return {0, 0}; }
    static constexpr VideoSeekTolerance symmetric(double seconds) { return {seconds, seconds}; }
    static constexpr VideoSeekTolerance anyKeyFrame() {
        return {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
    }
    bool isExact() const { return beforeSeconds == 0 && afterSeconds == 0; }

    friend bool operator==(const VideoSeekTolerance&, const VideoSeekTolerance&) = default;
};

// What a player reports by itself. Every notice comes on the main thread from its event loop, never from
// inside a call of the player (so a listener may call the player freely), and never from a thread of the
// playback engine. The default bodies ignore the notice.
class VideoPlayerListener {
  public:
    virtual ~VideoPlayerListener() = default;

    // The status changed (see VideoPlayerTimeControlStatus); reported once per change.
    virtual void timeControlStatusChanged(VideoPlayerTimeControlStatus /*status*/) {}

    // Playing reached the current item's end time (forwardPlaybackEndTime, or the movie's end when that is
    // absent or later). The player has paused there: rate 0, status paused, the position at the end.
    virtual void didPlayToEndTime() {}

    // The current item's picture became ready to show, or stopped being (a new item was set).
    virtual void readyForDisplayChanged(bool /*isReadyForDisplay*/) {}

    // The current item cannot be played: its movie could not be opened or decoded (a damaged or truncated
    // file, not a movie at all). Reported at most once per item; the player has paused and the item stays
    // set but never becomes ready for display. `reason` is the engine's own short description, for logs.
    virtual void playbackFailed(const QString& /*reason*/) {}
};

// The movie player of the review window: one movie (the current item) at a time, with play, pause, rate,
// seeks with tolerances, volume, mute, and the notices above. The review window polls `currentTime` 20
// times a second; there is no position notice.
//
// Contract, for every adapter:
// - Threads: every call, and the construction and destruction, on the main thread. Notices: see
//   VideoPlayerListener. Seek completions likewise come from the main event loop, never inside `seek`.
// - Time: seconds on the movie's own axis (0 is its first frame), as doubles. Rates are multiples of the
//   movie's speed; the review window uses 0.25 to 8, which every adapter plays with its pitch corrected.
// - Rate follows the platform's player: `rate` is 0 while paused; `setRate` with a non-zero value plays at
//   it (and leaves `defaultRate` alone); `play` plays at `defaultRate`; `pause` sets the rate to 0;
//   `playImmediatelyAtRate` plays at once at the given rate without waiting for buffers to fill.
// - A player is made with its movie (VideoPlayerFactory). `replaceCurrentItem(nullopt)` leaves it with no
//   item: it pauses, `currentTime` is NaN, it is not ready for display, and seeks complete with false.
// - End of play: when playing reaches the end time, the player pauses there and reports
//   didPlayToEndTime once; nothing loops. `play` at the end reports the end again at once; callers seek
//   back first.
// - Listeners are not owned; a listener removes itself before it is destroyed. Adding or removing a
//   listener while a notice is delivered is allowed; a removed listener gets no further notice.
// - Destroying the player stops playback, drops pending seek completions without calling them and
//   sends no further notice.
// - How the picture is drawn is the adapter's business (the mpv adapter draws into its own Qt Quick item).
class VideoPlayer {
  public:
    // Called once: true when the player reached the position, false when a later seek, a replaced item or
    // the lack of an item abandoned it.
    using SeekCompletion = std::function<void(bool finished)>;

    virtual ~VideoPlayer() = default;

    // The movie now loaded, as an absolute path; absent when there is no item.
    virtual std::optional<QString> currentItemPath() const = 0;
    // Loads another movie (paused at 0, not ready for display until its first picture), or none.
    virtual void replaceCurrentItem(const std::optional<QString>& moviePath) = 0;

    // Where playing of the current item stops, in seconds; absent means the movie's end. Reset to absent
    // by replaceCurrentItem.
    virtual std::optional<double> forwardPlaybackEndTime() const = 0;
    virtual void setForwardPlaybackEndTime(std::optional<double> seconds) = 0;

    virtual void play() = 0;
    virtual void pause() = 0;
    virtual void playImmediatelyAtRate(double rate) = 0;
    virtual double rate() const = 0;
    virtual void setRate(double rate) = 0;
    // The rate `play` uses; 1.0 for a new player.
    virtual double defaultRate() const = 0;
    virtual void setDefaultRate(double rate) = 0;
    virtual VideoPlayerTimeControlStatus timeControlStatus() const = 0;

    // The playhead in seconds; NaN when there is no item. From a `seek` call on it reads the target (so a
    // poll right after a seek does not jump back), and the position landed on once the seek is done.
    virtual double currentTime() const = 0;
    // Moves the playhead to `timeSeconds` within `tolerance`; a seek supersedes any seek still running,
    // whose completion then gets false. Playing goes on from the new position if it was playing.
    virtual void seek(double timeSeconds, VideoSeekTolerance tolerance, SeekCompletion completion = {}) = 0;

    // The loudness, 0 (silent) to 1 (the movie's own level); values outside are clamped. Independent of
    // the mute, which silences without changing the volume.
    virtual double volume() const = 0;
    virtual void setVolume(double volume) = 0;
    virtual bool isMuted() const = 0;
    virtual void setMuted(bool muted) = 0;

    // Whether the picture at the playhead is ready to be shown.
    virtual bool isReadyForDisplay() const = 0;

    virtual void addListener(VideoPlayerListener& listener) = 0;
    virtual void removeListener(VideoPlayerListener& listener) = 0;

  protected:
    VideoPlayer() = default;
    VideoPlayer(const VideoPlayer&) = default;
    VideoPlayer& operator=(const VideoPlayer&) = default;
};

// Makes players. Main thread. The player starts paused at 0 with the movie at `moviePath` (absolute) as
// its item, `defaultRate` 1, volume 1, not muted. A movie that cannot be opened leaves it with no item
// when the factory can tell at once (a missing file); a failure found later, while the engine opens or
// decodes the file, is reported by playbackFailed.
class VideoPlayerFactory {
  public:
    virtual ~VideoPlayerFactory() = default;
    virtual std::unique_ptr<VideoPlayer> makePlayer(const QString& moviePath) = 0;
};

}  // namespace kestrum
