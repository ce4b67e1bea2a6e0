// League Share's sound route against a private pulseaudio: the "Kestrum Share" null sink carries the
// sound of the one process it routes, and nothing else; the sink comes and goes with the route, never
// twice, and one left by an earlier run is replaced; a dead server is an Error.
#include "PulseTones.h"
#include "platform/linux/pulse/PulseLeagueShareAudioRoute.h"
#include "support/DisplayServers.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoroTask>
#include <QDir>
#include <QLocalServer>
#include <QProcess>

#include <chrono>
#include <functional>

namespace kestrum::test {
namespace {

const QString kShareMonitor = QStringLiteral("kestrum_share.monitor");
const QString kSpeakerMonitor = QStringLiteral("kestrum_null.monitor");
// A process id no process of the test plays sound under.
constexpr std::int32_t kSilentProcess = 999'999;

QString pactl(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral("pactl"), arguments);
    process.waitForFinished(5000);
    return QString::fromUtf8(process.readAllStandardOutput());
}

// The lines of `pactl list short <what>` that mention `word`.
int linesWith(const QString& what, const QString& word) {
    const QStringList lines = pactl({QStringLiteral("list"), QStringLiteral("short"), what}).split('\n');
    return int(
        std::count_if(lines.begin(), lines.end(), [&](const QString& line) { return line.contains(word); }));
}

int shareSinks() {
    return linesWith(QStringLiteral("sinks"), QStringLiteral("kestrum_share"));
}

int shareModules() {
    return linesWith(QStringLiteral("modules"), QStringLiteral("sink_name=kestrum_share"));
}

class PulseLeagueShareAudioRouteTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!server_.start()) GTEST_SKIP() << "no private sound server: " << server_.failure().toStdString();
    }

    Status start(std::int32_t processId) { return QCoro::waitFor(route_.start(processId)); }
    void stop() { QCoro::waitFor(route_.stop()); }

    PulseAudioServer server_;
    PulseLeagueShareAudioRoute route_;
};

TEST_F(PulseLeagueShareAudioRouteTest, TheShareMonitorCarriesTheGameAndNothingElse) {
    // The game's stream appears a while after the route started, so that the route must pick it up; the
    // chat plays from before the start to after the end.
    OtherProcessTone chat;
    OtherProcessTone game;
    ASSERT_TRUE(chat.start(660, 9.0));
    ASSERT_TRUE(game.start(440, 6.0, 1.0));
    ASSERT_TRUE(start(std::int32_t(game.processId())).ok());
    // Past the game's start, the settling of its recording, and a null sink's sleep through the block it
    // was in before anything held its latency down (up to 2 s).
    processEventsFor(3500);
    SourceRecording share;
    SourceRecording speakers;
    ASSERT_TRUE(share.start(kShareMonitor) && speakers.start(kSpeakerMonitor));
    processEventsFor(2000);
    const std::vector<float> shared = share.finish();
    const std::vector<float> heard = speakers.finish();
    ASSERT_GT(shared.size(), std::size_t(kToneRate));
    ASSERT_GT(heard.size(), std::size_t(kToneRate));

    struct Expectation {
        const char* what;
        const std::vector<float>& recording;
        double hz;
        bool present;
    };
    const std::vector<Expectation> expectations = {
        {"the game on the share monitor", shared, 440, true},
        {"the chat on the share monitor", shared, 660, false},
        {"the game still on the speakers", heard, 440, true},
        {"the chat still on the speakers", heard, 660, true},
    };
    for (const Expectation& row : expectations) {
        // A second from the recording's middle; played at 0.3 each.
        const double amplitude = medianAmplitudeOf(row.recording, row.hz, row.recording.size() / 4,
                                                   row.recording.size() / 4 + kToneRate);
        if (row.present) {
            EXPECT_GT(amplitude, 0.2) << row.what;
        } else {
            EXPECT_LT(amplitude, 0.003) << row.what;
        }
    }
    EXPECT_GT(route_.route()->playedBytes(), 0);
    stop();
    EXPECT_TRUE(game.finish() && chat.finish());
}

