#include "support/X11Desktop.h"

#include <QMap>
#include <QProcess>

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

std::optional<QImage> grabScreenRegion(QRect region) {
    if (region.isEmpty()) return std::nullopt;
    QProcess ffmpeg;
    ffmpeg.start(
        QStringLiteral("ffmpeg"),
        {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-f"), QStringLiteral("x11grab"),
         QStringLiteral("-video_size"), QStringLiteral("%1x%2").arg(region.width()).arg(region.height()),
         QStringLiteral("-i"),
         QStringLiteral("%1+%2,%3").arg(qEnvironmentVariable("DISPLAY")).arg(region.x()).arg(region.y()),
         QStringLiteral("-frames:v"), QStringLiteral("1"), QStringLiteral("-f"), QStringLiteral("image2pipe"),
         QStringLiteral("-vcodec"), QStringLiteral("png"), QStringLiteral("-")});
    if (!ffmpeg.waitForFinished(10000) || ffmpeg.exitCode() != 0) return std::nullopt;
    QImage image;
    if (!image.loadFromData(ffmpeg.readAllStandardOutput(), "PNG")) return std::nullopt;
    return image;
}

}  // namespace kestrum::test
