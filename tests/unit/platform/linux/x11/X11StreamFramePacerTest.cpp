// The deadline grid of the window stream's reads, on made-up instants.
#include "platform/linux/x11/X11StreamFramePacer.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrum {
namespace {

using std::chrono::nanoseconds;
using TimePoint = X11StreamFramePacer::TimePoint;

const TimePoint kAnchor = TimePoint() + std::chrono::hours(5);

// A read that ended at `endNs` after the anchor; the next read is then due at `deadlineNs` (at once when
// that is not after `endNs`) and `skipped` deadlines were passed over.
struct Step {
    std::int64_t endNs;
    std::int64_t deadlineNs;
    std::int64_t skipped;
};

struct PacingRow {
    const char* what;
    int frameRate;
    std::vector<Step> steps;
};

class X11StreamFramePacerGrid : public testing::TestWithParam<PacingRow> {};

TEST_P(X11StreamFramePacerGrid, WaitsForTheNextGridPointAndCountsTheMissedOnes) {
    X11StreamFramePacer pacer(kAnchor, GetParam().frameRate);
    EXPECT_EQ(pacer.deadline(), kAnchor);
    for (const Step& step : GetParam().steps) {
        SCOPED_TRACE(step.endNs);
        EXPECT_EQ(pacer.advance(kAnchor + nanoseconds(step.endNs)), step.skipped);
        EXPECT_EQ(pacer.deadline(), kAnchor + nanoseconds(step.deadlineNs));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, X11StreamFramePacerGrid,
    testing::Values(
        PacingRow{"quick reads at 30 FPS keep every deadline",
                  30,
                  {{5'000'000, 33'333'333, 0}, {38'000'000, 66'666'666, 0}, {70'000'000, 100'000'000, 0}}},
        PacingRow{"an overrun of two intervals reads at once for the last missed deadline, skips one",
                  30,
                  {{70'000'000, 66'666'666, 1}, {75'000'000, 100'000'000, 0}}},
        PacingRow{"an overrun shorter than an interval costs no deadline",
                  30,
                  {{40'000'000, 33'333'333, 0}, {45'000'000, 66'666'666, 0}}},
        PacingRow{"a read ending on a deadline is followed at once by the read for it",
                  60,
                  {{16'666'666, 16'666'666, 0}}},
        PacingRow{
            "a clock reading before the anchor still moves one step", 30, {{-5'000'000, 33'333'333, 0}}},
        PacingRow{"at 60 FPS the grid lands on whole seconds without drift",
                  60,
                  {{999'000'000, 983'333'333, 58}, {60'000'000'000, 60'000'000'000, 3540}}}),
    [](const testing::TestParamInfo<PacingRow>& info) { return "Row" + std::to_string(info.index); });

TEST(X11StreamFramePacer, ANewRateStartsItsGridAtTheCurrentDeadline) {
    X11StreamFramePacer pacer(kAnchor, 30);
    pacer.advance(kAnchor + nanoseconds(5'000'000));  // next at 33.3 ms
    pacer.retime(60);
    EXPECT_EQ(pacer.deadline(), kAnchor + nanoseconds(33'333'333));
    EXPECT_EQ(pacer.advance(kAnchor + nanoseconds(34'000'000)), 0);
    EXPECT_EQ(pacer.deadline(), kAnchor + nanoseconds(49'999'999));
    EXPECT_EQ(pacer.frameRate(), 60);
}

}  // namespace
}  // namespace kestrum