TEST_F(PulseLeagueShareAudioRouteTest, TheSinkComesAndGoesWithTheRouteAndNeverTwice) {
    struct Step {
        const char* what;
        std::function<void()> act;
        int sinksAfter;
    };
    const auto started = [this] { EXPECT_TRUE(start(kSilentProcess).ok()); };
    const auto stopped = [this] { stop(); };
    const auto leftByACrash = [] {
        pactl({QStringLiteral("load-module"), QStringLiteral("module-null-sink"),
               QStringLiteral("sink_name=kestrum_share")});
    };
    const std::vector<Step> steps = {
        {"stop with no route", stopped, 0},
        {"start", started, 1},
        {"second start", started, 1},
        {"stop", stopped, 0},
        {"second stop", stopped, 0},
        {"a crashed run's sink", leftByACrash, 1},
        {"start over the stale sink", started, 1},
        {"stop after the stale sink", stopped, 0},
    };
    for (const Step& step : steps) {
        step.act();
        EXPECT_EQ(shareSinks(), step.sinksAfter) << step.what;
        EXPECT_EQ(shareModules(), step.sinksAfter) << step.what;
    }
}

TEST_F(PulseLeagueShareAudioRouteTest, TheMonitorIsNamedForPickersAndOurOwnSoundIsRefused) {
    const Status ours = start(std::int32_t(getpid()));
    ASSERT_FALSE(ours.ok());
    EXPECT_EQ(shareSinks(), 0) << "a refused start leaves nothing behind";
    ASSERT_TRUE(start(kSilentProcess).ok());
    EXPECT_TRUE(pactl({QStringLiteral("list"), QStringLiteral("sources")})
                    .contains(QStringLiteral("Description: Monitor of Kestrum Share")));
    stop();
}

TEST_F(PulseLeagueShareAudioRouteTest, AServerThatDiesUnderTheRouteLetsItStopAndStartAnew) {
    ASSERT_TRUE(start(kSilentProcess).ok());
    server_.stop();
    const auto stoppedAt = std::chrono::steady_clock::now();
    stop();
    EXPECT_LT(std::chrono::steady_clock::now() - stoppedAt, PulseMainLoop::kRequestTimeout);
    EXPECT_EQ(route_.route(), nullptr);
    ASSERT_TRUE(server_.start());
    EXPECT_TRUE(start(kSilentProcess).ok());
    EXPECT_EQ(shareSinks(), 1);
}

TEST(PulseLeagueShareAudioRouteUnreachable, StartingIsAnErrorWithinTheTimeoutWhenNoServerAnswers) {
    const QString folder =
        QDir::tempPath() + QStringLiteral("/kestrum-share-silent-") + QString::number(getpid());
    QDir().mkpath(folder);
    // A socket that takes connections (the kernel's backlog does) and never answers: a hung server.
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(folder + QStringLiteral("/native")));
    for (const QString& socket : {QStringLiteral("/missing"), QStringLiteral("/native")}) {
        qputenv("PULSE_SERVER", (QStringLiteral("unix:") + folder + socket).toLocal8Bit());
        PulseLeagueShareAudioRoute route(std::chrono::milliseconds(1000));
        const auto startedAt = std::chrono::steady_clock::now();
        const Status status = QCoro::waitFor(route.start(kSilentProcess));
        EXPECT_LT(std::chrono::steady_clock::now() - startedAt, std::chrono::seconds(3));
        ASSERT_FALSE(status.ok()) << socket.toStdString();
        EXPECT_FALSE(status.error().description.isEmpty());
        EXPECT_EQ(route.route(), nullptr);
    }
    qunsetenv("PULSE_SERVER");
    QDir(folder).removeRecursively();
}

}  // namespace
}  // namespace kestrum::test
