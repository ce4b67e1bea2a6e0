// Kestrum recording the simulator's window against `ffmpeg -f x11grab` recording the same window with
// the same codec, bit rate, key-frame interval and frame rate, side by side in one run: CPU seconds per
// recorded second, frames dropped (gaps in the video track; in all, and in the first second while the
// encoder starts) and the spread of frame intervals, with Kestrum's own account of each track from its
// capture log. 720p30 HEVC and native 1080p60 H.264 picture only, then 720p30 with the sound track on
// both sides, 60 seconds each, under a private Xvfb and PulseAudio. Kestrum's figure also holds its
// service polling.
#include "BenchProcesses.h"
#include "core/settings/SettingsKeys.h"
#include "core/settings/UserDefaults.h"
#include "media/AudioOutputSettings.h"
#include "media/MovieOutputSettings.h"
#include "media/ffmpeg/VideoEncoderSelection.h"
#include "support/DisplayServers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QThread>

#include <sys/resource.h>
#include <unistd.h>
#include <algorithm>
#include <cstdio>

namespace {

using namespace kestrum;
using bench::processCpuSeconds;
using bench::waitFor;

constexpr int kSeconds = 60;

struct Scenario {
    const char* name;
    int width;
    int height;
    OutputResolution resolution;
    OutputFrameRate frameRate;
    const char* storedResolution;
    // Both recorders also take the default sink's sound into a 192 kb/s AAC track.
    bool sound;
};

struct Measured {
    double cpuSeconds = 0;
    double recordedSeconds = 0;
    int frames = 0;
    // Frames missing from the video track: an interval of n frame periods (rounded) hides n - 1 frames.
    // Counted from the track itself, because the movie's duration also spans sound recorded after the
    // game's window closed.
    int framesDropped = 0;
    // Of those, the ones missing from the first second, while the encoder starts.
    int framesDroppedFirstSecond = 0;
    double intervalP50Ms = 0;
    double intervalP99Ms = 0;
    // The three longest intervals, as (start in seconds, length in milliseconds), to place the drops.
    std::vector<std::pair<double, double>> longestIntervals;
    // Kestrum's capture log lines of the stop, one per track: where each track's samples went.
    QStringList trackLines;
};

// The lines of the capture log under `stateFolder` that tell, at the stop, what became of each track's
// samples.
QStringList trackLinesOfCaptureLog(const QString& stateFolder) {
    QFile log(stateFolder + QStringLiteral("/Kestrum/Logs/kestrum_system.log"));
    QStringList lines;
    if (!log.open(QIODevice::ReadOnly)) return lines;
    for (const QString& line : QString::fromUtf8(log.readAll()).split(QLatin1Char('\n'))) {
        const qsizetype message = line.indexOf(QStringLiteral("[Capture] "));
        if (message < 0) continue;
        const QString text = line.mid(message + 10);
        if (text.startsWith(QStringLiteral("video: ")) || text.startsWith(QStringLiteral("system audio: ")))
            lines << text;
    }
    return lines;
}

void measureIntervals(const std::vector<double>& times, int framesPerSecond, Measured& measured) {
    std::vector<std::pair<double, double>> intervals;
    const double periodMs = 1000.0 / framesPerSecond;
    for (std::size_t i = 1; i < times.size(); ++i) {
        const double intervalMs = (times[i] - times[i - 1]) * 1000.0;
        intervals.emplace_back(times[i - 1], intervalMs);
        const int dropped = std::max(0, static_cast<int>(intervalMs / periodMs + 0.5) - 1);
        measured.framesDropped += dropped;
        if (times[i - 1] - times.front() < 1.0) measured.framesDroppedFirstSecond += dropped;
    }
    std::sort(intervals.begin(), intervals.end(),
              [](const auto& a, const auto& b) { return a.second < b.second; });
    if (intervals.empty()) return;
    measured.intervalP50Ms = intervals[intervals.size() / 2].second;
    measured.intervalP99Ms = intervals[std::min(intervals.size() - 1, intervals.size() * 99 / 100)].second;
    for (std::size_t i = 0; i < std::min<std::size_t>(3, intervals.size()); ++i) {
        measured.longestIntervals.push_back(intervals[intervals.size() - 1 - i]);
    }
}

// Duration, frame count and interval spread of the first video stream, read back by ffprobe.
void probeInto(const QString& movie, int framesPerSecond, Measured& measured) {
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
    measureIntervals(times, framesPerSecond, measured);
    // KESTRUM_BENCH_KEEP names a folder that keeps the movies for a closer look.
    const QString keep = qEnvironmentVariable("KESTRUM_BENCH_KEEP");
    if (!keep.isEmpty()) {
        QDir().mkpath(keep);
        QFile::copy(movie, keep + QLatin1Char('/') + QFileInfo(movie).fileName());
    }
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
        defaults.setBool(scenario.sound, SettingsKeys::recordSystemAudio);
        defaults.setBool(false, SettingsKeys::recordMicrophone);
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
    output += kestrum.readAll();
    const QString keep = qEnvironmentVariable("KESTRUM_BENCH_KEEP");
    QFile log(keep + QLatin1Char('/') + QLatin1String(scenario.name) + QStringLiteral("-kestrum.log"));
    if (!keep.isEmpty() && QDir().mkpath(keep) && log.open(QIODevice::WriteOnly)) log.write(output);
    if (!movie.isEmpty()) probeInto(movie, static_cast<int>(scenario.frameRate), measured);
    measured.trackLines = trackLinesOfCaptureLog(profile.path() + QStringLiteral("/XDG_STATE_HOME"));
    return measured;
}

// With no window manager the game's window stands at the screen's origin, so ffmpeg grabs exactly its
// pixels from the root window.
Measured recordWithX11grab(const Scenario& scenario, const QString& script) {
    QTemporaryDir folder;
    std::unique_ptr<QProcess> game(startGame(script, scenario));
    const VideoOutputSettings settings =
        videoOutputSettings(scenario.resolution, scenario.frameRate, scenario.width, scenario.height);
    const AudioOutputSettings sound;
    QStringList arguments{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y")};
    if (scenario.sound) {
        arguments << QStringLiteral("-f") << QStringLiteral("pulse") << QStringLiteral("-sample_rate")
                  << QString::number(sound.sampleRate) << QStringLiteral("-channels")
                  << QString::number(sound.channelCount) << QStringLiteral("-i")
                  << QStringLiteral("kestrum_null.monitor");
    }
    arguments << QStringLiteral("-f") << QStringLiteral("x11grab") << QStringLiteral("-video_size")
              << QStringLiteral("%1x%2").arg(scenario.width).arg(scenario.height)
              << QStringLiteral("-framerate") << QString::number(settings.expectedFrameRate)
              << QStringLiteral("-i") << qEnvironmentVariable("DISPLAY") + QStringLiteral("+0,0")
              << QStringLiteral("-t") << QString::number(kSeconds) << QStringLiteral("-c:v")
              << QString::fromStdString(ffmpeg::softwareEncoderName(settings.codec));
    for (const auto& option : ffmpeg::softwareEncoderOptions(settings)) {
        arguments << QStringLiteral("-") + QString::fromStdString(option.key)
                  << QString::fromStdString(option.value);
    }
    const QString movie = folder.path() + QStringLiteral("/x11grab.mov");
    arguments << QStringLiteral("-pix_fmt") << QStringLiteral("yuv420p") << QStringLiteral("-b:v")
              << QString::number(settings.averageBitRate) << QStringLiteral("-maxrate")
              << QString::number(ffmpeg::maximumBitRate(settings)) << QStringLiteral("-bufsize")
              << QString::number(ffmpeg::rateControlBufferBits(settings)) << QStringLiteral("-g")
              << QString::number(settings.maxKeyFrameInterval) << QStringLiteral("-bf")
              << QStringLiteral("0");
    if (scenario.sound) {
        arguments << QStringLiteral("-c:a") << QStringLiteral("aac") << QStringLiteral("-b:a")
                  << QString::number(sound.bitRate);
    }
    arguments << movie;
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
    probeInto(movie, static_cast<int>(scenario.frameRate), measured);
    return measured;
}

void print(const char* recorder, const Scenario& scenario, const Measured& measured) {
    const double perSecond =
        measured.recordedSeconds > 0 ? measured.cpuSeconds / measured.recordedSeconds : 0;
    std::printf("figure %s_%s_cpu_seconds_per_recorded_second %.3f s\n", recorder, scenario.name, perSecond);
    std::printf("figure %s_%s_recorded_seconds %.2f s\n", recorder, scenario.name, measured.recordedSeconds);
    std::printf("figure %s_%s_frames_written %d frames\n", recorder, scenario.name, measured.frames);
    std::printf("figure %s_%s_frames_dropped %d frames\n", recorder, scenario.name, measured.framesDropped);
    std::printf("figure %s_%s_frames_dropped_first_second %d frames\n", recorder, scenario.name,
                measured.framesDroppedFirstSecond);
    std::printf("figure %s_%s_frame_interval_p50 %.2f ms\n", recorder, scenario.name, measured.intervalP50Ms);
    std::printf("figure %s_%s_frame_interval_p99 %.2f ms\n", recorder, scenario.name, measured.intervalP99Ms);
    for (const auto& [startSeconds, lengthMs] : measured.longestIntervals) {
        std::printf("note %s_%s long interval at %.3f s: %.2f ms\n", recorder, scenario.name, startSeconds,
                    lengthMs);
    }
    for (const QString& line : measured.trackLines) {
        std::printf("note %s_%s %s\n", recorder, scenario.name, qPrintable(line));
    }
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
        {"720p30_hevc", 1280, 720, OutputResolution::p720, OutputFrameRate::fps30, "p720", false},
        {"1080p60_h264", 1920, 1080, OutputResolution::native, OutputFrameRate::fps60, "native", false},
        {"720p30_hevc_sound", 1280, 720, OutputResolution::p720, OutputFrameRate::fps30, "p720", true},
    };
    // KESTRUM_BENCH_ONLY names the one scenario to run, when looking into one. KESTRUM_BENCH_RUNS repeats
    // each pair of recordings: the encoders' cost varies by a few percent from run to run, so a ratio
    // near 1 wants the median of several.
    const QString only = qEnvironmentVariable("KESTRUM_BENCH_ONLY");
    const int runs = std::max(1, qEnvironmentVariableIntValue("KESTRUM_BENCH_RUNS"));
    for (const Scenario& scenario : scenarios) {
        if (!only.isEmpty() && only != QLatin1String(scenario.name)) continue;
        std::vector<double> ratios;
        for (int run = 0; run < runs; ++run) {
            const Measured kestrum = recordWithKestrum(scenario, script);
            print("kestrum", scenario, kestrum);
            const Measured grab = recordWithX11grab(scenario, script);
            print("x11grab", scenario, grab);
            if (grab.cpuSeconds <= 0 || grab.recordedSeconds <= 0 || kestrum.recordedSeconds <= 0) continue;
            ratios.push_back((kestrum.cpuSeconds / kestrum.recordedSeconds) /
                             (grab.cpuSeconds / grab.recordedSeconds));
            std::printf("figure cpu_ratio_kestrum_to_x11grab_%s %.3f x\n", scenario.name, ratios.back());
        }
        if (ratios.size() < 2) continue;
        std::sort(ratios.begin(), ratios.end());
        std::printf("figure cpu_ratio_kestrum_to_x11grab_%s_median_of_%zu %.3f x\n", scenario.name,
                    ratios.size(), ratios[ratios.size() / 2]);
        std::fflush(stdout);
    }
    return 0;
}
