#include "LibraryTestSupport.h"

#include "media/ffmpeg/FfmpegMovieWriterFactory.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <chrono>
#include <thread>

namespace kestrum::test {

namespace {

QCoro::Task<void> awaitFuture(QFuture<void> future) {
    co_await future;
}

}  // namespace

bool writeTinyMovie(const QString& path) {
    auto created = ffmpeg::FfmpegMovieWriterFactory().createWriter(path, MovieFileType::quickTimeMovie);
    if (!created.ok()) return false;
    std::unique_ptr<MovieWriter> writer = std::move(created).value();
    const auto video =
        writer->addInput(VideoOutputSettings{VideoCodec::h264, 64, 64, 200'000, 30, 1.0, true, 30});
    if (!video || !writer->startWriting()) return false;
    writer->startSession(0);
    for (int frame = 0; frame < 3; ++frame) {
        for (int wait = 0; wait < 2000 && !video->isReadyForMoreMediaData(); ++wait) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        auto pixels = PixelBuffer::make(64, 64, 256, std::vector<std::uint8_t>(64 * 256, 60 * frame));
        if (!video->append(std::move(pixels), frame * 33'333'333)) return false;
    }
    QCoro::waitFor(awaitFuture(writer->finishWriting()));
    return writer->status() == MovieWriterStatus::completed;
}

}  // namespace kestrum::test
