// League Share as a sharing program sees it: the built kestrum and the game simulator on a private Xvfb
// with openbox (the share shows the picture only while the game's window is the active one); the share
// window is moved beside the game's.
// One `ffmpeg -f x11grab` stream over both windows gives, frame by frame, the game's clock stripe in the
// game's window and in the share window: their difference is the share's latency, at 30 and at 60 fps.
// In the 30 fps run, kestrum's CPU while it records the game at 720p30 is measured first, then with the
// share at 1080p30 added: the share's part as a ratio of the recording's.
#include "BenchProcesses.h"
#include "ClockStripe.h"
#include "core/settings/SettingsKeys.h"
#include "core/settings/UserDefaults.h"
#include "support/DisplayServers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <unistd.h>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

namespace {

using namespace kestrum;
using bench::processCpuSeconds;
using bench::waitFor;

const QPoint kSharePlace(1320, 0);
constexpr int kCpuWindowSeconds = 12;
constexpr int kGrabSeconds = 6;
constexpr int kGrabRate = 60;

QString toolOutput(const QString& program, const QStringList& arguments) {
    QProcess tool;
    tool.start(program, arguments);
    tool.waitForFinished(10000);
    return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
}

// A private profile whose settings record at 720p30 without sound and share at 1080p and `frameRate`
// without sound.
class Profile {
  public:
    explicit Profile(int shareFrameRate) {
        for (const char* name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"}) {
            const QString folder = directory_.path() + QLatin1Char('/') + QLatin1String(name);
            QDir().mkpath(folder);
            environment_.insert(QLatin1String(name), folder);
        }
        environment_.remove(QStringLiteral("QT_QPA_PLATFORM"));
        UserDefaults defaults(directory_.path() + QStringLiteral("/XDG_CONFIG_HOME/Kestrum/defaults.json"));
        defaults.setString(QStringLiteral("p720"), SettingsKeys::recordingVideoResolution);
        defaults.setInteger(30, SettingsKeys::recordingVideoFrameRate);
        defaults.setBool(false, SettingsKeys::recordSystemAudio);
        defaults.setBool(false, SettingsKeys::recordMicrophone);
        defaults.setString(QStringLiteral("p1080"), SettingsKeys::leagueShareResolution);
        defaults.setInteger(shareFrameRate, SettingsKeys::leagueShareFrameRate);
        defaults.setBool(false, SettingsKeys::leagueShareIncludesAudio);
    }

    std::unique_ptr<QProcess> startKestrum(const QStringList& arguments) const {
        auto kestrum = std::make_unique<QProcess>();
        kestrum->setProcessEnvironment(environment_);
        kestrum->setProcessChannelMode(QProcess::MergedChannels);
        kestrum->start(QStringLiteral(KESTRUM_BINARY_PATH), arguments);
        return kestrum;
    }

  private:
    QTemporaryDir directory_;
    QProcessEnvironment environment_ = QProcessEnvironment::systemEnvironment();
};

std::unique_ptr<QProcess> startGame() {
    auto game = std::make_unique<QProcess>();
    game->setProcessChannelMode(QProcess::MergedChannels);
    game->start(QStringLiteral(KESTRUM_SIMULATOR_LAUNCHER),
                {QStringLiteral("--script"),
                 QStringLiteral(KESTRUM_SOURCE_DIR "/tests/e2e/scripts/sixty-seconds.json"),
                 QStringLiteral("--no-sound")});
    QByteArray output;
    waitFor(
        [&] {
            return (output += game->readAll()).contains("shown at") || game->state() == QProcess::NotRunning;
        },
        30000);
    return game;
}

// A window's place on the screen, from xwininfo; empty when it cannot be read.
QRect screenRegion(const QString& windowID) {
    const QString info = toolOutput(QStringLiteral("xwininfo"), {QStringLiteral("-id"), windowID});
    const auto field = [&](const QString& name) {
        const qsizetype at = info.indexOf(name + QLatin1Char(':'));
        return at < 0 ? -1
                      : info.mid(at + name.size() + 1).section(QLatin1Char('\n'), 0, 0).trimmed().toInt();
    };
    return {field(QStringLiteral("Absolute upper-left X")), field(QStringLiteral("Absolute upper-left Y")),
            field(QStringLiteral("Width")), field(QStringLiteral("Height"))};
}

QRect gameRegion() {
    const QString id =
        toolOutput(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                               QStringLiteral("--name"), QStringLiteral("League of Legends")})
            .section(QLatin1Char('\n'), 0, 0);
    // The share shows the picture, not "Gameplay paused", while the game's window is the active one.
    QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("windowactivate"), id});
    return screenRegion(id);
}

// The share window, once it shows, moved beside the game's window; its place, or an empty one.
QRect placeShareWindow() {
    QString id;
    waitFor(
        [&] {
            id = toolOutput(QStringLiteral("xdotool"),
                            {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                             QStringLiteral("--classname"), QStringLiteral("league-share")});
            return !id.isEmpty();
        },
        20000);
    if (id.isEmpty()) return {};
    QProcess::execute(QStringLiteral("xdotool"),
                      {QStringLiteral("windowmove"), id, QString::number(kSharePlace.x()),
                       QString::number(kSharePlace.y())});
    QThread::msleep(500);
    return screenRegion(id);
}

