#pragma once

#include "base/media/AudioFormatDescription.h"
#include "base/media/AudioSampleBuffer.h"

namespace kestrum {

// The sample encodings the audio path reads, decided from the format's flags and width in this order:
// a 32-bit float, then a 16-bit signed integer, then a 32-bit signed integer. Anything else (24-bit
// packed, 8-bit, 64-bit float, unsigned) is `unsupported` and is neither measured nor touched.
enum class PcmSampleKind { float32, int16, int32, unsupported };

PcmSampleKind pcmSampleKind(const AudioFormatDescription& format);

// The root mean square of every sample of every non-empty buffer, interleaved or not, before any gain.
// Float samples count as they are and 16-bit samples divided by 32767.0; 32-bit integer buffers and
// every other format add nothing. A buffer's sample count is its byte size over the sample width,
// rounded down, so a trailing partial sample is ignored. 0 when nothing was counted.
double measureRMS(const AudioSampleBuffer& sampleBuffer);

}  // namespace kestrum
