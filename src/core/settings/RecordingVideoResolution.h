#pragma once

#include <QSize>
#include <QString>

#include <array>
#include <optional>

namespace kestrum {

// The size limit of a recording, stored as its raw string at "recordingVideoResolution".
enum class RecordingVideoResolution { p720, p1080, native };

// All cases in the order of the picker.
inline constexpr std::array<RecordingVideoResolution, 3> kRecordingVideoResolutions = {
    RecordingVideoResolution::p720, RecordingVideoResolution::p1080, RecordingVideoResolution::native};

inline QString rawValue(RecordingVideoResolution resolution) {
    switch (resolution) {
        case RecordingVideoResolution::p720:
            return QStringLiteral("p720");
        case RecordingVideoResolution::p1080:
            return QStringLiteral("p1080");
        case RecordingVideoResolution::native:
            return QStringLiteral("native");
    }
    return {};
}

// The picker's label: "720p", "1080p", "Native".
inline QString displayText(RecordingVideoResolution resolution) {
    switch (resolution) {
        case RecordingVideoResolution::p720:
            return QStringLiteral("720p");
        case RecordingVideoResolution::p1080:
            return QStringLiteral("1080p");
        case RecordingVideoResolution::native:
            return QStringLiteral("Native");
    }
    return {};
}

// The box in pixels that the recorded picture must fit in; absent for `native`, which keeps the
// window's own size.
inline std::optional<QSize> limitBoxPixels(RecordingVideoResolution resolution) {
    switch (resolution) {
        case RecordingVideoResolution::p720:
            return QSize(1280, 720);
        case RecordingVideoResolution::p1080:
            return QSize(1920, 1080);
        case RecordingVideoResolution::native:
            return std::nullopt;
    }
    return std::nullopt;
}

// The case whose raw value is exactly `raw`; absent for any other text.
inline std::optional<RecordingVideoResolution> parseRecordingVideoResolution(const QString& raw) {
    for (const RecordingVideoResolution resolution : kRecordingVideoResolutions) {
        if (rawValue(resolution) == raw) return resolution;
    }
    return std::nullopt;
}

}  // namespace kestrum
