#pragma once

#include "platform/fake/FakeCaptureStreamCore.h"
#include "platform/ports/AudioStream.h"

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace kestrum {

// An audio stream whose buffers a test sends with `core.deliver`. Port calls on the main thread.
class FakeAudioStream : public AudioStream {
  public:
    FakeAudioStream(ShareableDisplay display, AudioStreamConfiguration configuration)
        : display_(display), configuration_(configuration) {}

    Status addStreamOutput(CaptureStreamOutput& output, CaptureOutputType type, SerialQueue& queue) override {
        return core.addStreamOutput(output, type, queue);
    }
    QCoro::Task<Status> startCapture() override { co_return core.start(); }
    QCoro::Task<Status> stopCapture() override { co_return core.stop(); }
    AudioStreamCounters counters(CaptureOutputType type) const override {
        const auto found = scriptedCounters.find(type);
        return found == scriptedCounters.end() ? AudioStreamCounters{} : found->second;
    }

    const ShareableDisplay& display() const { return display_; }
    const AudioStreamConfiguration& configuration() const { return configuration_; }

    FakeCaptureStreamCore core;
    // What `counters` answers, by source; main thread.
    std::map<CaptureOutputType, AudioStreamCounters> scriptedCounters;

  private:
    ShareableDisplay display_;
    AudioStreamConfiguration configuration_;
};

// Makes FakeAudioStreams, or fails as scripted. Main thread only.
class FakeAudioStreamFactory final : public AudioStreamFactory {
  public:
    Result<std::unique_ptr<AudioStream>> makeAudioStream(
        const ShareableDisplay& display, const AudioStreamConfiguration& configuration) override;

    FakeAudioStream* lastStream() const;
    int madeCount() const { return madeCount_; }
    std::optional<Error> makeError;   // makeAudioStream fails with it while set
    std::optional<Error> startError;  // streams made from now on fail to start with it

  private:
    std::shared_ptr<std::vector<FakeAudioStream*>> alive_ = std::make_shared<std::vector<FakeAudioStream*>>();
    int madeCount_ = 0;
};

}  // namespace kestrum
