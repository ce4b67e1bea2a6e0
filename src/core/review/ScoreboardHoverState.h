#pragma once

#include "base/async/Clock.h"
#include "core/review/DelayedActions.h"

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace kestrum {

// The scoreboard's pointer state. Entering a row makes its player pending and starts a delay of 0.12
// seconds; only if the player is still pending when the delay ends does it become the hovered one, so
// passing over rows does not flash their tips. Leaving clears both at once. A copied Riot ID marks its
// player for 1.2 seconds. Each delay is a task of its own that checks the current value when it wakes.
//
// Threads: the main thread; the delays run on the Clock, which must outlive this state.
class ScoreboardHoverState {
  public:
    static constexpr std::chrono::milliseconds kHoverDelay{120};
    static constexpr std::chrono::milliseconds kCopiedDuration{1200};

    // `changed` is called after every change of the hovered or copied player (not of the pending one).
    ScoreboardHoverState(Clock& clock, std::function<void()> changed);

    void enter(const QString& playerID);
    void leave();
    // The pointer left the row of `playerID`: clears the pending and the hovered player only where they
    // are that row's, since the pointer may reach the next row before it is told it left this one.
    void leave(const QString& playerID);
    void markCopied(const QString& playerID);

    const std::optional<QString>& hoveredPlayerID() const { return hoveredPlayerID_; }
    const std::optional<QString>& pendingHoverPlayerID() const { return pendingHoverPlayerID_; }
    const std::optional<QString>& copiedPlayerID() const { return copiedPlayerID_; }

  private:
    void setHovered(const std::optional<QString>& playerID);

    std::function<void()> changed_;
    // All main thread.
    std::optional<QString> hoveredPlayerID_;
    std::optional<QString> pendingHoverPlayerID_;
    std::optional<QString> copiedPlayerID_;
    DelayedActions delays_;  // last: cancelled before the fields above go
};

}  // namespace kestrum
