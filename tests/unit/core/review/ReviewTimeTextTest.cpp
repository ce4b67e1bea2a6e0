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

TEST(ReviewTimeText, HugeFiniteTimesDoNotOverflow) {
    EXPECT_FALSE(formatTime(1e300).startsWith(QLatin1Char('-')));
    EXPECT_FALSE(timerText(1e300).startsWith(QLatin1Char('-')));
}

}  // namespace
}  // namespace kestrum
