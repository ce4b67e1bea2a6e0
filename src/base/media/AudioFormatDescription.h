#pragma once

#include <cstdint>

namespace kestrum {

// The format facts of a PCM buffer, in the layout of a basic audio stream description: a four-character
// format id and a bit set of flags. Only linear PCM is carried through the capture path.
struct AudioFormatDescription {
    static constexpr std::uint32_t kFormatLinearPCM = 0x6C70636D;  // 'lpcm'
    static constexpr std::uint32_t kFlagIsFloat = 1u << 0;
    static constexpr std::uint32_t kFlagIsSignedInteger = 1u << 2;
    static constexpr std::uint32_t kFlagIsNonInterleaved = 1u << 5;

    std::uint32_t formatID = kFormatLinearPCM;
    std::uint32_t formatFlags = kFlagIsFloat;
    std::uint32_t bitsPerChannel = 32;
    std::uint32_t channelsPerFrame = 2;
    double sampleRate = 48000;

    bool isFloat() const { return (formatFlags & kFlagIsFloat) != 0; }
    bool isSignedInteger() const { return (formatFlags & kFlagIsSignedInteger) != 0; }
    bool isNonInterleaved() const { return (formatFlags & kFlagIsNonInterleaved) != 0; }
    int bytesPerSample() const { return static_cast<int>(bitsPerChannel / 8); }

    friend bool operator==(const AudioFormatDescription&, const AudioFormatDescription&) = default;
};

}  // namespace kestrum
