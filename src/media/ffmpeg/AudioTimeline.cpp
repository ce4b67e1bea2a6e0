#include "media/ffmpeg/AudioTimeline.h"

#include <cmath>

namespace kestrum::ffmpeg {

AudioTimeline::AudioTimeline(int outputSampleRate, HostTimeNs snapThresholdNs)
    : outputSampleRate_(outputSampleRate),
      snapThresholdFrames_(
          static_cast<std::int64_t>(std::llround(hostTimeToSeconds(snapThresholdNs) * outputSampleRate))) {}

AudioTimeline::Placement AudioTimeline::place(HostTimeNs sessionStartNs, HostTimeNs bufferHostTimeNs,
                                              std::int64_t frameCount, double inputSampleRate,
                                              std::int64_t nextOutputFrame) {
    const double outputPerInput = outputSampleRate_ / inputSampleRate;
    const std::int64_t startFrame =
        std::llround(hostTimeToSeconds(bufferHostTimeNs - sessionStartNs) * outputSampleRate_);
    const std::int64_t lengthFrames = std::llround(static_cast<double>(frameCount) * outputPerInput);
    Placement placement;
    std::int64_t skipOutputFrames = 0;
    if (!placedAny_) {
        // The first buffer anchors the axis at its own stamp.
        if (startFrame < nextOutputFrame) {
            skipOutputFrames = nextOutputFrame - startFrame;
        } else {
            placement.silenceOutputFrames = startFrame - nextOutputFrame;
        }
    } else {
        const std::int64_t deviation = startFrame - std::max<std::int64_t>(nextOutputFrame, 0);
        if (deviation > snapThresholdFrames_) placement.silenceOutputFrames = deviation;
        if (deviation < -snapThresholdFrames_) skipOutputFrames = -deviation;
        // Within the threshold the buffer simply follows the previous one.
        if (startFrame < 0) skipOutputFrames = std::max(skipOutputFrames, -startFrame);
    }
    if (skipOutputFrames >= lengthFrames) {
        placement = Placement{true, frameCount, 0};
        return placement;
    }
    placement.skipInputFrames = std::llround(static_cast<double>(skipOutputFrames) / outputPerInput);
    placedAny_ = true;
    return placement;
}

}  // namespace kestrum::ffmpeg
