#include "GameClock.h"

#include <algorithm>
#include <cmath>

namespace kestrum::simulator {

GameClock::GameClock(double loadingSeconds, double durationSeconds, double speed)
    : loadingSeconds_(loadingSeconds), durationSeconds_(durationSeconds), speed_(speed) {
    sinceStart_.start();
}

double GameClock::gameSecondsAt(qint64 elapsedNs) const {
    const double realSeconds = static_cast<double>(elapsedNs) / 1e9;
    return std::min((realSeconds * speed_) - loadingSeconds_, durationSeconds_);
}

qint64 GameClock::gameMsAt(qint64 elapsedNs) const {
    return static_cast<qint64>(std::floor(gameSecondsAt(elapsedNs) * 1000.0));
}

std::optional<double> GameClock::gameTime() const {
    const double time = gameSecondsAt(elapsedNs());
    if (time < 0) return std::nullopt;
    return time;
}

qint64 GameClock::clockStartDelayMs() const {
    return static_cast<qint64>(std::llround(loadingSeconds_ / speed_ * 1000.0));
}

std::optional<qint64> GameClock::endElapsedNs() const {
    if (!std::isfinite(durationSeconds_)) return std::nullopt;
    return static_cast<qint64>(std::llround((loadingSeconds_ + durationSeconds_) / speed_ * 1e9));
}

}  // namespace kestrum::simulator
