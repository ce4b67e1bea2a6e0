#include "AudioTestBuffers.h"
#include "core/capture/audio/AudioLevelMeasure.h"

#include <gtest/gtest.h>

namespace kestrum::test {
namespace {

TEST(measureRMS, CountsFloatAndInt16SamplesOfEveryBufferWithData) {
    struct Case {
        const char* name;
        AudioFormatDescription format;
        std::vector<Bytes> buffers;
        double expected;
    };
    const std::vector<Case> cases = {
        {"float32", pcmFormat(kFloatFlag, 32), {f32({0.6f, -0.8f})}, 0.7071068},
        {"int16 over 32767", pcmFormat(kSignedFlag, 16), {i16({32767, -32767, 0, 0})}, 0.7071068},
        {"int16 -32768", pcmFormat(kSignedFlag, 16), {i16({-32768})}, 1.0000305},
        {"int32 adds nothing", pcmFormat(kSignedFlag, 32), {i32({2147483647})}, 0.0},
        {"24-bit adds nothing", pcmFormat(kSignedFlag, 24), {{0xFF, 0xFF, 0x7F}}, 0.0},
        {"64-bit float adds nothing", pcmFormat(kFloatFlag, 64), {bytesOf<double>({0.5})}, 0.0},
        {"no buffers", pcmFormat(kFloatFlag, 32), {}, 0.0},
        {"empty buffers count no samples",
         pcmFormat(kFloatFlag | kNonInterleavedFlag, 32),
         {{}, f32({0.5f}), f32({-0.5f, 0.5f})},
         0.5},
        {"odd trailing byte", pcmFormat(kSignedFlag, 16), {{0x00, 0x40, 0x7F}}, 0.5000153},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_NEAR(measureRMS(sampleBufferOf(c.format, c.buffers)), c.expected, 1e-6);
    }
}

}  // namespace
}  // namespace kestrum::test
