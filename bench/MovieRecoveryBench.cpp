// What crash safety costs and the two ways of keeping a movie that a crash cut off, measured on one
// 720p30 clip, KESTRUM_BENCH_SECONDS long (20 by default):
// - the cost: the clip written with and without the journal (and its syncs), alternately,
//   KESTRUM_BENCH_RUNS times (3 by default); the process's CPU time over each write gives the ratio
//   with/without (median of the pairs), and the finish (the stop) is timed alone. Whether the finish
//   grows with the length is measured on a light 640x360 clip at 60 frames a second (the packet rate
//   of 1080p60, without its encoding cost), at one and at four times the clip's frame count; the growth
//   per minute is extrapolated to a 60-minute 1080p60 recording;
// - the journal's way: the movie cut just before its index, as a kill leaves it, rebuilt in place from
//   its journal (milliseconds, and per gigabyte of movie);
// - the fragmented way: the same media as a fragmented QuickTime movie (made with the ffmpeg program),
//   remuxed into a regular movie by the ffmpeg program as a stop would have to, per gigabyte, and
//   extrapolated to a 60-minute 1080p60 movie at the writer's bit rate for it.
#include "BenchTiming.h"
#include "SyntheticFrames.h"
#include "media/MovieOutputSettings.h"
#include "media/ffmpeg/FfmpegMovieRecovery.h"
#include "media/ffmpeg/FfmpegMovieWriterFactory.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <thread>

