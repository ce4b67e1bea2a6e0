#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace kestrum::test {

// Movies read back with libav, for tests that check what was written: the brightness of each frame, an
// audio track's samples, and where its sounds begin.

struct DecodedFrame {
    double seconds = 0;
    double meanLuma = 0;
};
// Every frame of the first video track, in presentation order.
std::vector<DecodedFrame> decodeVideo(const QString& path);

struct DecodedAudio {
    int sampleRate = 0;
    double startSeconds = 0;
    std::vector<float> samples;  // first channel
};
// The `audioIndex`-th audio track (0 = the first) decoded to float.
std::optional<DecodedAudio> decodeAudio(const QString& path, int audioIndex);

// Times where the magnitude rises above `threshold` after at least `quietSeconds` below it.
std::vector<double> soundOnsets(const DecodedAudio& audio, double threshold, double quietSeconds = 0.5);

}  // namespace kestrum::test
