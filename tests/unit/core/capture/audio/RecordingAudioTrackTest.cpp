#include "AudioTestBuffers.h"
#include "base/async/ManualClock.h"
#include "core/capture/audio/RecordingAudioTrack.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace kestrum::test {
namespace {

using namespace std::chrono_literals;
using Fate = RecordingSampleFate;

// An audio input that keeps what reaches it; its readiness and its answer are the test's.
class AudioInputProbe final : public MovieWriterInput {
  public:
    MovieMediaType mediaType() const override { return MovieMediaType::audio; }
    bool isReadyForMoreMediaData() const override { return ready; }
    void setExpectsMediaDataInRealTime(bool) override {}
    bool expectsMediaDataInRealTime() const override { return true; }
    bool append(std::shared_ptr<const PixelBuffer>, HostTimeNs) override { return false; }
    bool append(AudioSampleBuffer buffer) override {
        appended.push_back(std::move(buffer));
        return accepts;
    }
    std::uint64_t refusedSampleCount() const override { return 0; }
    std::uint64_t discardedSampleCount() const override { return 0; }

    bool ready = true;
    bool accepts = true;
    std::vector<AudioSampleBuffer> appended;
};

constexpr HostTimeNs kStreamStampNs = 123'000'000;

AudioSampleBuffer floatBuffer(std::vector<float> samples) {
    const int frames = static_cast<int>(samples.size() / 2);
    return AudioSampleBuffer(pcmFormat(kFloatFlag, 32), kStreamStampNs, frames, {f32(samples)});
}

HostTimeNs hostTimeOf(const ManualClock& clock) {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(clock.now().time_since_epoch()).count();
}

TEST(RecordingAudioTrack, EachBufferReachesTheInputOrIsCountedWithItsFate) {
    struct Case {
        const char* name;
        RecordingAudioTiming timing;
        bool hasInput;
        bool ready;
        bool accepts;
        bool sessionStarted;
        double volume;
        Fate fate;
        // Expected on the input when the buffer reached it.
        std::optional<std::vector<float>> samples;
        bool stampedAtArrival = false;
    };
    // clang-format off
    const std::vector<Case> cases = {
        {"system sound keeps its stamp, at the volume, limited", RecordingAudioTiming::asStamped,
         true, true, true, true, 1.5, Fate::written, std::vector<float>{0.3f, -0.98f}},
        {"the microphone is placed at its arrival", RecordingAudioTiming::atArrival,
         true, true, true, true, 1.0, Fate::written, std::vector<float>{0.2f, -0.8f}, true},
        {"sound before the session never reaches the input", RecordingAudioTiming::asStamped,
         true, true, true, false, 1.0, Fate::beforeSession, std::nullopt},
        {"a track the writer refused counts as not ready", RecordingAudioTiming::asStamped,
         false, true, true, true, 1.0, Fate::notReady, std::nullopt},
        {"an input not ready is not appended to", RecordingAudioTiming::atArrival,
         true, false, true, true, 1.0, Fate::notReady, std::nullopt},
        {"a refused append is counted", RecordingAudioTiming::asStamped,
         true, true, false, true, 0.5, Fate::refused, std::vector<float>{0.1f, -0.4f}},
    };
    // clang-format on
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        ManualClock clock;
        clock.advance(5s);
        RecordingAudioTrack track(row.timing, clock);
        auto input = std::make_shared<AudioInputProbe>();
        input->ready = row.ready;
        input->accepts = row.accepts;
        track.prepare(row.hasInput ? input : nullptr, row.volume);
        AudioSampleBuffer buffer = floatBuffer({0.2f, -0.8f});
        track.handleBuffer(buffer, row.sessionStarted);

        EXPECT_EQ(track.tally().received(), 1);
        EXPECT_EQ(track.tally().countOf(row.fate), 1);
        ASSERT_EQ(input->appended.size(), row.samples ? 1u : 0u);
        if (!row.samples) continue;
        const AudioSampleBuffer& appended = input->appended.front();
        EXPECT_EQ(samplesOf<float>(appended.buffers().at(0)), *row.samples);
        EXPECT_EQ(appended.frameCount(), 1);
        EXPECT_EQ(appended.hostTimeNs(), row.stampedAtArrival ? hostTimeOf(clock) : kStreamStampNs);
        // The gate stays open, as the capture path keeps it.
        EXPECT_EQ(track.processor().gateGain(), 1.0);
    }
}

TEST(RecordingAudioTrack, ANewRecordingStartsANewTallyAndReleaseLetsTheInputGo) {
    ManualClock clock;
    RecordingAudioTrack track(RecordingAudioTiming::asStamped, clock);
    auto input = std::make_shared<AudioInputProbe>();
    track.prepare(input, 1.0);
    AudioSampleBuffer buffer = floatBuffer({0.1f, 0.1f});
    track.handleBuffer(buffer, true);
    track.countDropped(Fate::afterStop);
    EXPECT_EQ(track.tally().description(QStringLiteral("buffers")),
              QStringLiteral("1 of 2 buffers written (1 after the stop)"));
    track.release();
    EXPECT_EQ(track.input(), nullptr);
    EXPECT_EQ(input.use_count(), 1);
    EXPECT_EQ(track.tally().received(), 2);  // still readable for the stop's line
    track.prepare(input, 1.0);
    EXPECT_EQ(track.tally().received(), 0);
}

TEST(RecordingSampleTally, DescribesWhatWasWrittenOutOfWhatArrivedAndWhy) {
    struct Case {
        std::vector<std::pair<Fate, int>> counts;
        QString unit;
        QString expected;
    };
    const std::vector<Case> cases = {
        {{}, QStringLiteral("buffers"), QStringLiteral("0 of 0 buffers written")},
        {{{Fate::notReady, 2950}},
         QStringLiteral("buffers"),
         QStringLiteral("0 of 2950 buffers written (2950 not ready)")},
        {{{Fate::written, 1790}, {Fate::refused, 3}, {Fate::whileUnfocused, 40}, {Fate::notLater, 2}},
         QStringLiteral("frames"),
         QStringLiteral(
             "1790 of 1835 frames written (40 while unfocused, 2 not later than the last, 3 refused)")},
        {{{Fate::beforeSession, 5}, {Fate::dataNotReady, 1}, {Fate::afterStop, 4}, {Fate::withoutPicture, 7}},
         QStringLiteral("frames"),
         QStringLiteral("0 of 17 frames written (4 after the stop, 1 data not ready, 7 without a picture, "
                        "5 before the session)")},
    };
    for (const Case& row : cases) {
        RecordingSampleTally tally;
        for (const auto& [fate, count] : row.counts) {
            for (int i = 0; i < count; ++i) tally.count(fate);
        }
        EXPECT_EQ(tally.description(row.unit), row.expected);
    }
}

}  // namespace
}  // namespace kestrum::test
