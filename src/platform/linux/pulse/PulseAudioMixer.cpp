#include "platform/linux/pulse/PulseAudioMixer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace kestrum {

PulseAudioMixer::PulseAudioMixer(Settings settings)
    : settings_(settings),
      horizonFrames_(std::max(settings.blockFrames, framesIn(settings.horizonNs))),
      ring_(static_cast<std::size_t>(horizonFrames_ * settings.channelCount), 0.0F) {}

void PulseAudioMixer::start(HostTimeNs originNs) {
    originNs_ = originNs;
    takenFrames_ = 0;
    std::fill(ring_.begin(), ring_.end(), 0.0F);
    nextFrameOf_.clear();
    droppedFrames_ = 0;
}

std::int64_t PulseAudioMixer::framesIn(HostTimeNs ns) const {
    return std::llround(hostTimeToSeconds(ns) * settings_.sampleRateHz);
}

std::int64_t PulseAudioMixer::frameAt(HostTimeNs ns) const {
    return framesIn(ns - originNs_);
}

HostTimeNs PulseAudioMixer::hostTimeAt(std::int64_t frame) const {
    // Whole seconds and the rest apart, so that hours of frames times 1e9 never overflow.
    const std::int64_t seconds = frame / settings_.sampleRateHz;
    const std::int64_t remainder = frame % settings_.sampleRateHz;
    return originNs_ + seconds * 1'000'000'000 + remainder * 1'000'000'000 / settings_.sampleRateHz;
}

void PulseAudioMixer::add(int inputID, HostTimeNs hostTimeNs, const float* samples, std::int64_t frameCount) {
    if (frameCount <= 0) return;
    std::int64_t first = frameAt(hostTimeNs);
    const auto known = nextFrameOf_.find(inputID);
    if (known != nextFrameOf_.end() && std::llabs(first - known->second) <= framesIn(settings_.snapNs)) {
        first = known->second;
    }
    nextFrameOf_[inputID] = first + frameCount;
    const auto channels = static_cast<std::size_t>(settings_.channelCount);
    for (std::int64_t index = 0; index < frameCount; ++index) {
        const std::int64_t frame = first + index;
        if (frame < takenFrames_ || frame >= takenFrames_ + horizonFrames_) {
            ++droppedFrames_;
            continue;
        }
        float* slot = &ring_[static_cast<std::size_t>(frame % horizonFrames_) * channels];
        const float* source = samples + static_cast<std::size_t>(index) * channels;
        for (std::size_t channel = 0; channel < channels; ++channel) slot[channel] += source[channel];
    }
}

void PulseAudioMixer::expect(int inputID, HostTimeNs hostTimeNs) {
    nextFrameOf_[inputID] = std::max(frameAt(hostTimeNs), takenFrames_);
}

void PulseAudioMixer::remove(int inputID) {
    nextFrameOf_.erase(inputID);
}

bool PulseAudioMixer::isBlockReady(std::int64_t startFrame, HostTimeNs nowNs) const {
    const std::int64_t endFrame = startFrame + settings_.blockFrames;
    const HostTimeNs endNs = hostTimeAt(endFrame);
    if (nowNs < endNs) return false;
    if (nowNs >= endNs + settings_.maxWaitNs) return true;
    const std::int64_t liveFrom = startFrame - framesIn(settings_.idleAfterNs);
    return std::all_of(nextFrameOf_.begin(), nextFrameOf_.end(), [&](const auto& input) {
        const std::int64_t nextFrame = input.second;
        return nextFrame < liveFrom || nextFrame >= endFrame;
    });
}

PulseAudioMixer::Block PulseAudioMixer::takeBlock() {
    const auto channels = static_cast<std::size_t>(settings_.channelCount);
    Block block{hostTimeAt(takenFrames_),
                std::vector<float>(static_cast<std::size_t>(settings_.blockFrames) * channels)};
    for (std::int64_t index = 0; index < settings_.blockFrames; ++index) {
        float* slot = &ring_[static_cast<std::size_t>((takenFrames_ + index) % horizonFrames_) * channels];
        std::copy(slot, slot + channels,
                  block.samples.begin() + static_cast<std::ptrdiff_t>(index) * channels);
        std::fill(slot, slot + channels, 0.0F);
    }
    takenFrames_ += settings_.blockFrames;
    return block;
}

std::vector<PulseAudioMixer::Block> PulseAudioMixer::takeReadyBlocks(HostTimeNs nowNs) {
    std::vector<Block> blocks;
    while (isBlockReady(takenFrames_, nowNs)) blocks.push_back(takeBlock());
    return blocks;
}

}  // namespace kestrum
