// The game simulator as the recorder meets it, on a real X server (with and without a window manager) and
// a real sound server: the game's window, process name, clock and tone, and its ends.
#include "ClockStripe.h"
#include "GameProcess.h"
#include "support/DisplayServers.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QImage>

#include <xcb/xcb.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

namespace kestrum::test {
namespace {

// How much older than the service's clock a grabbed frame may be: a frame lasts 1/60 s, and painting,
// the copy to the X server and a busy machine add to it.
constexpr double kFrameAgeToleranceMs = 150;

QString runTool(const QString& program, const QStringList& arguments) {
    QProcess tool;
    tool.start(program, arguments);
    tool.waitForFinished(10000);
    return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
}

QStringList gameWindows() {
    return runTool(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--name"),
                                               QStringLiteral("^League of Legends \\(TM\\) Client$")})
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

// The window's pixels as the screen shows them, read over a connection of the test's own.
std::optional<QImage> grabWindow(const QString& window) {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> owner(connection, &xcb_disconnect);
    const auto id = static_cast<xcb_window_t>(window.toUInt());
    const std::unique_ptr<xcb_get_geometry_reply_t, decltype(&std::free)> geometry(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, id), nullptr), &std::free);
    if (!geometry) return std::nullopt;
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> image(
        xcb_get_image_reply(connection,
                            xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, id, 0, 0, geometry->width,
                                          geometry->height, ~0u),
                            nullptr),
        &std::free);
    // A 24-bit visual comes as 32-bit little-endian words: the layout of Format_RGB32.
    if (!image || image->depth != 24) return std::nullopt;
    return QImage(xcb_get_image_data(image.get()), geometry->width, geometry->height, geometry->width * 4,
                  QImage::Format_RGB32)
        .copy();
}

// The share of pixels below the stripe's panel that differ between two frames.
double changedShare(const QImage& first, const QImage& second) {
    const int top = first.width() * 6 / 80 + 1;
    qint64 changed = 0;
    for (int y = top; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x) changed += first.pixel(x, y) != second.pixel(x, y) ? 1 : 0;
    }
    return static_cast<double>(changed) / (static_cast<double>(first.width()) * (first.height() - top));
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct GameRun {
    const char* name;
    bool windowManager;
    QStringList extraArguments;
    QSize windowSize;
    double durationSeconds;
    bool endsByItself;  // at the script's end; otherwise by SIGTERM
};

void PrintTo(const GameRun& run, std::ostream* out) {
    *out << run.name;
}

class SimulatedGameWindow : public testing::TestWithParam<GameRun> {};

