// Kestrum recording the simulator's window against `ffmpeg -f x11grab` recording the same window with
// the same codec, bit rate, key-frame interval and frame rate, side by side in one run: CPU seconds per
// recorded second, frames dropped (expected frames less frames written) and the spread of frame
// intervals. 720p30 HEVC and native 1080p60 H.264, 60 seconds each, under a private Xvfb and PulseAudio.
// Kestrum's figure includes its sound track and its service polling; ffmpeg records the picture only.
#include "core/settings/SettingsKeys.h"
#include "core/settings/UserDefaults.h"
#include "media/MovieOutputSettings.h"
#include "media/ffmpeg/VideoEncoderSelection.h"
#include "support/DisplayServers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <sys/resource.h>
#include <unistd.h>
#include <algorithm>
#include <cstdio>

namespace {

using namespace kestrum;

constexpr int kSeconds = 60;

struct Scenario {
    const char* name;
    int width;
    int height;
    OutputResolution resolution;
    OutputFrameRate frameRate;
    const char* storedResolution;
};

struct Measured {
    double cpuSeconds = 0;
    double recordedSeconds = 0;
    int frames = 0;
    double intervalP50Ms = 0;
    double intervalP99Ms = 0;
};

// The process's user plus system CPU seconds from /proc/<pid>/stat.
double processCpuSeconds(qint64 pid) {
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly)) return 0;
    const QByteArray text = stat.readAll();
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    return (fields.value(11).toDouble() + fields.value(12).toDouble()) /
           static_cast<double>(sysconf(_SC_CLK_TCK));
}

bool waitFor(const std::function<bool()>& condition, int timeoutMs) {
    for (int waited = 0; waited < timeoutMs; waited += 100) {
        QCoreApplication::processEvents();
        if (condition()) return true;
        QThread::msleep(100);
    }
    return condition();
}

// Duration, frame count and interval spread of the first video stream, read back by ffprobe.
void probeInto(const QString& movie, Measured& measured) {
    QProcess ffprobe;
    ffprobe.start(QStringLiteral("ffprobe"),
                  {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-select_streams"),
                   QStringLiteral("v:0"), QStringLiteral("-show_entries"),
                   QStringLiteral("packet=pts_time:format=duration"), QStringLiteral("-of"),
                   QStringLiteral("json"), movie});
    ffprobe.waitForFinished(120000);
    const QJsonObject probe = QJsonDocument::fromJson(ffprobe.readAllStandardOutput()).object();
    measured.recordedSeconds =
        probe[QStringLiteral("format")][QStringLiteral("duration")].toString().toDouble();
    std::vector<double> times;
    for (const QJsonValue packet : probe[QStringLiteral("packets")].toArray()) {
        times.push_back(packet[QStringLiteral("pts_time")].toString().toDouble());
    }
    std::sort(times.begin(), times.end());
    measured.frames = static_cast<int>(times.size());
    std::vector<double> intervals;
    for (std::size_t i = 1; i < times.size(); ++i) intervals.push_back((times[i] - times[i - 1]) * 1000.0);
    std::sort(intervals.begin(), intervals.end());
    if (intervals.empty()) return;
    measured.intervalP50Ms = intervals[intervals.size() / 2];
    measured.intervalP99Ms = intervals[std::min(intervals.size() - 1, intervals.size() * 99 / 100)];
}

QProcess* startGame(const QString& script, const Scenario& scenario) {
    auto* game = new QProcess;
    game->setProcessChannelMode(QProcess::MergedChannels);
    game->start(QStringLiteral(KESTRUM_SIMULATOR_LAUNCHER),
                {QStringLiteral("--script"), script, QStringLiteral("--window-size"),
                 QStringLiteral("%1x%2").arg(scenario.width).arg(scenario.height)});
    waitFor([game] { return game->readAll().contains("shown at") || game->state() == QProcess::NotRunning; },
            30000);
    return game;
}

