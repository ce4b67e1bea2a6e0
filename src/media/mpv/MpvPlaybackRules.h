#pragma once

#include "platform/ports/VideoPlayer.h"

#include <QByteArray>

#include <optional>

namespace kestrum {

// The rules by which the mpv player maps the port's requests onto mpv's options and mpv's state back
// onto the port's. Pure functions, so that they are tested without an engine.

// The recordings' key-frame interval. A key-frame seek may land up to this far from its target.
inline constexpr double kRecordingKeyFrameIntervalSeconds = 2.0;

// How far before the end time a position may stand and still count as the end: the engine stops on the
// last frame before the end, one frame (1/30 or 1/60 s) short of it.
inline constexpr double kEndSlackSeconds = 0.25;

// The flags of mpv's seek command for `tolerance`: a key-frame seek only when both sides allow at least a
// whole key-frame interval, since a key frame may be that far away; an exact seek otherwise (the scrub's
// 0.1 s included), which decodes from the key frame before the target up to it.
const char* mpvSeekFlags(VideoSeekTolerance tolerance);

// Where to ask mpv's exact seek to go for the frame at or just before `targetSeconds`. mpv shows the
// first frame at or after the time it is given; asked for one frame earlier (plus a few milliseconds, for
// mpv's own rounding), it shows the frame whose time span holds the target. With the frame rate unknown,
// the target itself.
double mpvExactSeekSeconds(double targetSeconds, std::optional<double> framesPerSecond);

// The port's volume (a linear gain) clamped to 0..1; NaN counts as 0.
double clampedVolume(double volume);

// mpv's volume in percent for the linear gain `volume` (0..1): mpv's gain is the cube of its volume
// over 100, so the percent is 100 times the cube root.
double mpvVolumePercent(double volume);

// A rate clamped to what mpv's speed accepts (0.01 to 100).
double mpvSpeed(double rate);

// A time as mpv's commands and options read it: fixed-point, '.' as the separator whatever the locale.
QByteArray mpvSecondsArgument(double seconds);

// Where playing stops: the forward end time within the movie, or the movie's end; with the duration
// not known yet, the forward end time or infinity.
double playbackEndSeconds(std::optional<double> forwardEndSeconds, std::optional<double> durationSeconds);

// Whether a position stands at the end time. mpv reports its end of file also for a movie whose tracks
// are not chosen yet (a prepared player with no picture shown and no sound); the position tells that
// apart from a real end.
bool isAtPlaybackEnd(bool engineAtEnd, double positionSeconds, double endSeconds);

// What the port's status is made of.
struct MpvPlaybackFlags {
    bool hasItem = false;
    bool loaded = false;
    double rate = 0;           // the port's rate: 0 while paused
    bool seekPending = false;  // a seek of the player (or its first positioning) is not done
    bool engineSeeking = false;
    bool pausedForCache = false;
    bool coreIdle = false;  // mpv's core is not advancing (waiting for data, or no track to play)
};

// Paused with no item or a zero rate; waiting while loading, seeking or not advancing; playing otherwise.
VideoPlayerTimeControlStatus timeControlStatusOf(const MpvPlaybackFlags& flags);

}  // namespace kestrum
