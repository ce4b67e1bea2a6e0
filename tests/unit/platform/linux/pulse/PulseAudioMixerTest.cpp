#include "platform/linux/pulse/PulseAudioMixer.h"
#include "platform/linux/pulse/PulseSinkInputFilter.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

namespace kestrum {
namespace {

// At 1000 Hz mono a frame is a millisecond: the positions below read as times.
constexpr HostTimeNs kOriginNs = 7'000'000'000;
constexpr HostTimeNs ms(std::int64_t value) {
    return kOriginNs + value * 1'000'000;
}

struct Add {
    int input;
    std::int64_t atMs;  // the stamp of the first frame, from the origin
    std::int64_t frames;
    float value;
};
struct Remove {
    int input;
};
struct Expect {
    int input;
    std::int64_t fromMs;
};
struct Take {
    std::int64_t nowMs;
    std::size_t expectedBlocks;
};
using Step = std::variant<Add, Remove, Expect, Take>;

// The expected mix of every block taken, as runs of one value.
struct SignalRun {
    float value;
    std::int64_t frames;
};

struct Case {
    const char* name;
    std::vector<Step> steps;
    std::vector<SignalRun> expected;
    std::int64_t droppedFrames;
};

std::string describe(const std::vector<float>& signal) {
    std::string text;
    for (std::size_t start = 0; start < signal.size();) {
        std::size_t end = start;
        while (end < signal.size() && signal[end] == signal[start]) ++end;
        text += std::to_string(signal[start]) + " x" + std::to_string(end - start) + "; ";
        start = end;
    }
    return text;
}

TEST(PulseAudioMixer, MixesInputsOnOneGridWithoutWaitingForQuietOnes) {
    // clang-format off
    const std::vector<Case> cases = {
        {"silence flows while no input plays",
         {Take{99, 4}, Take{100, 1}}, {{0.0F, 100}}, 0},
        {"inputs are summed where their stamps say",
         {Add{1, 0, 40, 0.25F}, Add{2, 20, 40, 0.5F}, Take{60, 2}, Take{559, 0}, Take{560, 1}}, {{0.25F, 20}, {0.75F, 20}, {0.5F, 20}}, 0},
        {"a block waits for a live input until it delivered through the block's end",
         {Add{1, 0, 30, 1.0F}, Take{45, 1}, Add{1, 30, 10, 1.0F}, Take{45, 1}},
         {{1.0F, 40}}, 0},
        {"no block waits longer than the longest wait after its end",
         {Add{1, 0, 30, 1.0F}, Take{539, 1}, Take{540, 1}}, {{1.0F, 30}, {0.0F, 10}}, 0},
        {"an input quiet for longer than its idle time holds back no later block",
         {Add{1, 0, 20, 1.0F}, Take{300, 1}, Take{799, 38}, Take{800, 1}},
         {{1.0F, 20}, {0.0F, 780}}, 0},
        {"an expected input holds blocks from its opening until its first sound, stamped before its arrival",
         {Take{40, 2}, Expect{1, 40}, Take{200, 0}, Add{1, 35, 175, 1.0F}, Take{200, 8}},
         {{0.0F, 40}, {1.0F, 160}}, 5},
        {"an expected input that stays silent holds blocks no longer than the longest wait",
         {Expect{1, 0}, Take{519, 0}, Take{520, 1}}, {{0.0F, 20}}, 0},
        {"a removed input holds back nothing, and its sound stays",
         {Add{1, 0, 30, 1.0F}, Take{45, 1}, Remove{1}, Take{45, 1}}, {{1.0F, 30}, {0.0F, 10}}, 0},
        {"sound for blocks already taken is dropped and counted",
         {Take{100, 5}, Add{1, 50, 20, 1.0F}, Add{1, 90, 30, 1.0F}, Take{120, 1}},
         {{0.0F, 100}, {1.0F, 20}}, 30},
        {"fragments of one input within the snap follow each other exactly",
         {Add{1, 0, 20, 1.0F}, Add{1, 21, 20, 0.5F}, Add{1, 39, 20, 0.25F}, Take{80, 3}},
         {{1.0F, 20}, {0.5F, 20}, {0.25F, 20}}, 0},
        {"a fragment beyond the snap lands at its own stamp",
         {Add{1, 0, 20, 1.0F}, Add{1, 30, 10, 0.5F}, Take{40, 2}}, {{1.0F, 20}, {0.0F, 10}, {0.5F, 10}}, 0},
        {"sound beyond the horizon is dropped and counted",
         {Add{1, 4000, 10, 1.0F}, Add{2, 3990, 20, 0.5F}, Take{20, 1}}, {{0.0F, 20}}, 20},
    };
    // clang-format on
    PulseAudioMixer::Settings settings;
    settings.sampleRateHz = 1000;
    settings.channelCount = 1;
    settings.blockFrames = 20;
    settings.maxWaitNs = 500'000'000;
    settings.idleAfterNs = 250'000'000;
    settings.snapNs = 2'000'000;
    settings.horizonNs = 4'000'000'000;
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        PulseAudioMixer mixer(settings);
        mixer.start(kOriginNs);
        std::vector<float> mixed;
        HostTimeNs nextBlockNs = kOriginNs;
        for (const Step& step : row.steps) {
            if (const auto* add = std::get_if<Add>(&step)) {
                const std::vector<float> samples(static_cast<std::size_t>(add->frames), add->value);
                mixer.add(add->input, ms(add->atMs), samples.data(), add->frames);
            } else if (const auto* remove = std::get_if<Remove>(&step)) {
                mixer.remove(remove->input);
            } else if (const auto* expect = std::get_if<Expect>(&step)) {
                mixer.expect(expect->input, ms(expect->fromMs));
            } else {
                const Take& take = std::get<Take>(step);
                const auto blocks = mixer.takeReadyBlocks(ms(take.nowMs));
                EXPECT_EQ(blocks.size(), take.expectedBlocks) << "at " << take.nowMs << " ms";
                for (const auto& block : blocks) {
                    EXPECT_EQ(block.hostTimeNs, nextBlockNs);
                    nextBlockNs += 20'000'000;
                    mixed.insert(mixed.end(), block.samples.begin(), block.samples.end());
                }
            }
        }
        std::vector<float> expected;
        for (const SignalRun& run : row.expected)
            expected.insert(expected.end(), static_cast<std::size_t>(run.frames), run.value);
        EXPECT_EQ(mixed, expected) << describe(mixed);
        EXPECT_EQ(mixer.droppedFrames(), row.droppedFrames);
    }
}

TEST(PulseAudioMixer, StereoFramesStayPaired) {
    PulseAudioMixer mixer(PulseAudioMixer::Settings{});  // 48 kHz stereo, 960-frame blocks
    mixer.start(kOriginNs);
    const std::vector<float> frames = {0.1F, -0.1F, 0.2F, -0.2F};
    mixer.add(1, kOriginNs, frames.data(), 2);
    // The input delivered 2 frames only: the first block goes out once it has waited the longest.
    EXPECT_TRUE(mixer.takeReadyBlocks(kOriginNs + 519'000'000).empty());
    const auto first = mixer.takeReadyBlocks(kOriginNs + 520'000'000);
    ASSERT_EQ(first.size(), 1u);
    ASSERT_EQ(first[0].samples.size(), 960u * 2);
    EXPECT_EQ(std::vector<float>(first[0].samples.begin(), first[0].samples.begin() + 6),
              (std::vector<float>{0.1F, -0.1F, 0.2F, -0.2F, 0.0F, 0.0F}));
}

TEST(PulseAudioMixer, BlockStampsDoNotDriftOverHours) {
    // At 3 Hz a one-frame block lasts 333,333,333.3 ns: a stamp made by adding block lengths would be a
    // whole 10 microseconds early after three hours.
    PulseAudioMixer::Settings settings;
    settings.sampleRateHz = 3;
    settings.channelCount = 1;
    settings.blockFrames = 1;
    PulseAudioMixer mixer(settings);
    mixer.start(kOriginNs);
    constexpr HostTimeNs kThreeHoursNs = 3LL * 3600 * 1'000'000'000;
    std::size_t taken = 0;
    HostTimeNs lastNs = 0;
    for (HostTimeNs nowNs = kOriginNs; nowNs <= kOriginNs + kThreeHoursNs; nowNs += 60'000'000'000) {
        const auto blocks = mixer.takeReadyBlocks(nowNs);
        taken += blocks.size();
        if (!blocks.empty()) lastNs = blocks.back().hostTimeNs;
    }
    EXPECT_EQ(taken, 3u * 3600 * 3);
    EXPECT_EQ(lastNs, kOriginNs + kThreeHoursNs - 333'333'334);
}

TEST(PulseSinkInputFilter, TellsWhichPlaybackStreamsToRecord) {
    struct Case {
        const char* name;
        PulseSinkInputFilter filter;
        std::optional<std::int64_t> processID;
        bool accepted;
    };
    const std::vector<Case> cases = {
        {"every input takes ours", PulseSinkInputFilter::everyInput(), 10, true},
        {"all but ours leaves ours out", PulseSinkInputFilter::everyInputExcept({10}), 10, false},
        {"all but ours takes another", PulseSinkInputFilter::everyInputExcept({10}), 11, true},
        {"all but ours takes one of no known process", PulseSinkInputFilter::everyInputExcept({10}),
         std::nullopt, true},
        {"the game's takes the game", PulseSinkInputFilter::inputsOf({20, 21}), 21, true},
        {"the game's leaves another out", PulseSinkInputFilter::inputsOf({20, 21}), 10, false},
        {"the game's leaves one of no known process out", PulseSinkInputFilter::inputsOf({20}), std::nullopt,
         false},
    };
    for (const Case& row : cases) {
        PulseSinkInputDescription input;
        input.processID = row.processID;
        EXPECT_EQ(row.filter.accepts(input), row.accepted) << row.name;
    }
}

}  // namespace
}  // namespace kestrum