Measured recordWithKestrum(const Scenario& scenario, const QString& script) {
    QTemporaryDir profile;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"}) {
        const QString folder = profile.path() + QLatin1Char('/') + QLatin1String(name);
        QDir().mkpath(folder);
        environment.insert(QLatin1String(name), folder);
    }
    const QString videos = profile.path() + QStringLiteral("/Videos");
    QFile dirs(profile.path() + QStringLiteral("/XDG_CONFIG_HOME/user-dirs.dirs"));
    if (dirs.open(QIODevice::WriteOnly)) dirs.write("XDG_VIDEOS_DIR=\"" + videos.toUtf8() + "\"\n");
    dirs.close();
    {
        UserDefaults defaults(profile.path() + QStringLiteral("/XDG_CONFIG_HOME/Kestrum/defaults.json"));
        defaults.setString(QLatin1String(scenario.storedResolution), SettingsKeys::recordingVideoResolution);
        defaults.setInteger(static_cast<int>(scenario.frameRate), SettingsKeys::recordingVideoFrameRate);
    }
    QProcess kestrum;
    kestrum.setProcessEnvironment(environment);
    kestrum.setProcessChannelMode(QProcess::MergedChannels);
    kestrum.start(QStringLiteral(KESTRUM_BINARY_PATH), {});
    QByteArray output;
    waitFor([&] { return (output += kestrum.readAll()).contains("Kestrum is running"); }, 20000);
    std::unique_ptr<QProcess> game(startGame(script, scenario));
    Measured measured;
    waitFor([&] { return (output += kestrum.readAll()).contains("timeline starting"); }, 60000);
    const double cpuBefore = processCpuSeconds(kestrum.processId());
    waitFor([&] { return game->state() == QProcess::NotRunning; }, (kSeconds + 60) * 1000);
    QString movie;
    waitFor(
        [&] {
            const QStringList found =
                QDir(videos + QStringLiteral("/Kestrum")).entryList({QStringLiteral("*.json")});
            if (!found.isEmpty())
                movie =
                    videos + QStringLiteral("/Kestrum/") + found.first().chopped(4) + QStringLiteral("mov");
            return !found.isEmpty();
        },
        60000);
    measured.cpuSeconds = processCpuSeconds(kestrum.processId()) - cpuBefore;
    kestrum.terminate();
    kestrum.waitForFinished(30000);
    if (!movie.isEmpty()) probeInto(movie, measured);
    return measured;
}

// With no window manager the game's window stands at the screen's origin, so ffmpeg grabs exactly its
// pixels from the root window.
Measured recordWithX11grab(const Scenario& scenario, const QString& script) {
    QTemporaryDir folder;
    std::unique_ptr<QProcess> game(startGame(script, scenario));
    const VideoOutputSettings settings =
        videoOutputSettings(scenario.resolution, scenario.frameRate, scenario.width, scenario.height);
    QStringList arguments{QStringLiteral("-v"),
                          QStringLiteral("error"),
                          QStringLiteral("-y"),
                          QStringLiteral("-f"),
                          QStringLiteral("x11grab"),
                          QStringLiteral("-video_size"),
                          QStringLiteral("%1x%2").arg(scenario.width).arg(scenario.height),
                          QStringLiteral("-framerate"),
                          QString::number(settings.expectedFrameRate),
                          QStringLiteral("-t"),
                          QString::number(kSeconds),
                          QStringLiteral("-i"),
                          qEnvironmentVariable("DISPLAY") + QStringLiteral("+0,0"),
                          QStringLiteral("-c:v"),
                          QString::fromStdString(ffmpeg::softwareEncoderName(settings.codec))};
    for (const auto& option : ffmpeg::softwareEncoderOptions(settings)) {
        arguments << QStringLiteral("-") + QString::fromStdString(option.key)
                  << QString::fromStdString(option.value);
    }
    const QString movie = folder.path() + QStringLiteral("/x11grab.mov");
    arguments << QStringLiteral("-pix_fmt") << QStringLiteral("yuv420p") << QStringLiteral("-b:v")
              << QString::number(settings.averageBitRate) << QStringLiteral("-maxrate")
              << QString::number(ffmpeg::maximumBitRate(settings)) << QStringLiteral("-bufsize")
              << QString::number(ffmpeg::rateControlBufferBits(settings)) << QStringLiteral("-g")
              << QString::number(settings.maxKeyFrameInterval) << QStringLiteral("-bf") << QStringLiteral("0")
              << movie;
    rusage before{};
    getrusage(RUSAGE_CHILDREN, &before);
    QProcess ffmpegProcess;
    ffmpegProcess.start(QStringLiteral("ffmpeg"), arguments);
    ffmpegProcess.waitForFinished((kSeconds + 60) * 1000);
    if (ffmpegProcess.exitCode() != 0) {
        std::fprintf(stderr, "ffmpeg x11grab failed: %s\n", ffmpegProcess.readAllStandardError().constData());
    }
    rusage after{};
    getrusage(RUSAGE_CHILDREN, &after);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + time.tv_usec / 1e6;
    };
    Measured measured;
    // The game simulator is still running, so the children's usage holds ffmpeg alone.
    measured.cpuSeconds = seconds(after.ru_utime) - seconds(before.ru_utime) + seconds(after.ru_stime) -
                          seconds(before.ru_stime);
    game->terminate();
    game->waitForFinished(10000);
    probeInto(movie, measured);
    return measured;
}