// Game clock in the game's window minus the one in the share window, in milliseconds, for every grabbed
// frame where both stripes read.
std::vector<double> latenciesMs(const QRect& gameRegion, const QRect& shareRegion) {
    if (gameRegion.isEmpty() || shareRegion.isEmpty()) return {};
    const QRect both = gameRegion.united(shareRegion);
    QProcess ffmpeg;
    ffmpeg.start(
        QStringLiteral("ffmpeg"),
        {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-f"), QStringLiteral("x11grab"),
         QStringLiteral("-framerate"), QString::number(kGrabRate), QStringLiteral("-video_size"),
         QStringLiteral("%1x%2").arg(both.width()).arg(both.height()), QStringLiteral("-i"),
         qEnvironmentVariable("DISPLAY") + QStringLiteral("+%1,%2").arg(both.x()).arg(both.y()),
         QStringLiteral("-t"), QString::number(kGrabSeconds), QStringLiteral("-f"),
         QStringLiteral("rawvideo"), QStringLiteral("-pix_fmt"), QStringLiteral("bgra"),
         QStringLiteral("-")});
    ffmpeg.waitForFinished((kGrabSeconds + 30) * 1000);
    const QByteArray bytes = ffmpeg.readAllStandardOutput();
    const qsizetype frameBytes = qsizetype(both.width()) * both.height() * 4;
    std::vector<double> latencies;
    for (qsizetype offset = 0; offset + frameBytes <= bytes.size(); offset += frameBytes) {
        const QImage frame(reinterpret_cast<const uchar*>(bytes.constData() + offset), both.width(),
                           both.height(), both.width() * 4, QImage::Format_RGB32);
        const auto game = decodeClockStripe(frame.copy(gameRegion.translated(-both.topLeft())));
        const auto shared = decodeClockStripe(frame.copy(shareRegion.translated(-both.topLeft())));
        if (game && shared && *game > 0) latencies.push_back(static_cast<double>(*game - *shared));
    }
    std::sort(latencies.begin(), latencies.end());
    return latencies;
}

void printLatency(int frameRate, const std::vector<double>& latencies) {
    if (latencies.empty()) {
        std::fprintf(stderr, "no frame showed both clock stripes at %d fps\n", frameRate);
        return;
    }
    std::printf("figure share_latency_p50_%dfps %.1f ms\n", frameRate, latencies[latencies.size() / 2]);
    std::printf("figure share_latency_p95_%dfps %.1f ms\n", frameRate,
                latencies[std::min(latencies.size() - 1, latencies.size() * 95 / 100)]);
    std::printf("figure share_latency_frames_%dfps %zu frames\n", frameRate, latencies.size());
}

double cpuPerSecond(qint64 pid) {
    const double before = processCpuSeconds(pid);
    QThread::sleep(kCpuWindowSeconds);
    return (processCpuSeconds(pid) - before) / kCpuWindowSeconds;
}

// Recording alone, then recording and the share added by a second launch with --share.
void runAt30() {
    Profile profile(30);
    const auto kestrum = profile.startKestrum({});
    QByteArray output;
    waitFor([&] { return (output += kestrum->readAll()).contains("Kestrum is running"); }, 20000);
    const auto game = startGame();
    waitFor([&] { return (output += kestrum->readAll()).contains("timeline starting"); }, 60000);
    gameRegion();  // the game in front: the recording's real frames, not its privacy screen
    QThread::sleep(2);
    const double recording = cpuPerSecond(kestrum->processId());
    const auto launch = profile.startKestrum({QStringLiteral("--share")});
    launch->waitForFinished(20000);
    const QRect shareRegion = placeShareWindow();
    const QRect gameArea = gameRegion();
    QThread::sleep(2);
    const double both = cpuPerSecond(kestrum->processId());
    std::printf("figure recording_720p30_cpu %.3f cpu-seconds/s\n", recording);
    std::printf("figure recording_and_share_1080p30_cpu %.3f cpu-seconds/s\n", both);
    if (recording > 0)
        std::printf("figure share_1080p30_to_recording_720p30_cpu_ratio %.3f ratio\n",
                    (both - recording) / recording);
    printLatency(30, latenciesMs(gameArea, shareRegion));
    kestrum->terminate();
    kestrum->waitForFinished(30000);
    game->kill();
    game->waitForFinished(10000);
}

void runAt60() {
    Profile profile(60);
    const auto kestrum = profile.startKestrum({QStringLiteral("--share")});
    QByteArray output;
    waitFor([&] { return (output += kestrum->readAll()).contains("Kestrum Share started"); }, 20000);
    const auto game = startGame();
    const QRect shareRegion = placeShareWindow();
    const QRect gameArea = gameRegion();
    QThread::sleep(4);
    printLatency(60, latenciesMs(gameArea, shareRegion));
    kestrum->terminate();
    kestrum->waitForFinished(30000);
    game->kill();
    game->waitForFinished(10000);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    test::XvfbServer display;
    if (!display.start(2400, 1000) || !display.startWindowManager()) {
        std::fprintf(stderr, "no X server: %s\n", qPrintable(display.failure()));
        return 1;
    }
    test::PulseAudioServer sound;
    if (!sound.start())
        std::fprintf(stderr, "no sound server (%s); kestrum runs without one\n", qPrintable(sound.failure()));
    runAt30();
    runAt60();
    return 0;
}
