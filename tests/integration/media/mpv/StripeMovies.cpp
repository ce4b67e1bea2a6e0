#include "StripeMovies.h"

#include "ClockStripe.h"
#include "MediaTestSupport.h"
#include "base/media/PixelBuffer.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>

#include <cmath>
#include <cstring>
#include <numbers>

namespace kestrum::test {

namespace {

constexpr qint64 kTruncatedBytes = 300'000;

// A dark picture that changes from frame to frame below the stripe (a sweeping block and a shifting
// shade), so that the encoder predicts across frames as in a game, with the stripe of `stripeMs`.
std::shared_ptr<const PixelBuffer> stripeFrame(double seconds, qint64 stripeMs) {
    QImage picture(kStripeMovieWidth, kStripeMovieHeight, QImage::Format_ARGB32);
    const int shade = 40 + static_cast<int>(30 * std::sin(seconds * std::numbers::pi));
    picture.fill(QColor(shade, 60, 90));
    QPainter painter(&picture);
    const int blockX = static_cast<int>(std::fmod(seconds * 400, kStripeMovieWidth - 200));
    painter.fillRect(QRect(blockX, 400, 200, 160), QColor(220, 180, 60));
    painter.end();
    encodeClockStripe(picture, stripeMs);
    // Format_ARGB32 lies in memory as B, G, R, A on little-endian machines: the pixel buffer's order.
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(picture.sizeInBytes()));
    std::memcpy(bytes.data(), picture.constBits(), bytes.size());
    return PixelBuffer::make(picture.width(), picture.height(), static_cast<int>(picture.bytesPerLine()),
                             std::move(bytes));
}

bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

}  // namespace

qint64 stripeMsOfFrameAt(double seconds, qint64 stripeOffsetMs) {
    const double frame = std::round(seconds * kStripeMovieFramesPerSecond);
    return stripeOffsetMs + std::llround(frame * 1000.0 / kStripeMovieFramesPerSecond);
}

bool writeStripeMovie(const QString& path, double durationSeconds, qint64 stripeOffsetMs) {
    MovieScript script;
    script.video = videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, kStripeMovieWidth,
                                       kStripeMovieHeight);
    script.frameSeconds = evenFrameTimes(0, durationSeconds, kStripeMovieFramesPerSecond);
    script.picture = [stripeOffsetMs](double seconds) {
        return stripeFrame(seconds, stripeMsOfFrameAt(seconds, stripeOffsetMs));
    };
    script.audioTracks = 1;
    script.audioToSeconds = durationSeconds;
    script.signal = [](double seconds) { return 0.1 * std::sin(2 * std::numbers::pi * 440 * seconds); };
    return writeMovie(path, script).status == MovieWriterStatus::completed;
}

bool writePlayerTestMovies(const QString& folder) {
    if (!QDir().mkpath(folder)) return false;
    const PlayerTestMovies movies{folder};
    if (!writeStripeMovie(movies.clock(), PlayerTestMovies::kClockSeconds, 0)) return false;
    if (!writeStripeMovie(movies.other(), PlayerTestMovies::kOtherSeconds,
                          PlayerTestMovies::kOtherOffsetMs)) {
        return false;
    }
    QFile clock(movies.clock());
    if (!clock.open(QIODevice::ReadOnly)) return false;
    return writeBytes(movies.truncated(), clock.read(kTruncatedBytes)) &&
           writeBytes(movies.notAMovie(), QByteArray("This is a note, not a movie.\n")) &&
           writeBytes(movies.empty(), QByteArray());
}

}  // namespace kestrum::test
