#include "RecordingTestSupport.h"

#include "base/log/CaptureLog.h"
#include "base/log/CaptureLogFile.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QRegularExpression>

namespace kestrum::test {

void resetCaptureLogFile() {
    waitForCaptureLogWrites();
    QDir(captureLogDirectoryPath()).removeRecursively();
    writeFileBytes(captureLogFilePath(), {});
}

QStringList captureLogLines() {
    waitForCaptureLogWrites();
    const QString text = QString::fromUtf8(readFileBytes(captureLogFilePath()));
    static const QRegularExpression timestamp(QStringLiteral(R"(^\[[^\]]+\] )"));
    QStringList lines;
    for (QString line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        lines.append(line.remove(timestamp));
    return lines;
}

}  // namespace kestrum::test
