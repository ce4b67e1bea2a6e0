#include "base/async/ManualClock.h"
#include "core/dashboard/RecordingRowSwipe.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <cmath>
#include <vector>

namespace kestrum {
namespace {

using namespace std::chrono_literals;
using Options = RecordingRowSwipe::Options;

class RecordingRowSwipeTest : public testing::Test {
  protected:
    std::unique_ptr<RecordingRowSwipe> make(Options options = {}) {
        return std::make_unique<RecordingRowSwipe>(
            clock, options,
            RecordingRowSwipe::Callbacks{[this] { ++changes; }, [this] { ++interactions; },
                                         [this](SwipeSide side) { actions.push_back(side); }});
    }
    ~RecordingRowSwipeTest() override { QCoreApplication::processEvents(); }

    ManualClock clock;
    int changes = 0;
    int interactions = 0;
    std::vector<SwipeSide> actions;
};

TEST_F(RecordingRowSwipeTest, AReleaseCommitsFromFiftyTwoPointsOnAnAllowedSideWhenMostlyAcross) {
    struct Row {
        const char* name;
        double dx;
        double dy;
        Options options;
        SwipeSide expected;
    };
    const std::vector<Row> rows = {
        {"51 across does not commit", -51, 0, {}, SwipeSide::none},
        {"52 across commits", -52, 0, {}, SwipeSide::trailing},
        {"52 to the right commits the leading side", 52, 0, {}, SwipeSide::leading},
        {"100 across and 90 down is ignored: 100 does not exceed 108", -100, 90, {}, SwipeSide::none},
        {"100 across and 80 down counts", -100, 80, {}, SwipeSide::trailing},
        {"far beyond the reveal still commits", 300, 10, {}, SwipeSide::leading},
        {"no leading action: a right swipe does nothing", 80, 0, {false, true}, SwipeSide::none},
        {"no trailing action: a left swipe does nothing", -80, 0, {true, false}, SwipeSide::none},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        actions.clear();
        auto swipe = make(row.options);
        // A drag handler takes over only after its threshold; the press point is where the translation counts
        // from.
        swipe->press({200, 40});
        swipe->move({200 + row.dx / 2, 40 + row.dy / 2});
        swipe->release({200 + row.dx, 40 + row.dy});
        clock.advance(1s);
        EXPECT_EQ(actions, row.expected == SwipeSide::none ? std::vector<SwipeSide>{}
                                                           : std::vector<SwipeSide>{row.expected});
        EXPECT_EQ(swipe->offset(), 0) << "the card is home again";
        EXPECT_TRUE(swipe->isAtRest());
    }
}

TEST_F(RecordingRowSwipeTest, DuringTheDragTheOffsetIsTheClampedTranslationAndTheSymbolFollowsIt) {
    struct Row {
        QPointF pointer;
        double offset;
        SwipeSide side;
        double progress;
    };
    const std::vector<Row> rows = {
        {{90, 50}, -10, SwipeSide::trailing, 10.0 / 52},
        {{74, 50}, -26, SwipeSide::trailing, 0.5},
        {{0, 50}, -64, SwipeSide::trailing, 1},  // the furthest the card moves
        {{100, 80}, 0, SwipeSide::none, 0},      // straight down: no offset
        {{90, 59}, 0, SwipeSide::none, 0},       // 10 across, 9 down: 10 does not exceed 10.8
        {{152, 50}, 52, SwipeSide::leading, 1},
        {{400, 50}, 64, SwipeSide::leading, 1},
    };
    auto swipe = make();
    swipe->press({100, 50});
    EXPECT_EQ(interactions, 1);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.offset);
        swipe->move(row.pointer);
        EXPECT_EQ(swipe->offset(), row.offset);
        EXPECT_EQ(swipe->side(), row.side);
        EXPECT_DOUBLE_EQ(swipe->iconProgress(), row.progress);
        EXPECT_DOUBLE_EQ(swipe->iconOpacity(), row.progress);
        EXPECT_DOUBLE_EQ(swipe->iconScale(), 0.84 + 0.16 * row.progress);
    }
    swipe->cancel();
    clock.advance(1s);
    EXPECT_TRUE(actions.empty()) << "a cancelled drag acts on nothing";
}

