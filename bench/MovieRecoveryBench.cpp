// What crash safety costs and the two ways of keeping a movie that a crash cut off, measured on one
// clip (720p30, KESTRUM_BENCH_SECONDS long, 20 by default):
// - the cost: the clip and one of half its length written with and without the journal (and its
//   syncs), alternately, KESTRUM_BENCH_RUNS times (3 by default); the process's CPU time over each write
//   gives the ratio with/without (median of the pairs), and the finish (the stop) is timed alone. The
//   finish's growth from the half clip to the whole one, per video packet, is extrapolated to a
//   60-minute 1080p60 recording, since the index the finish writes holds an entry per packet;
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

struct ClipCost {
    double finishSeconds = 0;
    double cpuSeconds = 0;  // of the whole process, from the writer's creation to its end
};

// Writes the clip of `frameCount` frames; absent on a failure.
std::optional<ClipCost> writeClip(const QString& path, int frameCount, ffmpeg::CrashSafety crashSafety,
                                  const std::vector<std::shared_ptr<const PixelBuffer>>& frames) {
    const double cpuAtStart = processCpuSeconds();
    auto created =
        ffmpeg::FfmpegMovieWriterFactory(crashSafety).createWriter(path, MovieFileType::quickTimeMovie);
    if (!created.ok()) return std::nullopt;
    std::unique_ptr<MovieWriter> writer = std::move(created).value();
    auto input =
        writer->addInput(videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 1280, 720));
    if (!input || !writer->startWriting()) return std::nullopt;
    writer->startSession(0);
    const HostTimeNs frameNs = 1'000'000'000 / 30;
    for (int index = 0; index < frameCount; ++index) {
        while (!input->isReadyForMoreMediaData()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        input->append(frames[static_cast<std::size_t>(index) % frames.size()], index * frameNs);
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

std::optional<CostSamples> measureCosts(const QTemporaryDir& folder, int frameCount, int runs,
                                        const std::vector<std::shared_ptr<const PixelBuffer>>& frames) {
    CostSamples samples;
    const QString with = folder.filePath(QStringLiteral("with.mov"));
    const QString without = folder.filePath(QStringLiteral("without.mov"));
    for (int run = 0; run < runs; ++run) {
        // The order alternates too, so that neither way always follows the other's leftovers.
        const bool journaledFirst = run % 2 == 0;
        std::optional<ClipCost> first =
            writeClip(journaledFirst ? with : without, frameCount,
                      journaledFirst ? ffmpeg::CrashSafety::journaled : ffmpeg::CrashSafety::off, frames);
        std::optional<ClipCost> second =
            writeClip(journaledFirst ? without : with, frameCount,
                      journaledFirst ? ffmpeg::CrashSafety::off : ffmpeg::CrashSafety::journaled, frames);
        if (!first || !second) return std::nullopt;
        const ClipCost& journaled = journaledFirst ? *first : *second;
        const ClipCost& plain = journaledFirst ? *second : *first;
        samples.finishMsWith.push_back(journaled.finishSeconds * 1000);
        samples.finishMsWithout.push_back(plain.finishSeconds * 1000);
        samples.cpuRatios.push_back(journaled.cpuSeconds / plain.cpuSeconds);
    }
    return samples;
}

// The finish of a 60-minute 1080p60 recording: the whole clip's, plus its growth per frame over the
// frames a 60-minute 1080p60 recording has beyond the clip's.
double finishMsFor60MinutesAt60(double halfClipMs, double clipMs, int clipFrames) {
    const double growthMsPerFrame = std::max(0.0, (clipMs - halfClipMs) / (clipFrames - clipFrames / 2));
    return clipMs + growthMsPerFrame * (60.0 * 60 * 60 - clipFrames);
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
    const auto frames = bench::makeFrames(1280, 720, 30);
    const std::optional<CostSamples> half = measureCosts(folder, clipFrames / 2, runs, frames);
    const std::optional<CostSamples> whole = measureCosts(folder, clipFrames, runs, frames);
    if (!whole || !half) {
        std::fprintf(stderr, "the writer failed\n");
        return 1;
    }
    const double finishWith = bench::median(whole->finishMsWith);
    const double finishWithout = bench::median(whole->finishMsWithout);
    figure("journal_cpu_ratio", bench::median(whole->cpuRatios), "x");
    figure("writer_finish_ms_with_journal", finishWith, "ms");
    figure("writer_finish_ms_without_journal", finishWithout, "ms");
    figure("writer_finish_ms_half_clip_with_journal", bench::median(half->finishMsWith), "ms");
    figure("writer_finish_ms_half_clip_without_journal", bench::median(half->finishMsWithout), "ms");
    figure("writer_finish_ms_60min_1080p60_with_journal",
           finishMsFor60MinutesAt60(bench::median(half->finishMsWith), finishWith, clipFrames), "ms");
    figure("writer_finish_ms_60min_1080p60_without_journal",
           finishMsFor60MinutesAt60(bench::median(half->finishMsWithout), finishWithout, clipFrames), "ms");

    // The last journaled clip, a whole one, serves the ways of recovering.
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