TEST_P(SimulatedGameWindow, showsTheServicesClockAndEndsCleanly) {
    const GameRun& run = GetParam();
    XvfbServer display;
    if (!display.start() || (run.windowManager && !display.startWindowManager())) {
        GTEST_SKIP() << display.failure().toStdString();
    }
    GameProcess game;
    ASSERT_TRUE(game.startGame(1.0, run.durationSeconds,
                               QStringList{QStringLiteral("--no-sound")} + run.extraArguments));
    EXPECT_EQ(game.processName(), QStringLiteral("League of Legends.exe"));
    ASSERT_TRUE(waitUntil([] { return gameWindows().size() == 1; }, 10000)) << game.output().toStdString();
    const QString window = gameWindows().front();
    EXPECT_EQ(runTool(QStringLiteral("xdotool"), {QStringLiteral("getwindowpid"), window}).toLongLong(),
              game.processId());

    ASSERT_TRUE(waitUntil([&] { return game.serviceGameTime().has_value(); }, 10000));
    std::optional<QImage> previous;
    qint64 previousClockMs = std::numeric_limits<qint64>::min();
    for (int sample = 0; sample < 3; ++sample) {
        const std::optional<double> before = game.serviceGameTime();
        const std::optional<QImage> frame = grabWindow(window);
        const std::optional<double> after = game.serviceGameTime();
        ASSERT_TRUE(before && frame && after);
        EXPECT_EQ(frame->size(), run.windowSize);
        const std::optional<qint64> clockMs = decodeClockStripe(*frame);
        ASSERT_TRUE(clockMs) << "no clock in the window";
        EXPECT_GE(*clockMs, *before * 1000 - kFrameAgeToleranceMs);
        EXPECT_LE(*clockMs, *after * 1000);
        EXPECT_GT(*clockMs, previousClockMs);
        if (previous) {
            EXPECT_GT(changedShare(*previous, *frame), 0.01) << "the scene stood still";
        }
        previous = frame;
        previousClockMs = *clockMs;
        processEventsFor(200);
    }

    const int endTimeoutMs = run.endsByItself ? static_cast<int>(run.durationSeconds * 1000) + 15000 : 5000;
    EXPECT_EQ(game.end(run.endsByItself ? 0 : SIGTERM, endTimeoutMs), std::optional(0))
        << game.output().toStdString();
    EXPECT_EQ(game.output().contains(QStringLiteral("the game is over")), run.endsByItself);
    EXPECT_TRUE(gameWindows().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Displays, SimulatedGameWindow,
    testing::Values(GameRun{"bareDisplayDefaultSizeEndedBySigterm", false, {}, {1280, 720}, 60.0, false},
                    GameRun{"windowManagerSmallerWindowEndsWithTheScript",
                            true,
                            {QStringLiteral("--window-size"), QStringLiteral("960x540")},
                            {960, 540},
                            3.0,
                            true}),
    [](const testing::TestParamInfo<GameRun>& info) { return std::string(info.param.name); });

TEST(SimulatedLeagueClient, runsUnderTheClientsNameWithNoWindowUntilSigterm) {
    XvfbServer display;
    if (!display.start()) GTEST_SKIP() << display.failure().toStdString();
    GameProcess client;
    ASSERT_TRUE(
        client.start({QStringLiteral("--client")}, QStringLiteral("the League client runs until SIGTERM")));
    EXPECT_EQ(client.processName(), QStringLiteral("LeagueClient.exe"));
    processEventsFor(1000);
    EXPECT_TRUE(gameWindows().empty());
    EXPECT_EQ(client.end(SIGTERM, 5000), std::optional(0));
}

TEST(SimulatedGameSound, aToneOf100MsBeginsEveryGameSecond) {
    PulseAudioServer sound;
    if (!sound.start()) GTEST_SKIP() << sound.failure().toStdString();
    GameProcess game;
    ASSERT_TRUE(game.startGame(0.0, 60.0, {QStringLiteral("--no-window")}));
    ASSERT_TRUE(waitUntil([&] { return game.output().contains(QStringLiteral("880 Hz tone plays")); }, 5000))
        << game.output().toStdString();
    // A null sink takes a new stream's sound only from the end of its current block (up to 2 s), so the
    // first tones play late once; in a real run the loading screen covers this.
    processEventsFor(2500);
    constexpr int kRate = 48000;
    constexpr int kLoud = 4000;
    QProcess recorder;
    recorder.start(QStringLiteral("parec"), {QStringLiteral("--device=kestrum_null.monitor"),
                                             QStringLiteral("--raw"), QStringLiteral("--format=s16le"),
                                             QStringLiteral("--rate=48000"), QStringLiteral("--channels=1")});
    if (!recorder.waitForStarted(5000)) GTEST_SKIP() << "parec is not installed";
    QByteArray pcm;
    waitUntil([&] { return (pcm += recorder.readAllStandardOutput()).size() >= kRate * 2 * 5.2; }, 10000);
    recorder.kill();
    recorder.waitForFinished(3000);
    const auto* samples = reinterpret_cast<const std::int16_t*>(pcm.constData());
    // A tone is a run of loud samples with no gap of 50 ms; its onset comes after such a silence.
    std::vector<qint64> onsets;
    std::vector<qint64> lengths;
    qint64 lastLoud = 0;  // a tone already sounding when the recording begins has no onset in it
    for (qint64 index = 0; index < pcm.size() / 2; ++index) {
        if (std::abs(samples[index]) < kLoud) continue;
        if (index - lastLoud > kRate / 20) {
            onsets.push_back(index);
            lengths.push_back(0);
        }
        if (!onsets.empty()) lengths.back() = index - onsets.back();
        lastLoud = index;
    }
    // Medians: a busy machine may starve the sound server once in a while and cut one tone. The player
    // places tones to within the jitter of the server's latency reports, a few milliseconds.
    ASSERT_GE(onsets.size(), 4u);
    std::vector<double> spacingsMs;
    std::vector<double> lengthsMs;
    for (size_t index = 1; index < onsets.size(); ++index) {
        spacingsMs.push_back((onsets[index] - onsets[index - 1]) * 1000.0 / kRate);
        lengthsMs.push_back(lengths[index - 1] * 1000.0 / kRate);  // the last one may be cut by the end
    }
    EXPECT_NEAR(median(spacingsMs), 1000.0, 10.0);
    EXPECT_NEAR(median(lengthsMs), 100.0, 5.0);
}

}  // namespace
}  // namespace kestrum::test
