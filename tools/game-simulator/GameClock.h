#pragma once

#include <QElapsedTimer>

#include <optional>

namespace kestrum::simulator {

// The simulated game's one clock, read by the local service (as `gameTime`), by the window (as the clock
// stripe) and by the tone. It starts when constructed; for `loadingSeconds` of game time it stands before
// 0, then runs to `durationSeconds` and stops there; `speed` game seconds pass per real second.
// Immutable after construction, so any thread may read it; elapsed times are real nanoseconds on the
// monotonic clock since the start.
class GameClock {
  public:
    GameClock(double loadingSeconds, double durationSeconds, double speed);

    qint64 elapsedNs() const { return sinceStart_.nsecsElapsed(); }

    // The game time at `elapsedNs`, in seconds: negative while loading, `durationSeconds` after the end.
    double gameSecondsAt(qint64 elapsedNs) const;
    // The same in whole milliseconds (rounded down), as the clock stripe shows it.
    qint64 gameMsAt(qint64 elapsedNs) const;
    qint64 gameMs() const { return gameMsAt(elapsedNs()); }

    // The clock as the service reports it: absent while the game loads.
    std::optional<double> gameTime() const;

    // Real milliseconds from the start until the clock reads 0.
    qint64 clockStartDelayMs() const;
    // Real nanoseconds from the start until the clock stops at the end; absent for an endless game.
    std::optional<qint64> endElapsedNs() const;

  private:
    double loadingSeconds_;
    double durationSeconds_;
    double speed_;
    QElapsedTimer sinceStart_;
};

}  // namespace kestrum::simulator
