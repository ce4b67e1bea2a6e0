// The two ways of keeping a movie that a crash cut off, measured on one movie. Writes a clip with the
// movie writer (720p30 by default; KESTRUM_BENCH_SECONDS long, 20 by default), then:
// - the stop: how long the writer's finish takes (the journal adds nothing to it);
// - the journal's way: the movie cut just before its index, as a kill leaves it, rebuilt in place from
//   its journal (milliseconds, and per gigabyte of movie);
// - the fragmented way: the same media as a fragmented QuickTime movie (made with the ffmpeg program),
//   remuxed into a regular movie by the ffmpeg program as a stop would have to, per gigabyte, and
//   extrapolated to a 60-minute 1080p60 movie at the writer's bit rate for it.
#include "SyntheticFrames.h"
#include "media/MovieOutputSettings.h"
#include "media/ffmpeg/FfmpegMovieRecovery.h"
#include "media/ffmpeg/FfmpegMovieWriterFactory.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

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

// Writes the clip; gives the seconds the finish took, absent on a failure.
std::optional<double> writeClip(const QString& path, double clipSeconds) {
    auto created = ffmpeg::FfmpegMovieWriterFactory().createWriter(path, MovieFileType::quickTimeMovie);
    if (!created.ok()) return std::nullopt;
    std::unique_ptr<MovieWriter> writer = std::move(created).value();
    auto input =
        writer->addInput(videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 1280, 720));
    if (!input || !writer->startWriting()) return std::nullopt;
    const auto frames = bench::makeFrames(1280, 720, 30);
    writer->startSession(0);
    const HostTimeNs frameNs = 1'000'000'000 / 30;
    for (int index = 0; index < static_cast<int>(clipSeconds * 30); ++index) {
        while (!input->isReadyForMoreMediaData()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        input->append(frames[static_cast<std::size_t>(index) % frames.size()], index * frameNs);
    }
    const auto finishing = std::chrono::steady_clock::now();
    writer->finishWriting().waitForFinished();
    if (writer->status() != MovieWriterStatus::completed) return std::nullopt;
    return secondsSince(finishing);
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
    QTemporaryDir folder;
    const QString movie = folder.filePath(QStringLiteral("clip.mov"));
    const std::optional<double> finishSeconds = writeClip(movie, clipSeconds);
    if (!finishSeconds) {
        std::fprintf(stderr, "the writer failed\n");
        return 1;
    }
    figure("writer_finish_ms", *finishSeconds * 1000, "ms");
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
