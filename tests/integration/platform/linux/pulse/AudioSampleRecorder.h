#pragma once

#include "base/async/SerialQueue.h"
#include "platform/ports/CaptureStream.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <vector>

namespace kestrum::test {

// A stream output that keeps, per buffer, what the tests look at. Deliveries on its queue; reads from
// any thread.
class AudioSampleRecorder final : public CaptureStreamOutput {
  public:
    struct Received {
        CaptureOutputType type;
        HostTimeNs hostTimeNs;
        int frameCount;
        AudioFormatDescription format;
        bool wellFormed;
        double rms;            // of the float samples
        bool onQueue;          // ran on the queue it was registered with
        HostTimeNs arrivalNs;  // when it ran
        std::vector<float> firstChannel;
    };

    explicit AudioSampleRecorder(SerialQueue& queue) : queue_(queue) {}

    void didOutputSample(CaptureSample& sample, CaptureOutputType type) override {
        const AudioSampleBuffer& audio = sample.audio;
        const auto& bytes = audio.buffers().at(0);
        const auto* samples = reinterpret_cast<const float*>(bytes.data());
        double sum = 0;
        for (std::size_t i = 0; i < bytes.size() / sizeof(float); ++i) sum += double(samples[i]) * samples[i];
        const double rms = bytes.empty() ? 0 : std::sqrt(sum * sizeof(float) / double(bytes.size()));
        std::vector<float> firstChannel;
        const std::size_t channels = std::max<std::size_t>(1, audio.format().channelsPerFrame);
        for (std::size_t i = 0; i < bytes.size() / sizeof(float); i += channels)
            firstChannel.push_back(samples[i]);
        const std::lock_guard lock(mutex_);
        received_.push_back({type, audio.hostTimeNs(), audio.frameCount(), audio.format(),
                             audio.isWellFormed(), rms, queue_.isCurrent(), hostTimeNow(),
                             std::move(firstChannel)});
    }

    // The buffers of `type` received from the `from`-th buffer on.
    std::vector<Received> received(CaptureOutputType type, std::size_t from = 0) const {
        const std::lock_guard lock(mutex_);
        std::vector<Received> ofType;
        for (std::size_t i = from; i < received_.size(); ++i) {
            if (received_[i].type == type) ofType.push_back(received_[i]);
        }
        return ofType;
    }
    std::size_t count() const {
        const std::lock_guard lock(mutex_);
        return received_.size();
    }

  private:
    SerialQueue& queue_;
    mutable std::mutex mutex_;
    std::vector<Received> received_;
};

}  // namespace kestrum::test
