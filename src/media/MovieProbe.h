#pragma once

#include <QString>

#include <optional>

namespace kestrum {

// The shape of a movie as the review panels need it.
struct MovieMeasurement {
    double durationSeconds = 0;
    // Width over height of the picture as displayed, its rotation applied; 16/9 when the movie has no
    // video track or a side is 0.
    double aspectRatio = 16.0 / 9.0;

    friend bool operator==(const MovieMeasurement&, const MovieMeasurement&) = default;
};

// Measures the movie at `path`: the duration of its first video track (the container's when that is
// not a positive finite number) and the displayed aspect ratio. Absent when the file cannot be read as
// a movie. Blocking file reads: call it away from the main thread.
std::optional<MovieMeasurement> measureMovie(const QString& path);

}  // namespace kestrum
