#include "core/settings/KestrumAppearance.h"
#include "core/settings/LeagueShareResolution.h"
#include "core/settings/RecordingVideoResolution.h"
#include "core/settings/VideoFrameRate.h"

#include <gtest/gtest.h>

#include <QSet>

namespace {

// Every case's raw value parses back to that case, and no two cases share a raw value or a label.
template <class Cases, class Parse>
void expectRawValuesRoundTrip(const Cases& cases, Parse parse) {
    QSet<QString> labels;
    for (const auto value : cases) {
        EXPECT_EQ(parse(kestrum::rawValue(value)), value);
        labels.insert(kestrum::displayText(value));
    }
    EXPECT_EQ(labels.size(), static_cast<qsizetype>(cases.size()));
}

TEST(KestrumAppearance, RawValuesParseBackAndUnknownTextGivesNone) {
    expectRawValuesRoundTrip(kestrum::kKestrumAppearances, kestrum::parseKestrumAppearance);
    EXPECT_EQ(kestrum::parseKestrumAppearance(QStringLiteral("Dark")), std::nullopt);
}

TEST(VideoFrameRate, RawValuesParseBackAndShowAsFps) {
    expectRawValuesRoundTrip(kestrum::kVideoFrameRates, kestrum::parseVideoFrameRate);
    EXPECT_EQ(kestrum::parseVideoFrameRate(45), std::nullopt);
    EXPECT_EQ(kestrum::displayText(kestrum::VideoFrameRate::fps60), QStringLiteral("60 FPS"));
}

TEST(RecordingVideoResolution, RawValuesParseBackAndOnlyNativeHasNoLimitBox) {
    expectRawValuesRoundTrip(kestrum::kRecordingVideoResolutions, kestrum::parseRecordingVideoResolution);
    EXPECT_EQ(kestrum::parseRecordingVideoResolution(QStringLiteral("720p")), std::nullopt);
    EXPECT_EQ(kestrum::limitBoxPixels(kestrum::RecordingVideoResolution::p1080), QSize(1920, 1080));
    EXPECT_EQ(kestrum::limitBoxPixels(kestrum::RecordingVideoResolution::native), std::nullopt);
}

TEST(LeagueShareResolution, RawValuesParseBack) {
    expectRawValuesRoundTrip(kestrum::kLeagueShareResolutions, kestrum::parseLeagueShareResolution);
    EXPECT_EQ(kestrum::parseLeagueShareResolution(QStringLiteral("native")), std::nullopt);
}

}  // namespace
