#pragma once

namespace kestrum {

enum class VideoCodec { hevc, h264 };

// The compression settings of a movie's video track, as the capture setup chooses them.
struct VideoOutputSettings {
    VideoCodec codec = VideoCodec::hevc;
    int width = 0;
    int height = 0;
    int averageBitRate = 0;  // bits per second
    // A key frame at least every `maxKeyFrameInterval` frames and every
    // `maxKeyFrameIntervalDurationSeconds`, whichever comes first.
    int maxKeyFrameInterval = 0;
    double maxKeyFrameIntervalDurationSeconds = 0;
    // H.264 High profile with the level chosen by the encoder; meaningless for HEVC.
    bool h264HighAutoLevel = false;
    // Nominal rate for rate control; frames still carry their own times (variable frame rate).
    int expectedFrameRate = 30;

    friend bool operator==(const VideoOutputSettings&, const VideoOutputSettings&) = default;
};

}  // namespace kestrum
