#include "platform/fake/FakeCaptureStreamCore.h"

namespace kestrum {

Status FakeCaptureStreamCore::addStreamOutput(CaptureStreamOutput& output, CaptureOutputType type,
                                              SerialQueue& queue) {
    if (addOutputError) return *addOutputError;
    const std::lock_guard lock(mutex_);
    outputs_[type] = Registration{&output, &queue};
    return Status::success();
}

Status FakeCaptureStreamCore::start() {
    if (startError) return *startError;
    const std::lock_guard lock(mutex_);
    started_ = true;
    return Status::success();
}

Status FakeCaptureStreamCore::stop() {
    const std::lock_guard lock(mutex_);
    started_ = false;
    if (stopError) return *stopError;
    return Status::success();
}

bool FakeCaptureStreamCore::deliver(CaptureSample sample, CaptureOutputType type) {
    const std::lock_guard lock(mutex_);
    const auto found = outputs_.find(type);
    if (!started_ || found == outputs_.end()) return false;
    CaptureStreamOutput* output = found->second.output;
    found->second.queue->async(
        [output, type, sample = std::move(sample)]() mutable { output->didOutputSample(sample, type); });
    return true;
}

bool FakeCaptureStreamCore::isStarted() const {
    const std::lock_guard lock(mutex_);
    return started_;
}

bool FakeCaptureStreamCore::hasOutput(CaptureOutputType type) const {
    const std::lock_guard lock(mutex_);
    return outputs_.count(type) > 0;
}

}  // namespace kestrum
