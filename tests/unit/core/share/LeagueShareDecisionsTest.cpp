#include "ShareRig.h"
#include "core/recording/RecordingBundleIdentifiers.h"
#include "core/share/LeagueShareOverlay.h"
#include "core/share/LeagueShareSourceChoice.h"
#include "core/share/LeagueShareStreamPlan.h"
#include "core/share/LeagueShareWindowGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kestrum::test {
namespace {

struct FitRow {
    QSizeF source;
    LeagueShareResolution resolution;
    QSize fitted;
};

TEST(LeagueShareFit, table) {
    const FitRow rows[] = {
        {{1920, 1080}, LeagueShareResolution::p720, {1280, 720}},
        {{1024, 768}, LeagueShareResolution::p1080, {1440, 1080}},  // enlarged above its own size
        {{1280, 720}, LeagueShareResolution::p1440, {2560, 1440}},
        {{1002, 1000}, LeagueShareResolution::p720, {720, 720}},  // 721.44 floors to 721, odd: 720
        {{1000, 700}, LeagueShareResolution::p720, {1028, 720}},  // 1028.57 floors to 1028
        {{1000, 1}, LeagueShareResolution::p720, {1280, 2}},      // 1.28 high becomes 2
        {{1, 1000}, LeagueShareResolution::p720, {2, 720}},       // 0.72 wide becomes 2
        {{0, 1000}, LeagueShareResolution::p1080, {1920, 1080}},  // no size: the box
    };
    for (const FitRow& row : rows) {
        EXPECT_EQ(fitLeagueShareSource(row.source, leagueShareBoxSize(row.resolution)), row.fitted)
            << row.source.width() << "x" << row.source.height();
    }
}

TEST(LeagueShareFit, boxesGrowByAThirdOfTheSmallest) {
    EXPECT_EQ(leagueShareBoxSize(LeagueShareResolution::p720), QSize(1280, 720));
    EXPECT_EQ(leagueShareBoxSize(LeagueShareResolution::p1080), QSize(1920, 1080));
    EXPECT_EQ(leagueShareBoxSize(LeagueShareResolution::p1440), QSize(2560, 1440));
}

struct ActionRow {
    const char* name;
    void (*change)(LeagueShareStreamPlan&);
    LeagueShareStreamAction action;
};

TEST(LeagueShareStreamAction, table) {
    const ActionRow rows[] = {
        {"nothing", [](LeagueShareStreamPlan&) {}, LeagueShareStreamAction::keep},
        {"size under half a point", [](LeagueShareStreamPlan& p) { p.windowSize.rwidth() += 0.4; },
         LeagueShareStreamAction::keep},
        {"size", [](LeagueShareStreamPlan& p) { p.windowSize.rheight() += 1; },
         LeagueShareStreamAction::updateConfiguration},
        {"resolution", [](LeagueShareStreamPlan& p) { p.resolution = LeagueShareResolution::p1080; },
         LeagueShareStreamAction::updateConfiguration},
        {"frame rate", [](LeagueShareStreamPlan& p) { p.frameRate = VideoFrameRate::fps60; },
         LeagueShareStreamAction::updateConfiguration},
        {"audio", [](LeagueShareStreamPlan& p) { p.includesAudio = false; },
         LeagueShareStreamAction::replaceStream},
        {"window", [](LeagueShareStreamPlan& p) { p.windowID = 99; }, LeagueShareStreamAction::replaceStream},
        {"process", [](LeagueShareStreamPlan& p) { p.processID = 99; },
         LeagueShareStreamAction::replaceStream},
    };
    const LeagueShareStreamPlan applied{kGameWindow, kGameProcess, {1920, 1080}};
    for (const ActionRow& row : rows) {
        LeagueShareStreamPlan wanted = applied;
        row.change(wanted);
        EXPECT_EQ(decideLeagueShareStreamAction(applied, wanted), row.action) << row.name;
    }
    EXPECT_EQ(decideLeagueShareStreamAction(std::nullopt, applied), LeagueShareStreamAction::replaceStream);
}

struct SourceRow {
    const char* name;
    std::vector<ShareableWindow> windows;
    std::optional<std::uint32_t> windowID;
    LeagueShareSource::Kind kind;
};

TEST(LeagueShareSourceChoice, table) {
    ShareableWindow unowned = gameWindow();
    unowned.owningApplication.reset();
    const ShareableWindow launcher =
        leagueWindow(33, 7, RecordingBundleIdentifiers::riotClient, QSizeF(1280, 720));
    const ShareableWindow bigClient =
        leagueWindow(44, kClientProcess, RecordingBundleIdentifiers::leagueClient, QSizeF(1600, 900));
    const SourceRow rows[] = {
        {"nothing", {}, std::nullopt, {}},
        {"client", {clientWindow()}, kClientWindow, LeagueShareSource::Kind::client},
        {"largest client", {clientWindow(), bigClient}, 44, LeagueShareSource::Kind::client},
        {"game wins",
         {clientWindow({2000, 1000}), gameWindow({800, 600})},
         kGameWindow,
         LeagueShareSource::Kind::game},
        {"101 points is enough", {gameWindow({101, 101})}, kGameWindow, LeagueShareSource::Kind::game},
        {"100 points is not",
         {gameWindow({100, 500}), clientWindow()},
         kClientWindow,
         LeagueShareSource::Kind::client},
        {"launcher and unowned windows are no source", {launcher, unowned}, std::nullopt, {}},
    };
    for (const SourceRow& row : rows) {
        const std::optional<LeagueShareSource> source = chooseLeagueShareSource(snapshotOf(row.windows));
        ASSERT_EQ(source.has_value(), row.windowID.has_value()) << row.name;
        if (!source) continue;
        EXPECT_EQ(source->window.windowID, *row.windowID) << row.name;
        EXPECT_EQ(source->kind, row.kind) << row.name;
    }
}

struct OverlayRow {
    LeagueShareStatus status;
    bool focused;
    bool updating;
    LeagueShareOverlay overlay;
};

TEST(LeagueShareOverlay, table) {
    const QString paused = QStringLiteral("Gameplay paused");
    const OverlayRow rows[] = {
        {LeagueShareStatus::sharingGame(), true, true, {}},
        {LeagueShareStatus::sharingClient(), true, true, {}},
        {LeagueShareStatus::sharingGame(), false, true, {true, paused, {}}},
        {LeagueShareStatus::sharingClient(), true, false, {true, paused, {}}},
        {LeagueShareStatus::stopped(), true, true, {true, QStringLiteral("Sharing paused"), {}}},
        {LeagueShareStatus::waiting(), false, false, {true, QStringLiteral("Waiting for League"), {}}},
        {LeagueShareStatus::permissionRequired(),
         true,
         true,
         {true, QStringLiteral("Screen Recording permission required"), QStringLiteral("lock.shield")}},
        {LeagueShareStatus::failed(QStringLiteral("gone")),
         true,
         true,
         {true, QStringLiteral("Share unavailable"), QStringLiteral("exclamationmark.triangle")}},
    };
    for (const OverlayRow& row : rows) {
        EXPECT_EQ(leagueShareOverlay(row.status, row.focused, row.updating), row.overlay)
            << row.status.title().toStdString() << " " << row.focused << row.updating;
    }
}

struct GeometryRow {
    const char* name;
    double ratio;
    QRect visibleArea;
    std::optional<QSize> size;
};

TEST(LeagueShareWindowGeometry, sizes) {
    const QRect large(0, 0, 2560, 1440);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const GeometryRow rows[] = {
        {"16:9", 16.0 / 9.0, large, QSize(960, 540)},
        {"4:3", 4.0 / 3.0, large, QSize(720, 540)},
        {"21:9", 21.0 / 9.0, large, QSize(960, 411)},
        {"visible height 500", 16.0 / 9.0, QRect(0, 25, 1920, 500), QSize(804, 452)},
        {"narrow screen", 16.0 / 9.0, QRect(0, 0, 548, 1000), QSize(500, 281)},
        {"zero", 0.0, large, std::nullopt},
        {"negative", -1.5, large, std::nullopt},
        {"not a number", nan, large, std::nullopt},
        {"infinite", infinity, large, std::nullopt},
        {"subnormal", std::numeric_limits<double>::denorm_min(), large, std::nullopt},
        {"no room inside the inset", 1.5, QRect(0, 0, 40, 40), std::nullopt},
    };
    for (const GeometryRow& row : rows) {
        EXPECT_EQ(leagueShareWindowSize(row.ratio, row.visibleArea), row.size) << row.name;
    }
}

TEST(LeagueShareWindowGeometry, framesKeepTheirCentreWithinTheScreen) {
    const QRect screen(0, 0, 1920, 1080);
    EXPECT_EQ(leagueShareWindowFrame(4.0 / 3.0, screen, QRect(480, 270, 960, 540)),
              QRect(600, 270, 720, 540));
    // Centred near the right edge, the wider window is moved back inside.
    EXPECT_EQ(leagueShareWindowFrame(16.0 / 9.0, screen, QRect(1500, 100, 400, 300)),
              QRect(960, 0, 960, 540));
    EXPECT_EQ(leagueShareWindowFrame(std::nan(""), screen, QRect(0, 0, 10, 10)), std::nullopt);
}

TEST(LeagueShareWindowGeometry, aRatioChangeUnderOneThousandthIsNone) {
    EXPECT_FALSE(isLeagueShareRatioChange(16.0 / 9.0, 16.0 / 9.0 + 0.0009));
    EXPECT_FALSE(isLeagueShareRatioChange(16.0 / 9.0, 16.0 / 9.0 - 0.0009));
    EXPECT_TRUE(isLeagueShareRatioChange(16.0 / 9.0, 16.0 / 9.0 + 0.0011));
    EXPECT_TRUE(isLeagueShareRatioChange(16.0 / 9.0, 4.0 / 3.0));
}

}  // namespace
}  // namespace kestrum::test
