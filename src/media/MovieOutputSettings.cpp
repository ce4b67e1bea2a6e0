#include "media/MovieOutputSettings.h"

namespace kestrum {

namespace {

struct BitRates {
    int at30;
    int at60;
};

BitRates bitRatesFor(OutputResolution resolution) {
    switch (resolution) {
        case OutputResolution::p720:
            return {1'800'000, 3'000'000};
        case OutputResolution::p1080:
            return {3'500'000, 6'000'000};
        case OutputResolution::native:
            break;
    }
    return {7'000'000, 10'000'000};
}

}  // namespace

VideoOutputSettings videoOutputSettings(OutputResolution resolution, OutputFrameRate frameRate, int width,
                                        int height) {
    const bool at60 = frameRate == OutputFrameRate::fps60;
    const BitRates rates = bitRatesFor(resolution);
    VideoOutputSettings settings;
    settings.codec = resolution == OutputResolution::native ? VideoCodec::h264 : VideoCodec::hevc;
    settings.width = width;
    settings.height = height;
    settings.averageBitRate = at60 ? rates.at60 : rates.at30;
    settings.maxKeyFrameInterval = at60 ? 120 : 60;
    settings.maxKeyFrameIntervalDurationSeconds = 2;
    settings.h264HighAutoLevel = settings.codec == VideoCodec::h264;
    settings.expectedFrameRate = at60 ? 60 : 30;
    return settings;
}

AudioOutputSettings audioOutputSettings() {
    return AudioOutputSettings{AudioCodec::aac, 48000, 2, 192000};
}

}  // namespace kestrum
