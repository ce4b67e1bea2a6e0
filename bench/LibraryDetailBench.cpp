// The detail loader as the review window uses it: the detail of a recording whose sidecar is a long
// game's 25 MB document, cold (nothing cached: read, measure, encode and write the cache) and warm (the
// same look again), plus a fresh loader that finds the disk entry; and the thumbnail of a 1080p HEVC
// movie written by the application's own writer, made afresh and read back from the disk cache.
// Prints `figure <name> <value> <unit>` lines, medians of repeated runs; asserts nothing.
#include "BenchTiming.h"
#include "LongGameDocument.h"
#include "base/async/Detached.h"
#include "core/library/detail/RecordingDetailLoader.h"
#include "core/telemetry/RecordingSidecarStore.h"
#include "core/telemetry/SessionDocumentBuilder.h"
#include "media/MovieOutputSettings.h"
#include "media/ThumbnailGenerator.h"
#include "media/ffmpeg/FfmpegMovieWriterFactory.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace kestrum;

constexpr std::size_t kSidecarBytes = 25'000'000;
constexpr int kMovieSeconds = 4;
constexpr int kColdRuns = 5;
constexpr int kWarmRuns = 200;

// Each run is followed, untimed, by the end of the disk cache writes it left on the utility pool, so
// that no run pays for the one before.
double medianMilliseconds(int runs, const std::function<void()>& body) {
    return bench::medianMilliseconds(runs, body, [] { utilityPool().waitForDone(); });
}

// A 1080p30 movie of game-like pictures from the application's own writer (HEVC, its key frame rule).
bool writeMovie(const QString& path) {
    auto created = ffmpeg::FfmpegMovieWriterFactory().createWriter(path, MovieFileType::quickTimeMovie);
    if (!created.ok()) return false;
    std::unique_ptr<MovieWriter> writer = std::move(created).value();
    auto input =
        writer->addInput(videoOutputSettings(OutputResolution::p1080, OutputFrameRate::fps30, 1920, 1080));
    if (!input || !writer->startWriting()) return false;
    writer->startSession(0);
    std::vector<std::shared_ptr<const PixelBuffer>> frames;
    // Game-like pictures: a scrolling gradient, a moving block and a little grain.
    std::minstd_rand noise(7);
    for (int index = 0; index < 8; ++index) {
        std::vector<std::uint8_t> bytes(1920u * 1080u * 4u);
        for (int y = 0; y < 1080; ++y) {
            for (int x = 0; x < 1920; ++x) {
                std::uint8_t* pixel = bytes.data() + (static_cast<std::size_t>(y) * 1920 + x) * 4;
                const bool block = std::abs(x - 300 - index * 40) < 192 && std::abs(y - 540) < 135;
                const int grain = static_cast<int>(noise() % 24);
                pixel[0] = static_cast<std::uint8_t>(((x + index * 6) % 256) / 2 + grain);
                pixel[1] = static_cast<std::uint8_t>((block ? 200 : (y % 128)) + grain / 2);
                pixel[2] = static_cast<std::uint8_t>(((x + y) / 4 + index) % 200 + grain);
                pixel[3] = 0xFF;
            }
        }
        frames.push_back(PixelBuffer::make(1920, 1080, 1920 * 4, std::move(bytes)));
    }
    for (int index = 0; index < kMovieSeconds * 30; ++index) {
        while (!input->isReadyForMoreMediaData()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        input->append(frames[static_cast<std::size_t>(index) % frames.size()], index * 1'000'000'000LL / 30);
    }
    writer->finishWriting().waitForFinished();
    return writer->status() == MovieWriterStatus::completed;
}

// A cache folder of its own for each cold run, so that nothing of an earlier run is found.
QString freshFolder(const QTemporaryDir& root) {
    static int next = 0;
    return root.filePath(QStringLiteral("cache-%1").arg(next++));
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QTemporaryDir root;
    MatchVideo video;
    video.url = root.filePath(QStringLiteral("2026-01-02_10-00-00_CLASSIC_Ahri_MIDDLE.mov"));
    if (!writeMovie(video.url)) {
        std::fprintf(stderr, "the 1080p HEVC movie could not be written\n");
        return 1;
    }
    const RecordingSessionData session = bench::longGameDocument(kSidecarBytes);
    if (!RecordingSidecarStore::shared().writeSessionData(session, sessionDocumentPath(video.url)).ok())
        return 1;
    const double sidecarMegabytes = QFileInfo(sessionDocumentPath(video.url)).size() / 1e6;

    bool healthy = true;
    const auto check = [&](const std::shared_ptr<const RecordingDetail>& detail) {
        healthy = healthy && detail && detail->scoreboard.size() == session.scoreboard->size();
    };
    const double coldMs = medianMilliseconds(kColdRuns, [&] {
        RecordingDetailLoader loader(freshFolder(root));
        check(loader.detail(video).result());
    });
    const QString warmFolder = freshFolder(root);
    RecordingDetailLoader warmLoader(warmFolder);
    check(warmLoader.detail(video).result());
    const double warmMs = medianMilliseconds(kWarmRuns, [&] { check(warmLoader.detail(video).result()); });
    const double diskMs = medianMilliseconds(kColdRuns, [&] {
        RecordingDetailLoader loader(warmFolder);
        check(loader.detail(video).result());
    });

    const double generateMs = medianMilliseconds(
        kColdRuns, [&] { healthy = healthy && ThumbnailGenerator::imageAt(video.url, 2.5).has_value(); });
    const double thumbnailMs = medianMilliseconds(kColdRuns, [&] {
        RecordingDetailLoader loader(freshFolder(root));
        healthy = healthy && loader.thumbnail(video, 3.5).result().has_value();
    });
    (void)RecordingDetailLoader(warmFolder).thumbnail(video, 3.5).result();
    const double thumbnailDiskMs = medianMilliseconds(kColdRuns, [&] {
        RecordingDetailLoader loader(warmFolder);
        healthy = healthy && loader.thumbnail(video, 3.5).result().has_value();
    });
    if (!healthy) {
        std::fprintf(stderr, "a run gave a wrong result\n");
        return 1;
    }
    std::printf("figure library_detail_sidecar_size_mb %.1f MB\n", sidecarMegabytes);
    std::printf("figure library_detail_cold_ms %.1f ms\n", coldMs);
    std::printf("figure library_detail_warm_ms %.3f ms\n", warmMs);
    std::printf("figure library_detail_disk_cache_ms %.1f ms\n", diskMs);
    std::printf("figure library_thumbnail_1080p_hevc_ms %.1f ms\n", thumbnailMs);
    std::printf("figure library_thumbnail_1080p_hevc_generate_only_ms %.1f ms\n", generateMs);
    std::printf("figure library_thumbnail_disk_cache_ms %.1f ms\n", thumbnailDiskMs);
    return 0;
}