void print(const char* recorder, const Scenario& scenario, const Measured& measured) {
    const int fps = static_cast<int>(scenario.frameRate);
    const double perSecond =
        measured.recordedSeconds > 0 ? measured.cpuSeconds / measured.recordedSeconds : 0;
    const int dropped = std::max(0, static_cast<int>(measured.recordedSeconds * fps + 0.5) - measured.frames);
    std::printf("figure %s_%s_cpu_seconds_per_recorded_second %.3f s\n", recorder, scenario.name, perSecond);
    std::printf("figure %s_%s_recorded_seconds %.2f s\n", recorder, scenario.name, measured.recordedSeconds);
    std::printf("figure %s_%s_frames_dropped %d frames\n", recorder, scenario.name, dropped);
    std::printf("figure %s_%s_frame_interval_p50 %.2f ms\n", recorder, scenario.name, measured.intervalP50Ms);
    std::printf("figure %s_%s_frame_interval_p99 %.2f ms\n", recorder, scenario.name, measured.intervalP99Ms);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    test::XvfbServer display;
    test::PulseAudioServer sound;
    if (!display.start(2560, 1440) || !sound.start()) {
        std::fprintf(stderr, "kestrum-bench-recording-e2e: %s%s\n", qPrintable(display.failure()),
                     qPrintable(sound.failure()));
        return 1;
    }
    const QString script = QStringLiteral(KESTRUM_SOURCE_DIR "/tests/e2e/scripts/sixty-seconds.json");
    const Scenario scenarios[] = {
        {"720p30_hevc", 1280, 720, OutputResolution::p720, OutputFrameRate::fps30, "p720"},
        {"1080p60_h264", 1920, 1080, OutputResolution::native, OutputFrameRate::fps60, "native"},
    };
    for (const Scenario& scenario : scenarios) {
        const Measured kestrum = recordWithKestrum(scenario, script);
        print("kestrum", scenario, kestrum);
        const Measured grab = recordWithX11grab(scenario, script);
        print("x11grab", scenario, grab);
        if (grab.cpuSeconds > 0 && grab.recordedSeconds > 0 && kestrum.recordedSeconds > 0) {
            std::printf(
                "figure cpu_ratio_kestrum_to_x11grab_%s %.3f x\n", scenario.name,
                (kestrum.cpuSeconds / kestrum.recordedSeconds) / (grab.cpuSeconds / grab.recordedSeconds));
        }
    }
    return 0;
}