TEST_F(RecordingRowSwipeTest, ACommitRestsFortyFourOutThenActsThenSpringsHome) {
    auto swipe = make();
    swipe->press({100, 50});
    swipe->move({40, 50});
    swipe->release({40, 50});
    EXPECT_EQ(swipe->offset(), -60) << "the spring starts where the card was let go";
    clock.advance(89ms);
    EXPECT_TRUE(actions.empty());
    EXPECT_LT(swipe->offset(), -40);
    EXPECT_GT(swipe->iconScale(), 1.0) << "the symbol grows towards 1.18";
    clock.advance(1ms);
    EXPECT_EQ(actions, std::vector<SwipeSide>{SwipeSide::trailing});
    clock.advance(70ms);
    const double leaving = swipe->offset();
    clock.advance(40ms);
    EXPECT_GT(swipe->offset(), leaving) << "on its way home";
    clock.advance(2s);
    EXPECT_EQ(swipe->offset(), 0);
    EXPECT_DOUBLE_EQ(swipe->iconScale(), 0.84);
    EXPECT_TRUE(swipe->isAtRest());
    EXPECT_GT(changes, 20) << "frames were drawn while it moved";
}

TEST_F(RecordingRowSwipeTest, ASpringSettlesOnItsTargetFromItsStart) {
    struct Row {
        SpringParameters spring;
        double from;
        double to;
    };
    const std::vector<Row> rows = {{RecordingRowSwipe::kReleaseSpring, -60, -44},
                                   {RecordingRowSwipe::kSettleSpring, -44, 0},
                                   {RecordingRowSwipe::kHintSpring, 0, -44},
                                   {{0.3, 1.0}, 10, 0},
                                   {{0.3, 1.5}, 10, 0}};
    for (const Row& row : rows) {
        const SpringMotion motion(row.from, row.to, row.spring);
        EXPECT_EQ(motion.valueAt(0), row.from);
        EXPECT_GT(motion.settleSeconds(), 0);
        EXPECT_LT(motion.settleSeconds(), 2);
        EXPECT_EQ(motion.valueAt(motion.settleSeconds()), row.to);
        // Continuous at the moment it settles: the last moving value is already within the rest distance.
        EXPECT_NEAR(motion.valueAt(motion.settleSeconds() - 1e-6), row.to, 0.011);
        const double midway = motion.valueAt(row.spring.responseSeconds / 4);
        EXPECT_LT(std::abs(midway - row.to), std::abs(row.from - row.to)) << "it moves towards the target";
    }
}

TEST_F(RecordingRowSwipeTest, HintsSlideOutAndBackOnceOrAgainEveryFewSeconds) {
    struct Row {
        Options options;
        double outSign;
        int cycles;
    };
    const std::vector<Row> rows = {
        {{true, true, false, true, false}, -1, 1},
        {{true, true, true, false, false}, 1, 1},
        {{true, true, false, true, true}, -1, 3},
    };
    for (const Row& row : rows) {
        auto swipe = make(row.options);
        swipe->startHints();
        int outings = 0;
        bool wasOut = false;
        // 0.65 s, 0.7 s out, then 3.6 s between repeats: a cycle takes 4.95 s.
        for (int tick = 0; tick < 1400; ++tick) {
            clock.advance(10ms);
            const bool isOut = swipe->offset() * row.outSign > 30;
            if (isOut && !wasOut) ++outings;
            wasOut = isOut;
        }
        EXPECT_EQ(outings, row.cycles);
        EXPECT_EQ(swipe->isAtRest(), !row.options.repeatsActionHints);
    }
}

TEST_F(RecordingRowSwipeTest, AccessibilityActionsCallTheSameClosuresOnAllowedSidesOnly) {
    auto swipe = make({true, false});
    swipe->performAction(SwipeSide::leading);
    swipe->performAction(SwipeSide::trailing);
    EXPECT_EQ(actions, std::vector<SwipeSide>{SwipeSide::leading});
}

}  // namespace
}  // namespace kestrum
