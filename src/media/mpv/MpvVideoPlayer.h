#pragma once

#include "platform/ports/VideoPlayer.h"

#include <QObject>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

struct mpv_event;

namespace kestrum {

class MpvHandle;
class MpvVideoPlayerItem;

// The review window's movie player on libmpv. It keeps the port's contract (see VideoPlayer): every
// call and every notice on the main thread, notices and seek completions from the event loop.
//
// How it sits on mpv:
// - Every request to the engine is asynchronous, so the main thread never waits for mpv's core (which
//   may itself wait for a frame to be drawn, on the main thread under Qt's basic render loop). mpv's
//   wakeup callback only posts a drain of its events to this object.
// - The engine has a picture only while an item (MpvVideoPlayerItem) shows the player: the item creates
//   the render context and tells the player, which then selects the video track. A prepared player (made,
//   its movie loaded, paused, not shown) thus holds no render context and no video decoder; its sound
//   track is selected at load.
// - Ready for display: once the item has drawn a new picture of the current movie.
// - End of play: mpv's `end` option carries forwardPlaybackEndTime; with keep-open the engine pauses on
//   the last frame before it, and the player reports didPlayToEndTime once, its position at the end.
//
// Threads: the main thread only, like the port; the engine's callbacks only post to it.
class MpvVideoPlayer final : public QObject, public VideoPlayer {
    Q_OBJECT

  public:
    // A player of `engine` (null: libmpv could not make one, and the player never has an item) with the
    // movie at `moviePath` loading, or with no item.
    MpvVideoPlayer(std::shared_ptr<MpvHandle> engine, const std::optional<QString>& moviePath);
    ~MpvVideoPlayer() override;
    MpvVideoPlayer(const MpvVideoPlayer&) = delete;
    MpvVideoPlayer& operator=(const MpvVideoPlayer&) = delete;

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
    void setDefaultRate(double rate) override { defaultRate_ = rate; }
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

    // Why the last movie given could not be opened, in mpv's words ("loading failed"), or that the file is
    // missing; absent while it loads or plays, and when no movie was given.
    std::optional<QString> loadError() const { return loadError_; }
    // The movie's duration as the engine reads it; absent until it is loaded.
    std::optional<double> durationSeconds() const { return durationSeconds_; }
    // An engine property read at once, waiting for mpv's core: a diagnostic for tests, not for the
    // review window's paths (it may wait on a frame being drawn). Invalid when there is no engine or
    // the property has no value.
    QVariant engineProperty(const char* name) const;

  private:
    friend class MpvVideoPlayerItem;

    enum class ItemState { none, loading, loaded };

    struct PendingSeek {
        std::uint64_t requestID = 0;  // of the seek command once sent; 0 while the movie loads
        bool accepted = false;        // the engine took the command; its next playback restart ends it
        double targetSeconds = 0;
        const char* flags = "absolute+exact";
        SeekCompletion completion;  // empty for the player's own first positioning
    };

    // For MpvVideoPlayerItem (main thread). The engine's share the item's renderer draws.
    const std::shared_ptr<MpvHandle>& engine() const { return engine_; }
    // Whether a render context of an item exists for the engine: the video track follows it. Called with
    // true for every new render context.
    void setVideoOutputAttached(bool attached);
    // The item drew a new picture of the engine.
    void noteVideoFrameShown();

    // Drains mpv's event queue; posted by the wakeup callback.
    void processEngineEvents();
    void handleEvent(const mpv_event& event);
    void handlePropertyChange(const mpv_event& event);
    void handleCommandReply(const mpv_event& event);
    void handleMovieLoaded();
    void handleMovieFailed(const QString& reason);
    void handlePlaybackRestart();
    void handlePropertyReply(const mpv_event& event);
    void handleEngineAtEnd();

    void load(const std::optional<QString>& moviePath);
    void playAt(double rate);
    bool standsAtEnd() const;
    double endSeconds() const;
    void sendSeek(PendingSeek& seek);
    void abandonPendingSeek();
    void applyVideoTrack();

    // Asynchronous requests to the engine; each returns its reply's tag (0 with no engine).
    std::uint64_t command(std::initializer_list<const char*> arguments);
    void setFlag(const char* name, bool value);
    void setDouble(const char* name, double value);
    void setText(const char* name, const char* value);

    void updateStatus();
    void setReadyForDisplay(bool ready);
    void post(std::function<void(VideoPlayerListener&)> notice);
    void postCompletion(SeekCompletion completion, bool finished);

    std::shared_ptr<MpvHandle> engine_;
    std::uint64_t nextRequestID_ = 1;
    std::vector<VideoPlayerListener*> listeners_;

    // The current item, all main thread.
    std::optional<QString> itemPath_;
    ItemState itemState_ = ItemState::none;
    std::optional<QString> loadError_;
    std::uint64_t loadRequestID_ = 0;             // the loadfile command of the current item
    std::optional<std::int64_t> entryID_;         // its playlist entry, from the command's reply
    std::optional<std::int64_t> startedEntryID_;  // the entry the engine last started
    std::optional<double> forwardEndSeconds_;
    std::optional<double> durationSeconds_;
    std::optional<double> framesPerSecond_;  // the movie's nominal frame rate, for exact seeks
    std::uint64_t frameRateRequestID_ = 0;   // the read of the frame rate that completes a load

    // Playback as the port sees it, main thread.
    double rate_ = 0;
    double defaultRate_ = 1;
    double volume_ = 1;
    bool muted_ = false;
    bool atEnd_ = false;  // reached the end while playing; currentTime reads the end time
    std::optional<PendingSeek> pendingSeek_;
    // A seek's target, read as the position from the seek call until the engine reports a position
    // after the seek ended (so that a poll never jumps back to where the playhead was).
    std::optional<double> seekTargetSeconds_;
    std::uint64_t positionRequestID_ = 0;  // the read of the landed position after the last seek ended

    // The engine's state as last reported, main thread.
    double positionSeconds_ = 0;
    bool engineSeeking_ = false;
    bool pausedForCache_ = false;
    bool coreIdle_ = true;
    bool engineAtEnd_ = false;

    bool videoAttached_ = false;
    bool readyForDisplay_ = false;
    VideoPlayerTimeControlStatus status_ = VideoPlayerTimeControlStatus::paused;
};

}  // namespace kestrum
