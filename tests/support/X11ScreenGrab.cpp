#include "support/X11ScreenGrab.h"

#include <QProcess>
#include <QString>

#include <cstring>

namespace kestrum::test {

std::optional<QImage> grabScreenRegion(const QRect& region, QString* failure) {
    QProcess ffmpeg;
    ffmpeg.start(
        QStringLiteral("ffmpeg"),
        {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-f"), QStringLiteral("x11grab"),
         QStringLiteral("-draw_mouse"), QStringLiteral("0"), QStringLiteral("-video_size"),
         QStringLiteral("%1x%2").arg(region.width()).arg(region.height()), QStringLiteral("-i"),
         qEnvironmentVariable("DISPLAY") + QStringLiteral("+%1,%2").arg(region.x()).arg(region.y()),
         QStringLiteral("-frames:v"), QStringLiteral("1"), QStringLiteral("-f"), QStringLiteral("rawvideo"),
         QStringLiteral("-pix_fmt"), QStringLiteral("bgra"), QStringLiteral("-")});
    const bool finished = ffmpeg.waitForFinished(20000);
    const QByteArray bytes = ffmpeg.readAllStandardOutput();
    const qsizetype expected = qsizetype(region.width()) * region.height() * 4;
    if (!finished || ffmpeg.exitStatus() != QProcess::NormalExit || ffmpeg.exitCode() != 0 ||
        bytes.size() != expected) {
        if (failure) {
            *failure = QStringLiteral("ffmpeg x11grab gave %1 of %2 bytes: %3")
                           .arg(bytes.size())
                           .arg(expected)
                           .arg(QString::fromLocal8Bit(ffmpeg.readAllStandardError()));
        }
        return std::nullopt;
    }
    QImage image(region.size(), QImage::Format_RGB32);
    for (int row = 0; row < region.height(); ++row) {
        std::memcpy(image.scanLine(row), bytes.constData() + qsizetype(row) * region.width() * 4,
                    static_cast<std::size_t>(region.width()) * 4);
    }
    return image;
}

}  // namespace kestrum::test
