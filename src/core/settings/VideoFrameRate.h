#pragma once

#include <QString>

#include <array>
#include <optional>

namespace kestrum {

// Frames per second of a recording or of the share, stored as the integer raw value.
enum class VideoFrameRate : int { fps30 = 30, fps60 = 60 };

// All cases in the order of the picker.
inline constexpr std::array<VideoFrameRate, 2> kVideoFrameRates = {VideoFrameRate::fps30,
                                                                   VideoFrameRate::fps60};

constexpr int rawValue(VideoFrameRate rate) {
    return static_cast<int>(rate);
}

// The number followed by " FPS": "30 FPS", "60 FPS".
inline QString displayText(VideoFrameRate rate) {
    return QString::number(rawValue(rate)) + QStringLiteral(" FPS");
}

// The case whose raw value is exactly `raw`; absent for any other number. The stored settings do not
// use this directly: there any value but 60 reads as 30 (SettingsReaders.h).
constexpr std::optional<VideoFrameRate> parseVideoFrameRate(qint64 raw) {
    for (const VideoFrameRate rate : kVideoFrameRates) {
        if (rawValue(rate) == raw) return rate;
    }
    return std::nullopt;
}

}  // namespace kestrum
