#include "media/mpv/MpvVideoPlayer.h"

#include "media/mpv/MpvHandle.h"
#include "media/mpv/MpvPlaybackRules.h"

#include <mpv/client.h>

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

namespace kestrum {

namespace {

constexpr double kNoTime = std::numeric_limits<double>::quiet_NaN();

struct ObservedProperty {
    const char* name;
    mpv_format format;
};

// The position comes before the end flag, so that a batch of changes reports where the end left it
// before it reports the end.
constexpr ObservedProperty kObservedProperties[] = {
    {"time-pos", MPV_FORMAT_DOUBLE}, {"duration", MPV_FORMAT_DOUBLE},       {"seeking", MPV_FORMAT_FLAG},
    {"core-idle", MPV_FORMAT_FLAG},  {"paused-for-cache", MPV_FORMAT_FLAG}, {"eof-reached", MPV_FORMAT_FLAG},
};

QVariant variantOf(const mpv_node& node) {
    switch (node.format) {
        case MPV_FORMAT_FLAG:
            return QVariant(node.u.flag != 0);
        case MPV_FORMAT_INT64:
            return QVariant(static_cast<qlonglong>(node.u.int64));
        case MPV_FORMAT_DOUBLE:
            return QVariant(node.u.double_);
        case MPV_FORMAT_STRING:
            return QVariant(QString::fromUtf8(node.u.string));
        default:
            return {};
    }
}

// The frame rate the container gives the first video track, from mpv's track list (an array of maps).
// The movie's own rate rather than the decoder's: no track is decoded yet when a movie loads.
std::optional<double> firstVideoFrameRate(const mpv_node& trackList) {
    if (trackList.format != MPV_FORMAT_NODE_ARRAY) return std::nullopt;
    for (int track = 0; track < trackList.u.list->num; ++track) {
        const mpv_node& entry = trackList.u.list->values[track];
        if (entry.format != MPV_FORMAT_NODE_MAP) continue;
        bool video = false;
        std::optional<double> rate;
        for (int field = 0; field < entry.u.list->num; ++field) {
            const std::string_view key = entry.u.list->keys[field];
            const mpv_node& value = entry.u.list->values[field];
            if (key == "type" && value.format == MPV_FORMAT_STRING)
                video = std::string_view(value.u.string) == "video";
            if (key == "demux-fps" && value.format == MPV_FORMAT_DOUBLE) rate = value.u.double_;
        }
        if (video) return rate;
    }
    return std::nullopt;
}

}  // namespace

MpvVideoPlayer::MpvVideoPlayer(std::shared_ptr<MpvHandle> engine, const std::optional<QString>& moviePath)
    : engine_(std::move(engine)) {
    if (engine_) {
        for (const ObservedProperty& property : kObservedProperties) {
            mpv_observe_property(engine_->get(), 0, property.name, property.format);
        }
        // Called on one of mpv's threads: it only posts the drain to the main thread. The destructor
        // removes it before this object goes, and mpv never calls it after that.
        mpv_set_wakeup_callback(
            engine_->get(),
            [](void* context) {
                auto* player = static_cast<MpvVideoPlayer*>(context);
                QMetaObject::invokeMethod(
                    player, [player] { player->processEngineEvents(); }, Qt::QueuedConnection);
            },
            this);
    }
    load(moviePath);
}

MpvVideoPlayer::~MpvVideoPlayer() {
    if (!engine_) return;
    mpv_set_wakeup_callback(engine_->get(), nullptr, nullptr);
    // An item's renderer may hold the engine a little longer, until it has freed its render context; the
    // movie stops now all the same.
    command({"stop"});
}

void MpvVideoPlayer::replaceCurrentItem(const std::optional<QString>& moviePath) {
    abandonPendingSeek();
    rate_ = 0;
    setFlag("pause", true);
    forwardEndSeconds_.reset();
    setText("end", "none");
    setReadyForDisplay(false);
    load(moviePath);
    updateStatus();
}

void MpvVideoPlayer::load(const std::optional<QString>& moviePath) {
    itemPath_ = moviePath;
    itemState_ = ItemState::none;
    loadError_.reset();
    entryID_.reset();
    durationSeconds_.reset();
    framesPerSecond_.reset();
    frameRateRequestID_ = 0;
    seekTargetSeconds_.reset();
    positionSeconds_ = 0;
    atEnd_ = false;
    engineAtEnd_ = false;
    if (!moviePath) {
        command({"stop"});
        return;
    }
    if (!engine_) {
        handleMovieFailed(QStringLiteral("no player engine"));
        return;
    }
    if (!QFileInfo(*moviePath).isFile()) {
        command({"stop"});
        handleMovieFailed(QStringLiteral("no such file"));
        return;
    }
    itemState_ = ItemState::loading;
    const QByteArray path = QFile::encodeName(*moviePath);
    loadRequestID_ = command({"loadfile", path.constData(), "replace"});
}

void MpvVideoPlayer::setForwardPlaybackEndTime(std::optional<double> seconds) {
    forwardEndSeconds_ = seconds;
    const QByteArray end = seconds ? mpvSecondsArgument(std::max(*seconds, 0.0)) : QByteArray("none");
    setText("end", end.constData());
    atEnd_ = atEnd_ && isAtPlaybackEnd(true, positionSeconds_, endSeconds());
}

void MpvVideoPlayer::play() {
    playAt(defaultRate_);
}

void MpvVideoPlayer::pause() {
    rate_ = 0;
    setFlag("pause", true);
    updateStatus();
}

void MpvVideoPlayer::playImmediatelyAtRate(double rate) {
    // mpv starts at once from what it has decoded; there are no network buffers to wait for.
    playAt(rate);
}

void MpvVideoPlayer::setRate(double rate) {
    playAt(rate);
}

void MpvVideoPlayer::playAt(double rate) {
    if (rate == 0 || std::isnan(rate)) {
        pause();
        return;
    }
    if (!itemPath_) return;
    if (standsAtEnd()) {
        post([](VideoPlayerListener& listener) { listener.didPlayToEndTime(); });
        return;
    }
    rate_ = rate;
    setDouble("speed", mpvSpeed(rate));
    setFlag("pause", false);
    updateStatus();
}

double MpvVideoPlayer::currentTime() const {
    if (!itemPath_) return kNoTime;
    if (seekTargetSeconds_) return *seekTargetSeconds_;
    if (atEnd_ && std::isfinite(endSeconds())) return endSeconds();
    return positionSeconds_;
}

void MpvVideoPlayer::seek(double timeSeconds, VideoSeekTolerance tolerance, SeekCompletion completion) {
    abandonPendingSeek();
    if (!itemPath_) {
        postCompletion(std::move(completion), false);
        return;
    }
    double target = std::isnan(timeSeconds) ? 0 : std::max(timeSeconds, 0.0);
    if (durationSeconds_) target = std::min(target, std::max(*durationSeconds_, 0.0));
    atEnd_ = false;
    seekTargetSeconds_ = target;
    pendingSeek_ = PendingSeek{0, false, target, mpvSeekFlags(tolerance), std::move(completion)};
    if (itemState_ == ItemState::loaded) sendSeek(*pendingSeek_);
    updateStatus();
}

void MpvVideoPlayer::setVolume(double volume) {
    volume_ = clampedVolume(volume);
    setDouble("volume", mpvVolumePercent(volume_));
}

void MpvVideoPlayer::setMuted(bool muted) {
    muted_ = muted;
    setFlag("mute", muted);
}

void MpvVideoPlayer::addListener(VideoPlayerListener& listener) {
    if (std::find(listeners_.begin(), listeners_.end(), &listener) == listeners_.end()) {
        listeners_.push_back(&listener);
    }
}

void MpvVideoPlayer::removeListener(VideoPlayerListener& listener) {
    std::erase(listeners_, &listener);
}

QVariant MpvVideoPlayer::engineProperty(const char* name) const {
    if (!engine_) return {};
    mpv_node node{};
    if (mpv_get_property(engine_->get(), name, MPV_FORMAT_NODE, &node) < 0) return {};
    QVariant value = variantOf(node);
    mpv_free_node_contents(&node);
    return value;
}

void MpvVideoPlayer::setVideoOutputAttached(bool attached) {
    // A new render context is chosen again even when one was there before: mpv drops the video track
    // when a render context in use is freed.
    if (videoAttached_ == attached && !attached) return;
    videoAttached_ = attached;
    applyVideoTrack();
}

void MpvVideoPlayer::noteVideoFrameShown() {
    // Pictures drawn while a new movie loads are the old movie's last ones.
    if (itemState_ == ItemState::loaded && videoAttached_) setReadyForDisplay(true);
}

void MpvVideoPlayer::applyVideoTrack() {
    // A movie loads with no track chosen; its picture is decoded only while an item can draw it.
    if (itemState_ == ItemState::loaded) setText("vid", videoAttached_ ? "1" : "no");
}

void MpvVideoPlayer::processEngineEvents() {
    if (!engine_) return;
    for (;;) {
        const mpv_event* event = mpv_wait_event(engine_->get(), 0);
        if (event->event_id == MPV_EVENT_NONE) break;
        handleEvent(*event);
    }
    updateStatus();
}

void MpvVideoPlayer::handleEvent(const mpv_event& event) {
    switch (event.event_id) {
        case MPV_EVENT_PROPERTY_CHANGE:
            handlePropertyChange(event);
            break;
        case MPV_EVENT_COMMAND_REPLY:
            handleCommandReply(event);
            break;
        case MPV_EVENT_GET_PROPERTY_REPLY:
            handlePropertyReply(event);
            break;
        case MPV_EVENT_START_FILE:
            startedEntryID_ = static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id;
            break;
        case MPV_EVENT_FILE_LOADED:
            // The frame rate comes first: exact seeks are placed by it.
            if (itemState_ == ItemState::loading && entryID_ && startedEntryID_ == entryID_ && engine_) {
                frameRateRequestID_ = nextRequestID_++;
                mpv_get_property_async(engine_->get(), frameRateRequestID_, "track-list", MPV_FORMAT_NODE);
            }
            break;
        case MPV_EVENT_END_FILE: {
            const auto* ended = static_cast<const mpv_event_end_file*>(event.data);
            // A movie replaced or stopped by the player ends with another reason; keep-open never lets
            // one end at its end.
            if (entryID_ && ended->playlist_entry_id == *entryID_ &&
                ended->reason == MPV_END_FILE_REASON_ERROR) {
                handleMovieFailed(QString::fromUtf8(mpv_error_string(ended->error)));
            }
            break;
        }
        case MPV_EVENT_PLAYBACK_RESTART:
            handlePlaybackRestart();
            break;
        case MPV_EVENT_SHUTDOWN:
            if (itemPath_) handleMovieFailed(QStringLiteral("the player engine stopped"));
            break;
        default:
            break;
    }
}

void MpvVideoPlayer::handlePropertyChange(const mpv_event& event) {
    const auto* property = static_cast<const mpv_event_property*>(event.data);
    const QByteArray name(property->name);
    const bool hasValue = property->format != MPV_FORMAT_NONE && property->data != nullptr;
    const auto flag = [&] { return hasValue && *static_cast<const int*>(property->data) != 0; };
    if (name == "time-pos") {
        if (hasValue) positionSeconds_ = *static_cast<const double*>(property->data);
        if (engineAtEnd_) handleEngineAtEnd();
    } else if (name == "duration") {
        durationSeconds_.reset();
        if (hasValue) durationSeconds_ = *static_cast<const double*>(property->data);

    } else if (name == "seeking") {
        engineSeeking_ = flag();
    } else if (name == "core-idle") {
        coreIdle_ = flag();
    } else if (name == "paused-for-cache") {
        pausedForCache_ = flag();
    } else if (name == "eof-reached") {
        engineAtEnd_ = flag();
        if (engineAtEnd_) handleEngineAtEnd();
    }
}

void MpvVideoPlayer::handleCommandReply(const mpv_event& event) {
    if (event.reply_userdata == 0) return;
    if (event.reply_userdata == loadRequestID_) {
        if (event.error < 0) {
            if (itemState_ == ItemState::loading)
                handleMovieFailed(QString::fromUtf8(mpv_error_string(event.error)));
            return;
        }
        const mpv_node& result = static_cast<const mpv_event_command*>(event.data)->result;
        if (result.format != MPV_FORMAT_NODE_MAP) return;
        const mpv_node_list& map = *result.u.list;
        for (int index = 0; index < map.num; ++index) {
            if (std::string_view(map.keys[index]) == "playlist_entry_id" &&
                map.values[index].format == MPV_FORMAT_INT64) {
                entryID_ = map.values[index].u.int64;
            }
        }
        return;
    }
    if (!pendingSeek_ || event.reply_userdata != pendingSeek_->requestID) return;
    if (event.error >= 0) {
        pendingSeek_->accepted = true;
        return;
    }
    postCompletion(std::move(pendingSeek_->completion), false);
    pendingSeek_.reset();
    seekTargetSeconds_.reset();
}

void MpvVideoPlayer::handleMovieLoaded() {
    itemState_ = ItemState::loaded;
    // The first sound track is the game's sound; a microphone track, when there is one, follows it.
    setText("aid", "1");
    applyVideoTrack();
    // With no track chosen at load, the engine stands at its end: a first exact positioning (or the seek
    // asked for while loading) puts it at the start of play.
    if (!pendingSeek_) pendingSeek_ = PendingSeek{0, false, 0, "absolute+exact", {}};
    sendSeek(*pendingSeek_);
}

void MpvVideoPlayer::handleMovieFailed(const QString& reason) {
    loadError_ = reason;
    itemPath_.reset();
    itemState_ = ItemState::none;
    entryID_.reset();
    abandonPendingSeek();
    seekTargetSeconds_.reset();
    rate_ = 0;
    atEnd_ = false;
    setReadyForDisplay(false);
    post([reason](VideoPlayerListener& listener) { listener.playbackFailed(reason); });
}

void MpvVideoPlayer::handlePlaybackRestart() {
    if (!pendingSeek_ || !pendingSeek_->accepted) return;
    postCompletion(std::move(pendingSeek_->completion), true);
    pendingSeek_.reset();
    // The target stays the position until the engine says where the seek landed.
    if (engine_) {
        positionRequestID_ = nextRequestID_++;
        mpv_get_property_async(engine_->get(), positionRequestID_, "time-pos", MPV_FORMAT_DOUBLE);
    }
    if (engineAtEnd_) handleEngineAtEnd();
}

void MpvVideoPlayer::handlePropertyReply(const mpv_event& event) {
    const auto* property = static_cast<const mpv_event_property*>(event.data);
    const bool answered = event.error >= 0 && property->data != nullptr;
    if (event.reply_userdata == positionRequestID_) {
        if (answered && property->format == MPV_FORMAT_DOUBLE) {
            positionSeconds_ = *static_cast<const double*>(property->data);
        }
        if (!pendingSeek_) seekTargetSeconds_.reset();
    } else if (event.reply_userdata == frameRateRequestID_ && itemState_ == ItemState::loading) {
        if (answered && property->format == MPV_FORMAT_NODE) {
            framesPerSecond_ = firstVideoFrameRate(*static_cast<const mpv_node*>(property->data));
        }
        handleMovieLoaded();
    }
}

void MpvVideoPlayer::handleEngineAtEnd() {
    // Only playing that reaches the end time ends play; the engine's own end at load, or while a seek
    // runs, is not one.
    if (itemState_ != ItemState::loaded || pendingSeek_ || rate_ == 0) return;
    if (!isAtPlaybackEnd(engineAtEnd_, positionSeconds_, endSeconds())) return;
    rate_ = 0;
    atEnd_ = true;
    setFlag("pause", true);
    post([](VideoPlayerListener& listener) { listener.didPlayToEndTime(); });
}

bool MpvVideoPlayer::standsAtEnd() const {
    if (atEnd_) return true;
    return itemState_ == ItemState::loaded && !pendingSeek_ &&
           isAtPlaybackEnd(engineAtEnd_, positionSeconds_, endSeconds());
}

double MpvVideoPlayer::endSeconds() const {
    return playbackEndSeconds(forwardEndSeconds_, durationSeconds_);
}

void MpvVideoPlayer::sendSeek(PendingSeek& seek) {
    const bool exact = std::string_view(seek.flags) == mpvSeekFlags(VideoSeekTolerance::exact());
    const QByteArray target = mpvSecondsArgument(
        exact ? mpvExactSeekSeconds(seek.targetSeconds, framesPerSecond_) : seek.targetSeconds);
    seek.accepted = false;
    seek.requestID = command({"seek", target.constData(), seek.flags});
}

void MpvVideoPlayer::abandonPendingSeek() {
    if (!pendingSeek_) return;
    postCompletion(std::move(pendingSeek_->completion), false);
    pendingSeek_.reset();
}

std::uint64_t MpvVideoPlayer::command(std::initializer_list<const char*> arguments) {
    if (!engine_) return 0;
    std::vector<const char*> list(arguments);
    list.push_back(nullptr);
    const std::uint64_t requestID = nextRequestID_++;
    if (mpv_command_async(engine_->get(), requestID, list.data()) < 0) return 0;
    return requestID;
}

void MpvVideoPlayer::setFlag(const char* name, bool value) {
    if (!engine_) return;
    int flag = value ? 1 : 0;
    mpv_set_property_async(engine_->get(), 0, name, MPV_FORMAT_FLAG, &flag);
}

void MpvVideoPlayer::setDouble(const char* name, double value) {
    if (!engine_) return;
    mpv_set_property_async(engine_->get(), 0, name, MPV_FORMAT_DOUBLE, &value);
}

void MpvVideoPlayer::setText(const char* name, const char* value) {
    if (!engine_) return;
    mpv_set_property_async(engine_->get(), 0, name, MPV_FORMAT_STRING, &value);
}

void MpvVideoPlayer::updateStatus() {
    const MpvPlaybackFlags flags{itemPath_.has_value(),
                                 itemState_ == ItemState::loaded,
                                 rate_,
                                 pendingSeek_.has_value(),
                                 engineSeeking_,
                                 pausedForCache_,
                                 coreIdle_};
    const VideoPlayerTimeControlStatus status = timeControlStatusOf(flags);
    if (status == status_) return;
    status_ = status;
    post([status](VideoPlayerListener& listener) { listener.timeControlStatusChanged(status); });
}

void MpvVideoPlayer::setReadyForDisplay(bool ready) {
    if (readyForDisplay_ == ready) return;
    readyForDisplay_ = ready;
    post([ready](VideoPlayerListener& listener) { listener.readyForDisplayChanged(ready); });
}

void MpvVideoPlayer::post(std::function<void(VideoPlayerListener&)> notice) {
    // Queued on this object: a notice still waiting when the player goes is dropped with it.
    QMetaObject::invokeMethod(
        this,
        [this, notice = std::move(notice)] {
            const std::vector<VideoPlayerListener*> listeners = listeners_;
            for (VideoPlayerListener* listener : listeners) {
                // A listener removed by an earlier one in this round gets nothing.
                if (std::find(listeners_.begin(), listeners_.end(), listener) != listeners_.end()) {
                    notice(*listener);
                }
            }
        },
        Qt::QueuedConnection);
}

void MpvVideoPlayer::postCompletion(SeekCompletion completion, bool finished) {
    if (!completion) return;
    QMetaObject::invokeMethod(
        this, [completion = std::move(completion), finished] { completion(finished); }, Qt::QueuedConnection);
}

}  // namespace kestrum
