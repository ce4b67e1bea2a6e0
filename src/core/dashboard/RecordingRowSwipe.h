#pragma once

#include "base/async/Clock.h"
#include "base/async/Job.h"
#include "core/dashboard/SpringMotion.h"
#include "core/review/DelayedActions.h"

#include <QPointF>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

namespace kestrum {

// The side of a row that a swipe uncovers: swiping right uncovers the leading side, left the trailing.
enum class SwipeSide : std::uint8_t { none, leading, trailing };

// The swipe on one match card, as a state machine the card only draws: the offset by which the card
// moves, and the action symbol behind it with its progress, scale and opacity.
//
// A drag counts only while it is mostly across: the translation from the press point (not from where a
// drag handler takes over) must be more than 1.2 times as wide as it is high; otherwise the offset is 0.
// The offset is the translation clamped to 64 points either way, and to 0 on a side without an action.
// A release that passes the same test at 52 points or more on an allowed side commits: the card springs
// to rest 44 points out with its symbol grown to 1.18, the action runs 0.09 s later, and 0.07 s after that
// the card springs home. Any other release springs home at once (response 0.28 s, damping 0.82).
//
// The hints that teach the swipe slide the card out and back (after 0.65 s, held 0.7 s, in a spring of
// 0.46 s and 0.82), once or every 3.6 s while the row lasts.
//
// Values are read at the Clock's present, so every instant of an animation can be checked; while
// something moves, `changed` is called once per frame (60 a second) until it rests.
//
// Threads: the main thread; frames and delays run on the Clock, which must outlive the swipe.
class RecordingRowSwipe {
  public:
    static constexpr double kDominance = 1.2;
    static constexpr double maximumReveal = 64;
    static constexpr double commitThreshold = 52;
    static constexpr double completionReveal = 44;
    static constexpr double kCommitIconScale = 1.18;
    static constexpr double kIconSize = 14;
    static constexpr SpringParameters kReleaseSpring{0.28, 0.82};
    static constexpr SpringParameters kSettleSpring{0.18, 0.76};
    static constexpr SpringParameters kHintSpring{0.46, 0.82};
    static constexpr std::chrono::milliseconds kActionDelay{90};
    static constexpr std::chrono::milliseconds kSettleDelay{70};
    static constexpr std::chrono::milliseconds kHintStartDelay{650};
    static constexpr std::chrono::milliseconds kHintHoldDelay{700};
    static constexpr std::chrono::milliseconds kHintRepeatDelay{3600};
    static constexpr std::chrono::nanoseconds kFrameInterval{16'666'667};

    struct Options {
        bool allowsLeadingAction = true;
        bool allowsTrailingAction = true;
        bool showsLeadingActionHint = false;
        bool showsTrailingActionHint = false;
        bool repeatsActionHints = false;
    };

    struct Callbacks {
        // Something the card draws changed.
        std::function<void()> changed;
        // The row was touched.
        std::function<void()> onInteraction;
        // A committed swipe, or the accessibility action of a side.
        std::function<void(SwipeSide)> onAction;
    };

    RecordingRowSwipe(Clock& clock, Options options, Callbacks callbacks);
    ~RecordingRowSwipe();
    RecordingRowSwipe(const RecordingRowSwipe&) = delete;
    RecordingRowSwipe& operator=(const RecordingRowSwipe&) = delete;

    // The pointer went down at `point`; moves and the release give the pointer's position in the same
    // coordinates.
    void press(QPointF point);
    void move(QPointF point);
    void release(QPointF point);
    // The drag was taken away (the list scrolled): the card springs home without acting.
    void cancel();
    // The accessibility action of a side: the same closure as a committed swipe, on an allowed side.
    void performAction(SwipeSide side);
    // Starts the hints of the options, if any; they stop when the swipe is destroyed.
    void startHints();

    double offset() const;
    SwipeSide side() const;
    // The uncovered symbol: progress is the offset's magnitude over the commit threshold, at most 1.
    double iconProgress() const;
    double iconOpacity() const { return iconProgress(); }
    double iconScale() const;
    bool isTracking() const { return pressPoint_.has_value(); }
    // Nothing moves, nothing is pending: the row may forget this swipe.
    bool isAtRest() const;

  private:
    // A value on a spring since `start`.
    struct Animated {
        SpringMotion motion;
        Clock::TimePoint start;
        double at(Clock::TimePoint now) const;
        bool isSettled(Clock::TimePoint now) const;
    };

    double clampedOffset(QPointF translation) const;
    void animate(Animated& value, double to, SpringParameters spring);
    // Springs from `fromOffset`, where the card was let go.
    void commit(SwipeSide side, double fromOffset);
    void runFrames();
    bool isAnimating() const;
    QCoro::Task<void> playHints(CancellationToken token);

    Clock& clock_;
    Options options_;
    Callbacks callbacks_;
    // All main thread.
    std::optional<QPointF> pressPoint_;
    double dragOffset_ = 0;  // while tracking
    Animated dragReturn_;    // after a release that did not commit
    Animated completionOffset_;
    Animated trailingHintOffset_;
    Animated actionIconScale_;
    bool isCommitting_ = false;
    std::optional<Job<void>> frames_;
    std::optional<Job<void>> hints_;
    DelayedActions delays_;  // last: cancelled before the fields above go
};

}  // namespace kestrum
