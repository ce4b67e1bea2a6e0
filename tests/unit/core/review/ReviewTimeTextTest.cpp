#include "core/review/ReviewTimeText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kestrum {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct TextCase {
    double seconds;
    const char* expected;
};

void PrintTo(const TextCase& row, std::ostream* out) {
    *out << row.seconds << " reads " << row.expected;
}

class FormatTimeTest : public testing::TestWithParam<TextCase> {};

TEST_P(FormatTimeTest, FloorsToMinutesAndSeconds) {
    EXPECT_EQ(formatTime(GetParam().seconds), QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Table, FormatTimeTest,
                         testing::Values(TextCase{0, "0:00"}, TextCase{59.999, "0:59"},
                                         TextCase{61.2, "1:01"}, TextCase{3599.9, "59:59"},
                                         TextCase{3600, "60:00"}, TextCase{7325, "122:05"},
                                         TextCase{-0.5, "0:00"}, TextCase{kNaN, "0:00"},
                                         TextCase{kInfinity, "0:00"}, TextCase{-kInfinity, "0:00"}));

class TimerTextTest : public testing::TestWithParam<TextCase> {};

TEST_P(TimerTextTest, CeilsAndReadsLiveAtZero) {
    EXPECT_EQ(timerText(GetParam().seconds), QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Table, TimerTextTest,
                         testing::Values(TextCase{61.2, "1:02"}, TextCase{0.01, "0:01"},
                                         TextCase{59.5, "1:00"}, TextCase{600, "10:00"}, TextCase{0, "LIVE"},
                                         TextCase{-419, "LIVE"}, TextCase{kNaN, "LIVE"}));

class GameClockTextTest : public testing::TestWithParam<TextCase> {};

TEST_P(GameClockTextTest, TruncatesToTwoDigitMinutes) {
    EXPECT_EQ(gameClockText(GetParam().seconds), QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Table, GameClockTextTest,
                         testing::Values(TextCase{0, "00:00"}, TextCase{61.9, "01:01"},
                                         TextCase{599.99, "09:59"}, TextCase{3600, "60:00"},
                                         TextCase{-3, "00:00"}, TextCase{kNaN, "00:00"}));

struct PlayheadCase {
    double currentSeconds;
    double durationSeconds;
    const char* expected;
};

void PrintTo(const PlayheadCase& row, std::ostream* out) {
    *out << row.currentSeconds << " of " << row.durationSeconds << " reads " << row.expected;
}

class PlayheadTimeTextTest : public testing::TestWithParam<PlayheadCase> {};

TEST_P(PlayheadTimeTextTest, NeverReadsPastAKnownLength) {
    EXPECT_EQ(playheadTimeText(GetParam().currentSeconds, GetParam().durationSeconds),
              QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Table, PlayheadTimeTextTest,
                         testing::Values(PlayheadCase{5, 30, "0:05"}, PlayheadCase{45, 30, "0:30"},
                                         PlayheadCase{30.9, 30.5, "0:30"}, PlayheadCase{-2, 30, "0:00"},
                                         // A length not known yet keeps the playhead where it is.
                                         PlayheadCase{5, 0, "0:05"}, PlayheadCase{5, -1, "0:05"},
                                         PlayheadCase{5, kNaN, "0:05"}, PlayheadCase{kNaN, 30, "0:00"},
                                         PlayheadCase{kInfinity, 90, "1:30"}));

TEST(ReviewTimeText, HugeFiniteTimesDoNotOverflow) {
    EXPECT_FALSE(formatTime(1e300).startsWith(QLatin1Char('-')));
    EXPECT_FALSE(timerText(1e300).startsWith(QLatin1Char('-')));
}

}  // namespace
}  // namespace kestrum
