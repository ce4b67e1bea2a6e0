// League Share end to end: the built kestrum and the game simulator under a real X server with a window
// manager; a second launch with --share starts the share in the running kestrum, and the share window's
// own pixels, read back by `ffmpeg -f x11grab` as a sharing program captures them, carry the game's clock
// stripe while the game runs. A click on the share window reaches the window below it.
#include "ClockStripe.h"
#include "EndToEndRig.h"
#include "PointerPressRecorder.h"
#include "PulseTones.h"
#include "support/TestEnvironment.h"
#include "support/X11Desktop.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QRegularExpression>

namespace kestrum::test {
namespace {

const QString kScripts = QStringLiteral(KESTRUM_SOURCE_DIR "/tests/e2e/scripts/");

QString toolOutput(const QString& program, const QStringList& arguments) {
    QProcess tool;
    tool.start(program, arguments);
    if (!tool.waitForFinished(10000)) return {};
    return QString::fromUtf8(tool.readAllStandardOutput());
}

// The share window's X id, found as a sharing program lists windows: by its class.
std::optional<QString> shareWindowID() {
    const QStringList ids =
        toolOutput(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                               QStringLiteral("--classname"), QStringLiteral("league-share")})
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (ids.size() != 1) return std::nullopt;
    return ids.front();
}

// The window's place on the screen, from xwininfo.
std::optional<QRect> screenRegion(const QString& windowID) {
    const QString info = toolOutput(QStringLiteral("xwininfo"), {QStringLiteral("-id"), windowID});
    const auto field = [&](const char* name) {
        const QRegularExpression pattern(QStringLiteral("%1:\\s+(-?\\d+)").arg(QLatin1String(name)));
        const auto match = pattern.match(info);
        return match.hasMatch() ? match.captured(1).toInt() : -1;
    };
    const QRect region(field("Absolute upper-left X"), field("Absolute upper-left Y"), field("Width"),
                       field("Height"));
    if (region.width() <= 0 || region.height() <= 0) return std::nullopt;
    return region;
}

std::optional<qint64> shownClockMs(const QRect& region) {
    const auto picture = grabScreenRegion(region);
    return picture ? decodeClockStripe(*picture) : std::nullopt;
}

class ShareSimulatedGame : public testing::Test {
  protected:
    void SetUp() override {
        if (!rig_.start()) FAIL() << rig_.failure().toStdString();
    }
    EndToEndRig rig_;
};

TEST_F(ShareSimulatedGame, TheShareWindowMirrorsTheGameAndLetsClicksThrough) {
    ASSERT_TRUE(rig_.startGame(kScripts + QStringLiteral("sixty-seconds.json")));
    const std::optional<QString> launch = rig_.runAnotherLaunch({QStringLiteral("--share")});
    ASSERT_TRUE(launch) << "the second launch did not hand --share over";
    EXPECT_TRUE(launch->contains(QStringLiteral("asked to start League Share"))) << launch->toStdString();
    ASSERT_TRUE(rig_.waitForKestrumLine(QStringLiteral("another launch asked for League Share"), 10000));

    std::optional<QString> share;
    ASSERT_TRUE(waitUntil([&] { return (share = shareWindowID()).has_value(); }, 15000)) << "no share window";
    ASSERT_TRUE(rig_.activateGameWindow());
    // Above the game's own window, so that what is read back are the share window's pixels.
    ASSERT_EQ(QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("windowraise"), *share}), 0);
    const std::optional<QRect> region = screenRegion(*share);
    ASSERT_TRUE(region);
    EXPECT_EQ(region->size(), QSize(960, 540));

    // The game's clock advances in the share window: two readings a moment apart, the later one ahead.
    std::optional<qint64> first;
    ASSERT_TRUE(waitUntil([&] { return (first = shownClockMs(*region)).has_value() && *first > 0; }, 30000))
        << "the share window never showed the game's clock stripe";
    std::optional<qint64> later;
    ASSERT_TRUE(
        waitUntil([&] { return (later = shownClockMs(*region)).has_value() && *later > *first; }, 10000))
        << "the share window's picture stood still at " << *first;

    // A window of another program below the share window gets the click made on the share window (the
    // game's window, which also lies under the share window, is below both).
    PointerPressRecorder recorder(region->adjusted(-20, -20, 20, 20));
    ASSERT_EQ(QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("windowraise"), *share}), 0);
    const auto stackingIndex = [](xcb_window_t window) {
        const QString stacking = toolOutput(
            QStringLiteral("xprop"), {QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST_STACKING")});
        return stacking.indexOf(QStringLiteral("0x%1").arg(window, 0, 16));
    };
    const auto shareWindow = static_cast<xcb_window_t>(share->toUInt());
    ASSERT_TRUE(
        waitUntil([&] { return stackingIndex(shareWindow) > stackingIndex(recorder.window()); }, 5000))
        << "the share window is not above the window below";
    const QPoint centre = region->center();
    ASSERT_EQ(QProcess::execute(QStringLiteral("xdotool"),
                                {QStringLiteral("mousemove"), QString::number(centre.x()),
                                 QString::number(centre.y()), QStringLiteral("click"), QStringLiteral("1")}),
              0);
    EXPECT_TRUE(waitUntil([&] { return recorder.presses() == 1; }, 5000));
    rig_.killGame();
    EXPECT_TRUE(rig_.stopKestrum());
}

// The loudest tenth of a second at `hz` in `samples`: the simulator's tone sounds for a tenth at every game
// second, another program's tone all the time.
double loudestTenthAt(const std::vector<float>& samples, double hz) {
    double loudest = 0;
    for (std::size_t start = 0; start + kToneRate / 10 <= samples.size(); start += kToneRate / 10) {
        loudest = std::max(loudest, amplitudeOf(samples, hz, start, start + kToneRate / 10));
    }
    return loudest;
}

TEST_F(ShareSimulatedGame, TheShareSinkCarriesTheGamesSoundAndNoOtherProgramsSound) {
    ASSERT_TRUE(rig_.startGame(kScripts + QStringLiteral("sixty-seconds.json")));
    ASSERT_TRUE(rig_.runAnotherLaunch({QStringLiteral("--share")}));
    // "System audio" is on by default: the sink comes with the game's stream.
    ASSERT_TRUE(waitUntil(
        [] {
            return toolOutput(QStringLiteral("pactl"),
                              {QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("sinks")})
                .contains(QStringLiteral("kestrum_share"));
        },
        30000))
        << "no \"Kestrum Share\" sink";
    // The game's tone sounds once its clock runs, after the loading screen; the recording starts then too.
    ASSERT_TRUE(rig_.waitForKestrumLine(QStringLiteral("timeline starting at relative"), 30000));
    // Another program plays a tone of its own meanwhile, to the user's speakers.
    OtherProcessTone chat;
    ASSERT_TRUE(chat.start(660, 8));
    processEventsFor(1000);
    SourceRecording share;
    SourceRecording speakers;
    ASSERT_TRUE(share.start(QStringLiteral("kestrum_share.monitor")));
    ASSERT_TRUE(speakers.start(QStringLiteral("@DEFAULT_MONITOR@")));
    processEventsFor(4000);
    const std::vector<float> shared = share.finish();
    const std::vector<float> heard = speakers.finish();
    ASSERT_GE(shared.size(), std::size_t{2 * kToneRate});
    std::printf(
        "share sink: game tone %.3f, other program's tone %.4f; speakers: other program's tone %.3f\n",
        loudestTenthAt(shared, 880), loudestTenthAt(shared, 660), loudestTenthAt(heard, 660));
    EXPECT_GT(loudestTenthAt(heard, 660), 0.05) << "the other program's tone did not play";
    EXPECT_GT(loudestTenthAt(shared, 880), 0.05) << "the game's tone is not on the share's sink";
    // The game's tone starts and ends within a tenth, which spreads a little of it (about 2%) to 660 Hz;
    // the other program's tone itself would read 0.3.
    EXPECT_LT(loudestTenthAt(shared, 660), 0.03) << "another program's sound reached the share's sink";

    rig_.killGame();
    EXPECT_TRUE(rig_.stopKestrum());
    EXPECT_FALSE(toolOutput(QStringLiteral("pactl"),
                            {QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("sinks")})
                     .contains(QStringLiteral("kestrum_share")))
        << "the sink outlived the share";
}

}  // namespace
}  // namespace kestrum::test
