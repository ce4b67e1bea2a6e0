#include "core/capture/CaptureLogText.h"

#include <QLocale>

namespace kestrum {

namespace {

QString errorText(const Error& error) {
    return error.domain + QLatin1Char(' ') + QString::number(error.code) + QStringLiteral(": ") +
           error.description;
}

}  // namespace

QString secondsText(double seconds) {
    QString text = QString::number(seconds, 'g', QLocale::FloatingPointShortest);
    if (!text.contains(QLatin1Char('.')) && !text.contains(QLatin1Char('e')) &&
        !text.contains(QLatin1Char('n')))
        text += QStringLiteral(".0");
    return text;
}

QString rectangleDebugDescription(const QRectF& rectangle) {
    return QStringLiteral("(%1, %2, %3, %4)")
        .arg(secondsText(rectangle.x()), secondsText(rectangle.y()), secondsText(rectangle.width()),
             secondsText(rectangle.height()));
}

QString selectedCaptureWindowLine(const ShareableWindow& window) {
    const auto& owner = window.owningApplication;
    const QString title = window.title.value_or(QStringLiteral("<untitled>"));
    const QString ownerName = owner ? owner->applicationName : QStringLiteral("<unknown>");
    const QString pid = owner ? QString::number(owner->processID) : QStringLiteral("<unknown>");
    return QStringLiteral("Selected League capture window: id=") + QString::number(window.windowID) +
           QStringLiteral(", title=") + title + QStringLiteral(", owner=") + ownerName +
           QStringLiteral(", pid=") + pid + QStringLiteral(", title=") +
           rectangleDebugDescription(window.frame) + QStringLiteral(", onScreen=") +
           (window.isOnScreen ? QStringLiteral("true") : QStringLiteral("false")) + QLatin1Char('.');
}

QString trackSummaryLine(const QString& trackText, const MovieWriterInput* input, const QString& streamName,
                         const std::optional<QString>& streamCounters) {
    const QString writerText = input ? QStringLiteral("%1 refused with its queue full, %2 discarded")
                                           .arg(input->refusedSampleCount())
                                           .arg(input->discardedSampleCount())
                                     : QStringLiteral("no track");
    return trackText + QStringLiteral("; writer: ") + writerText + QStringLiteral("; ") + streamName +
           QStringLiteral(": ") + streamCounters.value_or(QStringLiteral("not running"));
}

QString describeWriterFailure(const MovieWriter& writer) {
    const std::optional<Error> error = writer.error();
    if (!error) {
        return QStringLiteral("Writer ended with status ") +
               QString::number(static_cast<int>(writer.status())) + QStringLiteral(" and no error details.");
    }
    QString text = errorText(*error);
    if (error->underlying)
        text += QStringLiteral(" (underlying: ") + errorText(*error->underlying) + QLatin1Char(')');
    return text;
}

}  // namespace kestrum
