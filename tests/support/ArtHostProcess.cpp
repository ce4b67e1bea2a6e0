#include "support/ArtHostProcess.h"

#include "support/TestEnvironment.h"

#include <QRegularExpression>

namespace kestrum::test {

ArtHostProcess::~ArtHostProcess() {
    stop();
}

bool ArtHostProcess::start() {
    process_.setProgram(QStringLiteral(KESTRUM_GAME_SIMULATOR));
    process_.setArguments({QStringLiteral("--art-host"), QStringLiteral("0")});
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.start();
    static const QRegularExpression address(QStringLiteral("art host on (http://127\\.0\\.0\\.1:\\d+)"));
    QRegularExpressionMatch match;
    const bool ready = waitUntil(
        [&] {
            output_ += QString::fromUtf8(process_.readAll());
            match = address.match(output_);
            return match.hasMatch() || process_.state() == QProcess::NotRunning;
        },
        30000);
    if (!ready || !match.hasMatch()) {
        failure_ = QStringLiteral("the art host did not get ready: ") + output_;
        stop();
        return false;
    }
    baseAddress_ = match.captured(1);
    return true;
}

void ArtHostProcess::stop() {
    if (process_.state() == QProcess::NotRunning) return;
    process_.terminate();
    if (!process_.waitForFinished(5000)) process_.kill();
    process_.waitForFinished(5000);
}

}  // namespace kestrum::test
