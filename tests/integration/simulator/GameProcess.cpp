#include "GameProcess.h"

#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>
#include <QTcpServer>

#include <csignal>

namespace kestrum::test {

GameProcess::~GameProcess() {
    if (process_.state() != QProcess::NotRunning && !end(SIGTERM, 5000)) process_.kill();
    process_.waitForFinished(3000);
}

bool GameProcess::start(const QStringList& arguments, const QString& readyLine) {
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.start(QStringLiteral(KESTRUM_SIMULATOR_LAUNCHER), arguments);
    waitUntil([&] { return output().contains(readyLine) || process_.state() == QProcess::NotRunning; },
              20000);
    if (output_.contains(readyLine)) return true;
    ADD_FAILURE() << "the simulator did not get ready:\n" << output_.toStdString();
    return false;
}

bool GameProcess::startGame(double loadingSeconds, double durationSeconds,
                            const QStringList& extraArguments) {
    const QJsonObject player{{QStringLiteral("summonerName"), QStringLiteral("Kestrel")},
                             {QStringLiteral("championName"), QStringLiteral("Ahri")},
                             {QStringLiteral("team"), QStringLiteral("ORDER")}};
    const QJsonObject script{{QStringLiteral("gameMode"), QStringLiteral("CLASSIC")},
                             {QStringLiteral("activePlayer"), QStringLiteral("Kestrel")},
                             {QStringLiteral("loadingSeconds"), loadingSeconds},
                             {QStringLiteral("durationSeconds"), durationSeconds},
                             {QStringLiteral("players"), QJsonArray{player}}};
    const QString path = folder_.filePath(QStringLiteral("script.json"));
    if (!writeFileBytes(path, QJsonDocument(script).toJson())) return false;
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    port_ = probe.serverPort();
    probe.close();
    return start(
        QStringList{QStringLiteral("--script"), path, QStringLiteral("--port"), QString::number(port_)} +
            extraArguments,
        QStringLiteral("listening on 127.0.0.1:%1").arg(port_));
}

QString GameProcess::processName() const {
    return QString::fromUtf8(
        readFileBytes(QStringLiteral("/proc/%1/cmdline").arg(processId())).split('\0').front());
}

QString GameProcess::output() {
    output_ += QString::fromUtf8(process_.readAll());
    return output_;
}

std::optional<double> GameProcess::serviceGameTime() {
    QNetworkReply* reply = network_.get(
        QNetworkRequest(QUrl(QStringLiteral("https://127.0.0.1:%1/liveclientdata/gamestats").arg(port_))));
    reply->ignoreSslErrors();  // the certificate is made at the simulator's start; only the clock matters
    waitUntil([reply] { return reply->isFinished(); }, 5000);
    const QJsonValue time =
        QJsonDocument::fromJson(reply->readAll()).object().value(QStringLiteral("gameTime"));
    const bool answered = reply->isFinished() && reply->error() == QNetworkReply::NoError && time.isDouble();
    reply->deleteLater();
    return answered ? std::optional(time.toDouble()) : std::nullopt;
}

std::optional<int> GameProcess::end(int signal, int timeoutMs) {
    if (signal != 0 && process_.state() != QProcess::NotRunning)
        ::kill(static_cast<pid_t>(processId()), signal);
    if (!waitUntil([&] { return process_.state() == QProcess::NotRunning; }, timeoutMs)) return std::nullopt;
    output();
    return process_.exitStatus() == QProcess::NormalExit ? std::optional(process_.exitCode()) : std::nullopt;
}

}  // namespace kestrum::test
