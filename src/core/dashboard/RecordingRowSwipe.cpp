#include "core/dashboard/RecordingRowSwipe.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrum {

namespace {

double secondsBetween(Clock::TimePoint start, Clock::TimePoint now) {
    return std::chrono::duration<double>(now - start).count();
}

}  // namespace

double RecordingRowSwipe::Animated::at(Clock::TimePoint now) const {
    return motion.valueAt(secondsBetween(start, now));
}

bool RecordingRowSwipe::Animated::isSettled(Clock::TimePoint now) const {
    return motion.isSettled(secondsBetween(start, now));
}

RecordingRowSwipe::RecordingRowSwipe(Clock& clock, Options options, Callbacks callbacks)
    : clock_(clock),
      options_(options),
      callbacks_(std::move(callbacks)),
      actionIconScale_{SpringMotion(1, 1, kReleaseSpring), clock.now()},
      delays_(clock) {}

RecordingRowSwipe::~RecordingRowSwipe() {
    if (frames_) frames_->cancel();
    if (hints_) hints_->cancel();
}

void RecordingRowSwipe::press(QPointF point) {
    pressPoint_ = point;
    dragOffset_ = 0;
    dragReturn_ = {};
    if (callbacks_.onInteraction) callbacks_.onInteraction();
}

void RecordingRowSwipe::move(QPointF point) {
    if (!pressPoint_) return;
    const double offset = clampedOffset(point - *pressPoint_);
    if (offset == dragOffset_) return;
    dragOffset_ = offset;
    callbacks_.changed();
}

void RecordingRowSwipe::release(QPointF point) {
    if (!pressPoint_) return;
    const double offset = clampedOffset(point - *pressPoint_);
    pressPoint_.reset();
    dragOffset_ = 0;
    if (offset >= commitThreshold) {
        commit(SwipeSide::leading, offset);
    } else if (offset <= -commitThreshold) {
        commit(SwipeSide::trailing, offset);
    } else {
        dragReturn_ = {SpringMotion(offset, 0, kReleaseSpring), clock_.now()};
        runFrames();
    }
    callbacks_.changed();
}

void RecordingRowSwipe::cancel() {
    if (!pressPoint_) return;
    dragReturn_ = {SpringMotion(dragOffset_, 0, kReleaseSpring), clock_.now()};
    pressPoint_.reset();
    dragOffset_ = 0;
    runFrames();
    callbacks_.changed();
}

void RecordingRowSwipe::performAction(SwipeSide side) {
    const bool allowed = (side == SwipeSide::leading && options_.allowsLeadingAction) ||
                         (side == SwipeSide::trailing && options_.allowsTrailingAction);
    if (allowed) callbacks_.onAction(side);
}

void RecordingRowSwipe::startHints() {
    if (!options_.showsLeadingActionHint && !options_.showsTrailingActionHint) return;
    if (hints_ && !hints_->isFinished()) return;
    hints_ = Job<void>::start([this](CancellationToken token) { return playHints(std::move(token)); });
}

double RecordingRowSwipe::offset() const {
    const Clock::TimePoint now = clock_.now();
    const double drag = pressPoint_ ? dragOffset_ : dragReturn_.at(now);
    if (drag != 0) return drag;
    const double completion = completionOffset_.at(now);
    if (completion != 0) return completion;
    return trailingHintOffset_.at(now);
}

SwipeSide RecordingRowSwipe::side() const {
    const double value = offset();
    if (value > 0) return SwipeSide::leading;
    if (value < 0) return SwipeSide::trailing;
    return SwipeSide::none;
}

double RecordingRowSwipe::iconProgress() const {
    return std::min(1.0, std::abs(offset()) / commitThreshold);
}

double RecordingRowSwipe::iconScale() const {
    return (0.84 + 0.16 * iconProgress()) * actionIconScale_.at(clock_.now());
}

bool RecordingRowSwipe::isAtRest() const {
    return !pressPoint_ && !isCommitting_ && !isAnimating() && !(hints_ && !hints_->isFinished());
}

double RecordingRowSwipe::clampedOffset(QPointF translation) const {
    // Mostly across, or not at all: a diagonal drag scrolls the list instead.
    if (!(std::abs(translation.x()) > kDominance * std::abs(translation.y()))) return 0;
    const double most = options_.allowsLeadingAction ? maximumReveal : 0;
    const double least = options_.allowsTrailingAction ? -maximumReveal : 0;
    return std::clamp(translation.x(), least, most);
}

void RecordingRowSwipe::animate(Animated& value, double to, SpringParameters spring) {
    const Clock::TimePoint now = clock_.now();
    value = {SpringMotion(value.at(now), to, spring), now};
}

void RecordingRowSwipe::commit(SwipeSide side, double fromOffset) {
    const double direction = side == SwipeSide::leading ? 1 : -1;
    isCommitting_ = true;
    completionOffset_ = {SpringMotion(fromOffset, direction * completionReveal, kReleaseSpring),
                         clock_.now()};
    animate(actionIconScale_, kCommitIconScale, kReleaseSpring);
    runFrames();
    delays_.after(kActionDelay, [this, side] {
        delays_.after(kSettleDelay, [this] {
            animate(completionOffset_, 0, kSettleSpring);
            animate(actionIconScale_, 1, kSettleSpring);
            isCommitting_ = false;
            runFrames();
        });
        callbacks_.onAction(side);
    });
}

bool RecordingRowSwipe::isAnimating() const {
    const Clock::TimePoint now = clock_.now();
    return !dragReturn_.isSettled(now) || !completionOffset_.isSettled(now) ||
           !trailingHintOffset_.isSettled(now) || !actionIconScale_.isSettled(now);
}

void RecordingRowSwipe::runFrames() {
    if (frames_ && !frames_->isFinished()) return;
    frames_ = Job<void>::start([this, clock = &clock_](CancellationToken token) -> QCoro::Task<void> {
        while (true) {
            QCoro::Task<bool> frame = clock->sleep(kFrameInterval, token);
            const bool waited = co_await frame;
            if (!waited || token.isCancelled()) co_return;  // the row went: touch nothing
            callbacks_.changed();
            if (!isAnimating() && !isCommitting_) co_return;
        }
    });
}

QCoro::Task<void> RecordingRowSwipe::playHints(CancellationToken token) {
    // The trailing hint is the one rows show; a row with only a leading hint slides the other way.
    const double out = options_.showsTrailingActionHint ? -completionReveal : completionReveal;
    while (true) {
        QCoro::Task<bool> before = clock_.sleep(kHintStartDelay, token);
        if (!co_await before || token.isCancelled()) co_return;
        animate(trailingHintOffset_, out, kHintSpring);
        runFrames();
        QCoro::Task<bool> hold = clock_.sleep(kHintHoldDelay, token);
        if (!co_await hold || token.isCancelled()) co_return;
        animate(trailingHintOffset_, 0, kHintSpring);
        runFrames();
        if (!options_.repeatsActionHints) co_return;
        QCoro::Task<bool> pause = clock_.sleep(kHintRepeatDelay, token);
        if (!co_await pause || token.isCancelled()) co_return;
    }
}

}  // namespace kestrum
