#include "platform/fake/FakeVideoPlayer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

namespace kestrum {

namespace {

constexpr double kAbsent = std::numeric_limits<double>::quiet_NaN();

}  // namespace

FakeVideoPlayer::FakeVideoPlayer(std::optional<QString> moviePath, double movieDurationSeconds)
    : movieDurationSeconds_(movieDurationSeconds) {
    if (moviePath) {
        itemPath_ = std::move(moviePath);
        becomeReadyLater();
    }
}

FakeVideoPlayer::~FakeVideoPlayer() {
    stopTicking();
}

void FakeVideoPlayer::replaceCurrentItem(const std::optional<QString>& moviePath) {
    calls_.push_back({Call::Kind::replaceCurrentItem, 0, {}, moviePath});
    abandonPendingSeek();
    rate_ = 0;
    setStatus(VideoPlayerTimeControlStatus::paused);
    positionSeconds_ = 0;
    forwardEndSeconds_.reset();
    itemPath_ = moviePath;
    itemFailed_ = false;
    setReadyForDisplay(false);
    if (moviePath) becomeReadyLater();
}

void FakeVideoPlayer::setForwardPlaybackEndTime(std::optional<double> seconds) {
    record(Call::Kind::setForwardPlaybackEndTime, seconds.value_or(kAbsent));
    forwardEndSeconds_ = seconds;
}

void FakeVideoPlayer::play() {
    record(Call::Kind::play);
    playAt(defaultRate_);
}

void FakeVideoPlayer::pause() {
    record(Call::Kind::pause);
    rate_ = 0;
    setStatus(VideoPlayerTimeControlStatus::paused);
}

void FakeVideoPlayer::playImmediatelyAtRate(double rate) {
    record(Call::Kind::playImmediatelyAtRate, rate);
    playAt(rate);
}

void FakeVideoPlayer::setRate(double rate) {
    record(Call::Kind::setRate, rate);
    playAt(rate);
}

void FakeVideoPlayer::setDefaultRate(double rate) {
    record(Call::Kind::setDefaultRate, rate);
    defaultRate_ = rate;
}

double FakeVideoPlayer::currentTime() const {
    return itemPath_ ? positionSeconds_ : kAbsent;
}

void FakeVideoPlayer::seek(double timeSeconds, VideoSeekTolerance tolerance, SeekCompletion completion) {
    calls_.push_back({Call::Kind::seek, timeSeconds, tolerance, std::nullopt});
    abandonPendingSeek();
    if (!itemPath_) {
        postCompletion(std::move(completion), false);
        return;
    }
    positionSeconds_ = std::clamp(timeSeconds, 0.0, std::max(movieDurationSeconds_, 0.0));
    const std::uint64_t id = nextSeekID_++;
    pendingSeek_ = PendingSeek{id, std::move(completion)};
    if (!completesSeeksAtOnce) return;
    QMetaObject::invokeMethod(
        &noticeContext_,
        [this, id] {
            if (pendingSeek_ && pendingSeek_->id == id) finishPendingSeek(true);
        },
        Qt::QueuedConnection);
}

void FakeVideoPlayer::setVolume(double volume) {
    record(Call::Kind::setVolume, volume);
    volume_ = std::clamp(volume, 0.0, 1.0);
}

void FakeVideoPlayer::setMuted(bool muted) {
    record(Call::Kind::setMuted, muted ? 1 : 0);
    muted_ = muted;
}

void FakeVideoPlayer::addListener(VideoPlayerListener& listener) {
    if (std::find(listeners_.begin(), listeners_.end(), &listener) == listeners_.end()) {
        listeners_.push_back(&listener);
    }
}

void FakeVideoPlayer::removeListener(VideoPlayerListener& listener) {
    std::erase(listeners_, &listener);
}

std::vector<FakeVideoPlayer::Call> FakeVideoPlayer::seeks() const {
    std::vector<Call> result;
    std::copy_if(calls_.begin(), calls_.end(), std::back_inserter(result),
                 [](const Call& call) { return call.kind == Call::Kind::seek; });
    return result;
}

void FakeVideoPlayer::advancePlayhead(double wallSeconds) {
    if (status_ != VideoPlayerTimeControlStatus::playing || !(wallSeconds > 0)) return;
    const double end = endTime();
    positionSeconds_ += wallSeconds * rate_;
    if (positionSeconds_ < end) return;
    positionSeconds_ = end;
    rate_ = 0;
    setStatus(VideoPlayerTimeControlStatus::paused);
    post([](VideoPlayerListener& listener) { listener.didPlayToEndTime(); });
}

void FakeVideoPlayer::finishPendingSeek(bool finished) {
    if (!pendingSeek_) return;
    SeekCompletion completion = std::move(pendingSeek_->completion);
    pendingSeek_.reset();
    if (completion) completion(finished);
}

void FakeVideoPlayer::setReadyForDisplay(bool ready) {
    if (readyForDisplay_ == ready) return;
    readyForDisplay_ = ready;
    post([ready](VideoPlayerListener& listener) { listener.readyForDisplayChanged(ready); });
}

void FakeVideoPlayer::setTimeControlStatus(VideoPlayerTimeControlStatus status) {
    setStatus(status);
}

void FakeVideoPlayer::failCurrentItem(const QString& reason) {
    if (!itemPath_ || itemFailed_) return;
    itemFailed_ = true;
    rate_ = 0;
    setStatus(VideoPlayerTimeControlStatus::paused);
    setReadyForDisplay(false);
    post([reason](VideoPlayerListener& listener) { listener.playbackFailed(reason); });
}

void FakeVideoPlayer::startTicking(Clock& clock, Clock::Duration interval) {
    stopTicking();
    ticking_ = Job<void>::start([this, &clock, interval](CancellationToken token) -> QCoro::Task<void> {
        while (!token.isCancelled()) {
            const Clock::TimePoint before = clock.now();
            QCoro::Task<bool> pause = clock.sleep(interval, token);
            const bool waited = co_await pause;
            // Cancelled (a manual clock may still end the sleep before the cancellation reaches it): the
            // player may be gone.
            if (!waited || token.isCancelled()) co_return;
            advancePlayhead(std::chrono::duration<double>(clock.now() - before).count());
        }
    });
}

void FakeVideoPlayer::stopTicking() {
    if (ticking_) ticking_->cancel();
    ticking_.reset();
}

void FakeVideoPlayer::record(Call::Kind kind, double value) {
    calls_.push_back({kind, value, {}, std::nullopt});
}

void FakeVideoPlayer::playAt(double rate) {
    if (rate == 0) {
        rate_ = 0;
        setStatus(VideoPlayerTimeControlStatus::paused);
        return;
    }
    if (!itemPath_ || itemFailed_) return;
    if (positionSeconds_ >= endTime()) {
        post([](VideoPlayerListener& listener) { listener.didPlayToEndTime(); });
        return;
    }
    rate_ = rate;
    setStatus(VideoPlayerTimeControlStatus::playing);
}

void FakeVideoPlayer::setStatus(VideoPlayerTimeControlStatus status) {
    if (status_ == status) return;
    status_ = status;
    post([status](VideoPlayerListener& listener) { listener.timeControlStatusChanged(status); });
}

double FakeVideoPlayer::endTime() const {
    const double movieEnd = std::max(movieDurationSeconds_, 0.0);
    return forwardEndSeconds_ ? std::clamp(*forwardEndSeconds_, 0.0, movieEnd) : movieEnd;
}

void FakeVideoPlayer::abandonPendingSeek() {
    if (!pendingSeek_) return;
    postCompletion(std::move(pendingSeek_->completion), false);
    pendingSeek_.reset();
}

void FakeVideoPlayer::becomeReadyLater() {
    // Readiness and its notice come in one turn of the event loop, as a decoded first picture would.
    QMetaObject::invokeMethod(
        &noticeContext_,
        [this, path = itemPath_] {
            if (itemPath_ != path || readyForDisplay_ || itemFailed_ || !showsPictureByItself) return;
            readyForDisplay_ = true;
            deliver([](VideoPlayerListener& listener) { listener.readyForDisplayChanged(true); });
        },
        Qt::QueuedConnection);
}

void FakeVideoPlayer::post(std::function<void(VideoPlayerListener&)> notice) {
    QMetaObject::invokeMethod(
        &noticeContext_, [this, notice = std::move(notice)] { deliver(notice); }, Qt::QueuedConnection);
}

void FakeVideoPlayer::deliver(const std::function<void(VideoPlayerListener&)>& notice) {
    const std::vector<VideoPlayerListener*> listeners = listeners_;
    for (VideoPlayerListener* listener : listeners) {
        // A listener removed by an earlier one in this round gets nothing.
        if (std::find(listeners_.begin(), listeners_.end(), listener) != listeners_.end()) notice(*listener);
    }
}

void FakeVideoPlayer::postCompletion(SeekCompletion completion, bool finished) {
    if (!completion) return;
    QMetaObject::invokeMethod(
        &noticeContext_, [completion = std::move(completion), finished] { completion(finished); },
        Qt::QueuedConnection);
}

}  // namespace kestrum