namespace {

using namespace kestrum;
using Seconds = std::chrono::duration<double>;

constexpr double kBytesPerGigabyte = 1e9;

double secondsSince(std::chrono::steady_clock::time_point start) {
    return Seconds(std::chrono::steady_clock::now() - start).count();
}

void figure(const char* name, double value, const char* unit) {
    std::printf("figure %s %.3f %s\n", name, value, unit);
}

double processCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// What a clip is made of: its frames, cycled, their size and rate.
struct ClipShape {
    int width = 0;
    int height = 0;
    OutputFrameRate frameRate = OutputFrameRate::fps30;
    std::vector<std::shared_ptr<const PixelBuffer>> frames;
};

ClipShape clipShape(int width, int height, OutputFrameRate frameRate) {
    return ClipShape{width, height, frameRate, bench::makeFrames(width, height, 30)};
}

struct ClipCost {
    double finishSeconds = 0;
    double cpuSeconds = 0;  // of the whole process, from the writer's creation to its end
};

// Writes a clip of `frameCount` frames; absent on a failure.
std::optional<ClipCost> writeClip(const QString& path, const ClipShape& shape, int frameCount,
                                  ffmpeg::CrashSafety crashSafety) {
    const double cpuAtStart = processCpuSeconds();
    auto created =
        ffmpeg::FfmpegMovieWriterFactory(crashSafety).createWriter(path, MovieFileType::quickTimeMovie);
    if (!created.ok()) return std::nullopt;
    std::unique_ptr<MovieWriter> writer = std::move(created).value();
    auto input = writer->addInput(
        videoOutputSettings(OutputResolution::native, shape.frameRate, shape.width, shape.height));
    if (!input || !writer->startWriting()) return std::nullopt;
    writer->startSession(0);
    const HostTimeNs frameNs = 1'000'000'000 / static_cast<int>(shape.frameRate);
    for (int index = 0; index < frameCount; ++index) {
        while (!input->isReadyForMoreMediaData()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        input->append(shape.frames[static_cast<std::size_t>(index) % shape.frames.size()], index * frameNs);
    }
    const auto finishing = std::chrono::steady_clock::now();
    writer->finishWriting().waitForFinished();
    if (writer->status() != MovieWriterStatus::completed) return std::nullopt;
    ClipCost cost;
    cost.finishSeconds = secondsSince(finishing);
    writer.reset();
    cost.cpuSeconds = processCpuSeconds() - cpuAtStart;
    return cost;
}

// The finishes (milliseconds) and CPU ratios of clips written with and without the journal, alternately.
struct CostSamples {
    std::vector<double> finishMsWith;
    std::vector<double> finishMsWithout;
    std::vector<double> cpuRatios;
};

std::optional<CostSamples> measureCosts(const QTemporaryDir& folder, const ClipShape& shape, int frameCount,
                                        int runs) {
    CostSamples samples;
    const QString with = folder.filePath(QStringLiteral("with.mov"));
    const QString without = folder.filePath(QStringLiteral("without.mov"));
    for (int run = 0; run < runs; ++run) {
        // The order alternates too, so that neither way always follows the other's leftovers.
        const bool journaledFirst = run % 2 == 0;
        const auto [firstPath, firstSafety] = journaledFirst ? std::pair{with, ffmpeg::CrashSafety::journaled}
                                                             : std::pair{without, ffmpeg::CrashSafety::off};
        const auto [secondPath, secondSafety] = journaledFirst
                                                    ? std::pair{without, ffmpeg::CrashSafety::off}
                                                    : std::pair{with, ffmpeg::CrashSafety::journaled};
        const std::optional<ClipCost> first = writeClip(firstPath, shape, frameCount, firstSafety);
        const std::optional<ClipCost> second = writeClip(secondPath, shape, frameCount, secondSafety);
        if (!first || !second) return std::nullopt;
        const ClipCost& journaled = journaledFirst ? *first : *second;
        const ClipCost& plain = journaledFirst ? *second : *first;
        samples.finishMsWith.push_back(journaled.finishSeconds * 1000);
        samples.finishMsWithout.push_back(plain.finishSeconds * 1000);
        samples.cpuRatios.push_back(journaled.cpuSeconds / plain.cpuSeconds);
    }
    return samples;
}

// How much longer the finish of a light 60 fps clip gets per minute of movie, from clips of one and of
// four times `frameCount` frames: the encoder's share of the finish (draining its queue) is the same
// for both lengths; what may grow is the index, whose entries follow the packet count.
struct FinishGrowth {
    double msPerMinuteWith = 0;
    double msPerMinuteWithout = 0;
};

std::optional<FinishGrowth> measureFinishGrowth(const QTemporaryDir& folder, int frameCount, int runs) {
    const ClipShape light = clipShape(640, 360, OutputFrameRate::fps60);
    const std::optional<CostSamples> shorter = measureCosts(folder, light, frameCount, runs);
    const std::optional<CostSamples> longer = measureCosts(folder, light, frameCount * 4, runs);
    if (!shorter || !longer) return std::nullopt;
    const double addedMinutes = frameCount * 3 / 60.0 / 60.0;
    return FinishGrowth{
        (bench::median(longer->finishMsWith) - bench::median(shorter->finishMsWith)) / addedMinutes,
        (bench::median(longer->finishMsWithout) - bench::median(shorter->finishMsWithout)) / addedMinutes};
}

// The offset of the top-level "moov" atom; absent when there is none.
std::optional<qint64> indexOffset(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    qint64 at = 0;
    while (at + 8 <= file.size()) {
        file.seek(at);
        const QByteArray header = file.read(16);
        quint64 size = 0;
        for (int index = 0; index < 4; ++index) size = (size << 8) | static_cast<quint8>(header[index]);
        if (size == 1)
            for (int index = 8; index < 16; ++index) size = (size << 8) | static_cast<quint8>(header[index]);
        if (header.mid(4, 4) == "moov") return at;
        if (size < 8) return std::nullopt;
        at += static_cast<qint64>(size);
    }
    return std::nullopt;
}

bool runFfmpeg(const QStringList& arguments) {
    QProcess ffmpeg;
    ffmpeg.start(QStringLiteral("ffmpeg"), QStringList{"-v", "error", "-y"} + arguments);
    return ffmpeg.waitForFinished(600000) && ffmpeg.exitCode() == 0;
}

}  // namespace

int main() {
    const char* secondsText = std::getenv("KESTRUM_BENCH_SECONDS");
    const double clipSeconds = secondsText ? std::max(2.0, std::atof(secondsText)) : 20.0;
    const char* runsText = std::getenv("KESTRUM_BENCH_RUNS");
    const int runs = runsText ? std::max(1, std::atoi(runsText)) : 3;
    const int clipFrames = static_cast<int>(clipSeconds * 30);
    QTemporaryDir folder;
    const std::optional<FinishGrowth> growth = measureFinishGrowth(folder, clipFrames, runs);
    const std::optional<CostSamples> costs =
        measureCosts(folder, clipShape(1280, 720, OutputFrameRate::fps30), clipFrames, runs);
    if (!costs || !growth) {
        std::fprintf(stderr, "the writer failed\n");
        return 1;
    }
    const double finishWith = bench::median(costs->finishMsWith);
    const double finishWithout = bench::median(costs->finishMsWithout);
    figure("journal_cpu_ratio", bench::median(costs->cpuRatios), "x");
    figure("writer_finish_ms_with_journal", finishWith, "ms");
    figure("writer_finish_ms_without_journal", finishWithout, "ms");
    figure("writer_finish_growth_ms_per_min_at_60fps_with_journal", growth->msPerMinuteWith, "ms/min");
    figure("writer_finish_growth_ms_per_min_at_60fps_without_journal", growth->msPerMinuteWithout, "ms/min");
    // The clip's finish plus the growth over the minutes a 60-minute recording has beyond the clip.
    const double minutesBeyondClip = 60.0 - clipSeconds / 60.0;
    figure("writer_finish_ms_60min_1080p60_with_journal",
           finishWith + std::max(0.0, growth->msPerMinuteWith) * minutesBeyondClip, "ms");
    figure("writer_finish_ms_60min_1080p60_without_journal",
           finishWithout + std::max(0.0, growth->msPerMinuteWithout) * minutesBeyondClip, "ms");

    // The last journaled 720p30 clip serves the ways of recovering.
    const QString movie = folder.filePath(QStringLiteral("with.mov"));
    if (!QFile::exists(movie + ".journal")) {
        std::fprintf(stderr, "the journaled clip has no journal\n");
        return 1;
    }
    const double movieBytes = static_cast<double>(QFileInfo(movie).size());

    // The journal's way. A copy keeps the finished movie for the other way.
    const QString cut = folder.filePath(QStringLiteral("cut.mov"));
    const std::optional<qint64> index = indexOffset(movie);
    if (!index || !QFile::copy(movie, cut) || !QFile::copy(movie + ".journal", cut + ".journal") ||
        !QFile::resize(cut, *index)) {
        std::fprintf(stderr, "could not cut the movie before its index\n");
        return 1;
    }
    const auto recovering = std::chrono::steady_clock::now();
    const Result<RecoveredMovie> recovered = ffmpeg::FfmpegMovieRecovery().recover(cut);
    const double recoverySeconds = secondsSince(recovering);
    if (!recovered.ok()) {
        std::fprintf(stderr, "recovery failed: %s\n", qPrintable(recovered.error().description));
        return 1;
    }
    figure("journal_recovery_ms", recoverySeconds * 1000, "ms");
    figure("journal_recovery_ms_per_gb", recoverySeconds * 1000 * kBytesPerGigabyte / movieBytes, "ms/GB");

    // The fragmented way.
    const QString fragmented = folder.filePath(QStringLiteral("fragmented.mov"));
    const QString remuxed = folder.filePath(QStringLiteral("remuxed.mov"));
    if (!runFfmpeg({"-i", movie, "-c", "copy", "-movflags", "frag_keyframe+empty_moov", fragmented})) {
        std::fprintf(stderr, "the ffmpeg program could not make a fragmented movie\n");
        return 1;
    }
    const auto remuxing = std::chrono::steady_clock::now();
    if (!runFfmpeg({"-i", fragmented, "-c", "copy", remuxed})) {
        std::fprintf(stderr, "the ffmpeg program could not remux the fragmented movie\n");
        return 1;
    }
    const double remuxSecondsPerGigabyte = secondsSince(remuxing) * kBytesPerGigabyte / movieBytes;
    figure("fragmented_remux_ms_per_gb", remuxSecondsPerGigabyte * 1000, "ms/GB");
    const VideoOutputSettings long1080p60 =
        videoOutputSettings(OutputResolution::p1080, OutputFrameRate::fps60, 1920, 1080);
    const double hourBytes = static_cast<double>(long1080p60.averageBitRate) / 8 * 3600;
    figure("fragmented_remux_s_for_60min_1080p60", remuxSecondsPerGigabyte * hourBytes / kBytesPerGigabyte,
           "s");
    figure("journal_recovery_s_for_60min_1080p60",
           recoverySeconds * kBytesPerGigabyte / movieBytes * hourBytes / kBytesPerGigabyte, "s");
    return 0;
}
