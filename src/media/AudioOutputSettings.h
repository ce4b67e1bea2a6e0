#pragma once

namespace kestrum {

enum class AudioCodec { aac };

// The compression settings of one audio track of a movie.
struct AudioOutputSettings {
    AudioCodec codec = AudioCodec::aac;
    int sampleRate = 48000;  // Hz
    int channelCount = 2;
    int bitRate = 192000;  // bits per second

    friend bool operator==(const AudioOutputSettings&, const AudioOutputSettings&) = default;
};

}  // namespace kestrum
