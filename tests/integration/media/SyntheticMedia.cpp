#include "SyntheticMedia.h"

#include <cmath>
#include <cstring>
#include <numbers>
#include <random>

namespace kestrum::test {

std::shared_ptr<const PixelBuffer> makeFrame(int width, int height, int index, bool flash) {
    const int stride = width * 4;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height));
    if (flash) {
        std::memset(bytes.data(), 0xFF, bytes.size());
        return PixelBuffer::make(width, height, stride, std::move(bytes));
    }
    std::minstd_rand noise(static_cast<unsigned>(index) * 7919u + 1u);
    const int blockX = (index * 13) % std::max(1, width - width / 8);
    const int blockY = (index * 7) % std::max(1, height - height / 8);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = bytes.data() + static_cast<std::ptrdiff_t>(y) * stride;
        for (int x = 0; x < width; ++x) {
            const bool inBlock =
                x >= blockX && x < blockX + width / 8 && y >= blockY && y < blockY + height / 8;
            const int grain = static_cast<int>(noise() % 48);
            const int base = ((x + index * 4) % 256 + (y / 2) % 64) / 3;
            row[x * 4 + 0] = static_cast<std::uint8_t>(std::min(255, base + grain));
            row[x * 4 + 1] = static_cast<std::uint8_t>(std::min(255, (inBlock ? 170 : base / 2) + grain));
            row[x * 4 + 2] = static_cast<std::uint8_t>(std::min(255, (y + index * 2) % 128 + grain));
            row[x * 4 + 3] = 0xFF;
        }
    }
    return PixelBuffer::make(width, height, stride, std::move(bytes));
}

Signal beepEverySecond(double beepSeconds) {
    return [beepSeconds](double seconds) {
        const double within = seconds - std::floor(seconds);
        if (seconds < 0 || within >= beepSeconds) return 0.0;
        return 0.5 * std::sin(2 * std::numbers::pi * 1000.0 * seconds);
    };
}

namespace {

void storeSample(std::uint8_t* at, const AudioFormatDescription& format, double value) {
    if (format.isFloat()) {
        const auto sample = static_cast<float>(value);
        std::memcpy(at, &sample, sizeof sample);
    } else if (format.bitsPerChannel == 16) {
        const auto sample = static_cast<std::int16_t>(std::lround(value * 32767.0));
        std::memcpy(at, &sample, sizeof sample);
    } else {
        const auto sample = static_cast<std::int32_t>(std::llround(value * 2147483647.0));
        std::memcpy(at, &sample, sizeof sample);
    }
}

}  // namespace

AudioSampleBuffer makeAudio(const AudioFormatDescription& format, HostTimeNs firstFrameHostTimeNs,
                            int frameCount, HostTimeNs sessionStartNs, const Signal& signal) {
    const int width = format.bytesPerSample();
    const int channels = static_cast<int>(format.channelsPerFrame);
    const bool planar = format.isNonInterleaved();
    std::vector<std::vector<std::uint8_t>> buffers(planar ? channels : 1);
    for (auto& buffer : buffers) {
        buffer.resize(static_cast<std::size_t>(frameCount) * width * (planar ? 1 : channels));
    }
    const double startSeconds = hostTimeToSeconds(firstFrameHostTimeNs - sessionStartNs);
    for (int frame = 0; frame < frameCount; ++frame) {
        const double value = signal(startSeconds + frame / format.sampleRate);
        for (int channel = 0; channel < channels; ++channel) {
            std::uint8_t* at = planar ? buffers[channel].data() + frame * width
                                      : buffers[0].data() + (frame * channels + channel) * width;
            storeSample(at, format, value);
        }
    }
    return AudioSampleBuffer(format, firstFrameHostTimeNs, frameCount, std::move(buffers));
}

}  // namespace kestrum::test
