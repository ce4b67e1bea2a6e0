#pragma once

#include "media/AudioOutputSettings.h"
#include "media/VideoOutputSettings.h"

#include <variant>

namespace kestrum {

// The media layer's own view of the capture choices; the core maps its stored settings onto these.
enum class OutputResolution { p720, p1080, native };
enum class OutputFrameRate { fps30 = 30, fps60 = 60 };

// What a writer input is made from: the settings of a video or an audio track.
using MovieInputSettings = std::variant<VideoOutputSettings, AudioOutputSettings>;

// Video settings for an output of `width` by `height` pixels: HEVC for the two scaled sizes, H.264 High
// (auto level) for native, the average bit rate of the resolution and frame rate, a key frame at most
// every 120 frames at 60 fps (else 60) and at most every 2 seconds.
VideoOutputSettings videoOutputSettings(OutputResolution resolution, OutputFrameRate frameRate, int width,
                                        int height);

// The settings shared by the system audio and microphone tracks: AAC, 48000 Hz, 2 channels, 192000 bit/s.
AudioOutputSettings audioOutputSettings();

}  // namespace kestrum
