#include "media/mpv/MpvPlaybackRules.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestrum {

const char* mpvSeekFlags(VideoSeekTolerance tolerance) {
    const bool wholeInterval = tolerance.beforeSeconds >= kRecordingKeyFrameIntervalSeconds &&
                               tolerance.afterSeconds >= kRecordingKeyFrameIntervalSeconds;
    return wholeInterval ? "absolute+keyframes" : "absolute+exact";
}

double mpvExactSeekSeconds(double targetSeconds, std::optional<double> framesPerSecond) {
    constexpr double kRoundingSeconds = 0.006;
    if (!framesPerSecond || !(*framesPerSecond > 0) || !std::isfinite(*framesPerSecond)) return targetSeconds;
    return std::max(targetSeconds - 1.0 / *framesPerSecond + kRoundingSeconds, 0.0);
}

double clampedVolume(double volume) {
    if (std::isnan(volume)) return 0;
    return std::clamp(volume, 0.0, 1.0);
}

double mpvVolumePercent(double volume) {
    return 100.0 * std::cbrt(clampedVolume(volume));
}

double mpvSpeed(double rate) {
    if (std::isnan(rate)) return 1;
    return std::clamp(rate, 0.01, 100.0);
}

QByteArray mpvSecondsArgument(double seconds) {
    return QByteArray::number(seconds, 'f', 6);
}

double playbackEndSeconds(std::optional<double> forwardEndSeconds, std::optional<double> durationSeconds) {
    const double movieEnd =
        durationSeconds ? std::max(*durationSeconds, 0.0) : std::numeric_limits<double>::infinity();
    if (!forwardEndSeconds) return movieEnd;
    return std::clamp(*forwardEndSeconds, 0.0, movieEnd);
}

bool isAtPlaybackEnd(bool engineAtEnd, double positionSeconds, double endSeconds) {
    return engineAtEnd && std::isfinite(endSeconds) && positionSeconds >= endSeconds - kEndSlackSeconds;
}

VideoPlayerTimeControlStatus timeControlStatusOf(const MpvPlaybackFlags& flags) {
    if (!flags.hasItem || flags.rate == 0) return VideoPlayerTimeControlStatus::paused;
    const bool moving = flags.loaded && !flags.seekPending && !flags.engineSeeking && !flags.pausedForCache &&
                        !flags.coreIdle;
    return moving ? VideoPlayerTimeControlStatus::playing
                  : VideoPlayerTimeControlStatus::waitingToPlayAtSpecifiedRate;
}

}  // namespace kestrum
