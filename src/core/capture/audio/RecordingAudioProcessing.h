#pragma once

namespace kestrum {

// What one pass of the dynamics processor tells about a buffer. `level` is the peak before the limit on a
// 60 dB scale from 0 to 1 (0 at -60 dBFS and below, 1 at full scale and above); `clipped` is true once a
// sample went above full scale after the gain, whatever the limit then made of it.
struct RecordingAudioProcessing {
    double level = 0.0;
    bool clipped = false;

    friend bool operator==(const RecordingAudioProcessing&, const RecordingAudioProcessing&) = default;
};

}  // namespace kestrum
