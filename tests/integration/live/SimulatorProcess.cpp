#include "SimulatorProcess.h"

#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonDocument>
#include <QTcpServer>

namespace kestrum::test {
namespace {

int freePort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

}  // namespace

SimulatorProcess::~SimulatorProcess() {
    if (process_.state() == QProcess::NotRunning) return;
    process_.terminate();
    if (!process_.waitForFinished(5000)) process_.kill();
    process_.waitForFinished(5000);
}

QJsonObject SimulatorProcess::shortGame(const QJsonObject& changes) {
    const QByteArray bytes =
        readFileBytes(QStringLiteral(KESTRUM_SOURCE_DIR "/tests/integration/live/scripts/short-game.json"));
    QJsonObject root = QJsonDocument::fromJson(bytes).object();
    for (auto it = changes.begin(); it != changes.end(); ++it) root.insert(it.key(), it.value());
    return root;
}

bool SimulatorProcess::start(const QJsonObject& script, const QStringList& extraArguments, int port) {
    port_ = port != 0 ? port : freePort();
    const QString scriptPath = folder_.filePath(QStringLiteral("script.json"));
    if (!writeFileBytes(scriptPath, QJsonDocument(script).toJson())) return false;
    process_.setProgram(QStringLiteral(KESTRUM_GAME_SIMULATOR));
    process_.setArguments(QStringList{QStringLiteral("--script"), scriptPath, QStringLiteral("--port"),
                                      QString::number(port_)} +
                          extraArguments);
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.start();
    const bool ready = waitUntil(
        [this] {
            output_ += QString::fromUtf8(process_.readAll());
            return output_.contains(QStringLiteral("game clock starts at ")) ||
                   process_.state() == QProcess::NotRunning;
        },
        30000);
    const qsizetype at = output_.indexOf(QStringLiteral("game clock starts at "));
    if (!ready || at < 0 || !output_.contains(QStringLiteral("listening on 127.0.0.1:%1").arg(port_))) {
        ADD_FAILURE() << "the simulator did not get ready:\n" << output_.toStdString();
        return false;
    }
    const QString milliseconds = output_.mid(at + 21).section(QLatin1Char('\n'), 0, 0).trimmed();
    clockStartUnixSeconds_ = milliseconds.toDouble() / 1000.0;
    return true;
}

}  // namespace kestrum::test
