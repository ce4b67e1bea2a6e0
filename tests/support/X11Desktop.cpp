#include "support/X11Desktop.h"

#include <QMap>
#include <QProcess>

#include <cstring>

namespace kestrum::test {

QString xdotool(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    if (!process.waitForFinished(10000) || process.exitCode() != 0) return {};
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QRect windowGeometry(const QString& windowId) {
    const QString shell = xdotool({QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), windowId});
    if (shell.isEmpty()) return {};
    QMap<QString, int> values;
    for (const QString& line : shell.split(QLatin1Char('\n'))) {
        values.insert(line.section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1).toInt());
    }
    return {values.value(QStringLiteral("X")), values.value(QStringLiteral("Y")),
            values.value(QStringLiteral("WIDTH")), values.value(QStringLiteral("HEIGHT"))};
}

QRect visibleWindow(const QString& pattern, bool byClass) {
    const QString found = xdotool({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                   byClass ? QStringLiteral("--class") : QStringLiteral("--name"), pattern});
    QRect largest;
    for (const QString& window : found.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QRect geometry = windowGeometry(window);
        if (geometry.width() * geometry.height() > largest.width() * largest.height()) largest = geometry;
    }
    return largest;
}

void clickAt(QPoint point) {
    xdotool({QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y()),
             QStringLiteral("click"), QStringLiteral("1")});
}

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
