#include "core/share/LeagueShareStreamOutput.h"

namespace kestrum {

void LeagueShareStreamOutput::didOutputSample(CaptureSample& sample, CaptureOutputType type) {
    if (type != CaptureOutputType::screen || !sample.dataIsReady) return;
    if (!fanout_.isCurrent(streamNumber_)) return;

    const bool updating = sample.frameStatus != CaptureFrameStatus::blank;
    if (updating != isUpdating_) {
        isUpdating_ = updating;
        publishUpdating_(updating);
    }
    if (sample.frameStatus == CaptureFrameStatus::complete && sample.imageBuffer) {
        fanout_.show(streamNumber_, sample.imageBuffer);
    }
}

}  // namespace kestrum
