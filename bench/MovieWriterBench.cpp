// The movie writer against the ffmpeg program, side by side on the same synthetic BGRA frames with the
// same encoder, preset, bit rate, rate-control buffer and key-frame interval. Prints, per scenario, the
// CPU seconds spent per encoded second (getrusage of this process for the writer, of the child for
// ffmpeg) and the real-time factor (encoded seconds per wall second). KESTRUM_BENCH_SECONDS sets the
// clip length (10 by default).
#include "SyntheticFrames.h"
#include "media/MovieOutputSettings.h"
#include "media/ffmpeg/FfmpegMovieWriterFactory.h"
#include "media/ffmpeg/VideoEncoderSelection.h"

#include <QDir>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>

namespace {

using namespace kestrum;

struct Scenario {
    const char* name;
    OutputResolution resolution;
    OutputFrameRate frameRate;
    int width;
    int height;
};

struct Measurement {
    double cpuSeconds = 0;
    double wallSeconds = 0;
    bool ok = false;
};

double cpuSecondsOf(int who) {
    rusage usage{};
    getrusage(who, &usage);
    const auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double wallNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

Measurement runWriter(const Scenario& scenario, const std::vector<std::shared_ptr<const PixelBuffer>>& frames,
                      int frameCount, const QString& path) {
    auto created = ffmpeg::FfmpegMovieWriterFactory().createWriter(path, MovieFileType::quickTimeMovie);
    if (!created.ok()) return {};
    std::unique_ptr<MovieWriter> writer = std::move(created).value();
    auto input = writer->addInput(
        videoOutputSettings(scenario.resolution, scenario.frameRate, scenario.width, scenario.height));
    if (!input || !writer->startWriting()) return {};
    const double cpuBefore = cpuSecondsOf(RUSAGE_SELF);
    const double wallBefore = wallNow();
    writer->startSession(0);
    const HostTimeNs frameNs = 1'000'000'000 / static_cast<int>(scenario.frameRate);
    for (int index = 0; index < frameCount; ++index) {
        while (!input->isReadyForMoreMediaData()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        input->append(frames[static_cast<std::size_t>(index) % frames.size()], index * frameNs);
    }
    writer->finishWriting().waitForFinished();
    return {cpuSecondsOf(RUSAGE_SELF) - cpuBefore, wallNow() - wallBefore,
            writer->status() == MovieWriterStatus::completed};
}

std::vector<std::string> ffmpegArguments(const Scenario& scenario, const std::string& output) {
    const VideoOutputSettings settings =
        videoOutputSettings(scenario.resolution, scenario.frameRate, scenario.width, scenario.height);
    std::vector<std::string> arguments{
        "ffmpeg",   "-v",
        "error",    "-y",
        "-f",       "rawvideo",
        "-pix_fmt", "bgra",
        "-s",       std::to_string(scenario.width) + "x" + std::to_string(scenario.height),
        "-r",       std::to_string(settings.expectedFrameRate),
        "-i",       "-",
        "-c:v",     ffmpeg::softwareEncoderName(settings.codec)};
    for (const auto& option : ffmpeg::softwareEncoderOptions(settings)) {
        arguments.push_back("-" + option.key);
        arguments.push_back(option.value);
    }
    const std::vector<std::string> rate{"-pix_fmt", "yuv420p",
                                        "-b:v",     std::to_string(settings.averageBitRate),
                                        "-maxrate", std::to_string(ffmpeg::maximumBitRate(settings)),
                                        "-bufsize", std::to_string(ffmpeg::rateControlBufferBits(settings)),
                                        "-g",       std::to_string(settings.maxKeyFrameInterval),
                                        "-bf",      "0",
                                        "-threads", "0",
                                        output};
    arguments.insert(arguments.end(), rate.begin(), rate.end());
    return arguments;
}

bool writeAll(int fd, const std::uint8_t* data, std::size_t size) {
    while (size > 0) {
        const ssize_t written = write(fd, data, size);
        if (written <= 0) return false;
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

Measurement runFfmpeg(const Scenario& scenario, const std::vector<std::shared_ptr<const PixelBuffer>>& frames,
                      int frameCount, const QString& path) {
    const std::vector<std::string> arguments =
        ffmpegArguments(scenario, QFile::encodeName(path).toStdString());
    std::vector<char*> argv;
    for (const auto& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    int pipeFds[2];
    if (pipe(pipeFds) != 0) return {};
    const double cpuBefore = cpuSecondsOf(RUSAGE_CHILDREN);
    const double wallBefore = wallNow();
    const pid_t child = fork();
    if (child == 0) {
        dup2(pipeFds[0], STDIN_FILENO);
        close(pipeFds[0]);
        close(pipeFds[1]);
        execvp("ffmpeg", argv.data());
        _exit(127);
    }
    close(pipeFds[0]);
    bool fed = child > 0;
    for (int index = 0; fed && index < frameCount; ++index) {
        const PixelBuffer& frame = *frames[static_cast<std::size_t>(index) % frames.size()];
        fed = writeAll(pipeFds[1], frame.data(), frame.byteCount());
    }
    close(pipeFds[1]);
    int status = 0;
    if (child > 0) waitpid(child, &status, 0);
    return {cpuSecondsOf(RUSAGE_CHILDREN) - cpuBefore, wallNow() - wallBefore,
            fed && WIFEXITED(status) && WEXITSTATUS(status) == 0};
}

void figure(const std::string& name, double value, const char* unit) {
    std::printf("figure %s %.3f %s\n", name.c_str(), value, unit);
}

}  // namespace

int main() {
    std::signal(SIGPIPE, SIG_IGN);
    const char* secondsText = std::getenv("KESTRUM_BENCH_SECONDS");
    const double clipSeconds = secondsText ? std::max(1.0, std::atof(secondsText)) : 10.0;
    QTemporaryDir folder;
    const std::vector<Scenario> scenarios{
        {"720p30", OutputResolution::p720, OutputFrameRate::fps30, 1280, 720},
        {"1080p60", OutputResolution::p1080, OutputFrameRate::fps60, 1920, 1080},
    };
    int failures = 0;
    for (const Scenario& scenario : scenarios) {
        const int frameCount = static_cast<int>(clipSeconds * static_cast<int>(scenario.frameRate));
        const auto frames = bench::makeFrames(scenario.width, scenario.height, 30);
        const std::string name = scenario.name;
        const Measurement ours =
            runWriter(scenario, frames, frameCount, folder.filePath(QStringLiteral("ours.mov")));
        const Measurement theirs =
            runFfmpeg(scenario, frames, frameCount, folder.filePath(QStringLiteral("ffmpeg.mov")));
        const VideoCodec codec =
            videoOutputSettings(scenario.resolution, scenario.frameRate, scenario.width, scenario.height)
                .codec;
        std::printf("figure encoder_%s %s name\n", scenario.name,
                    ffmpeg::chosenVideoEncoder(codec).value_or("none").c_str());
        if (!ours.ok || !theirs.ok) {
            std::fprintf(stderr, "%s: writer %s, ffmpeg %s\n", scenario.name, ours.ok ? "ok" : "failed",
                         theirs.ok ? "ok" : "failed");
            ++failures;
            continue;
        }
        figure("writer_cpu_per_encoded_second_" + name, ours.cpuSeconds / clipSeconds, "cpu-s/s");
        figure("ffmpeg_cpu_per_encoded_second_" + name, theirs.cpuSeconds / clipSeconds, "cpu-s/s");
        figure("writer_cpu_ratio_to_ffmpeg_" + name, ours.cpuSeconds / theirs.cpuSeconds, "x");
        figure("writer_realtime_factor_" + name, clipSeconds / ours.wallSeconds, "x");
        figure("ffmpeg_realtime_factor_" + name, clipSeconds / theirs.wallSeconds, "x");
    }
    return failures == 0 ? 0 : 1;
}
