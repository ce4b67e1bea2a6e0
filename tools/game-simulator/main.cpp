// kestrum-game-simulator: a stand-in for the game's local HTTPS data service, driven by a match script
// or by saved answers of a real game, with switches for the service's faults.
#include "CapturedMatch.h"
#include "FaultSchedule.h"
#include "SimulatedMatch.h"
#include "SimulatorServer.h"
#include "TlsIdentity.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QTimer>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <memory>

namespace {

std::atomic<bool> quitRequested{false};

void requestQuit(int) {
    quitRequested = true;
}

// Signal handlers may only set a flag; a timer of the event loop turns it into a clean quit.
void quitOnTerminationSignals(QCoreApplication& application) {
    std::signal(SIGTERM, requestQuit);
    std::signal(SIGINT, requestQuit);
    auto* poll = new QTimer(&application);
    QObject::connect(poll, &QTimer::timeout, &application, [] {
        if (quitRequested) QCoreApplication::quit();
    });
    poll->start(50);
}

void printLine(const QString& line) {
    std::fputs(qPrintable(line + QLatin1Char('\n')), stdout);
    std::fflush(stdout);
}

int fail(const QString& message) {
    std::fputs(qPrintable(QStringLiteral("kestrum-game-simulator: ") + message + QLatin1Char('\n')), stderr);
    return 1;
}

void addOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(
        QStringLiteral("Serves the game's local data service on 127.0.0.1 over HTTPS."));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("script"), QStringLiteral("Match script (JSON) to play."), QStringLiteral("file")},
        {QStringLiteral("captures"), QStringLiteral("Folder of saved answers of a real game."),
         QStringLiteral("dir")},
        {QStringLiteral("port"), QStringLiteral("Port to listen on (default 2999)."), QStringLiteral("port"),
         QStringLiteral("2999")},
        {QStringLiteral("speed"), QStringLiteral("Game seconds per real second (default 1)."),
         QStringLiteral("factor"), QStringLiteral("1")},
        {QStringLiteral("replay"), QStringLiteral("With --captures: answer /replay/game with 200.")},
        {QStringLiteral("fault"),
         QStringLiteral("[endpoint:]slow|malformed|http500|closed:from:to (real seconds)."),
         QStringLiteral("switch")},
        {QStringLiteral("certificate"), QStringLiteral("PEM certificate chain to serve."),
         QStringLiteral("file")},
        {QStringLiteral("key"), QStringLiteral("PEM RSA key of the certificate."), QStringLiteral("file")},
    });
}

}  // namespace

int main(int argc, char** argv) {
    using namespace kestrum::simulator;
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    addOptions(parser);
    parser.process(application);

    QString error;
    bool portOk = false;
    bool speedOk = false;
    const uint port = parser.value(QStringLiteral("port")).toUInt(&portOk);
    const double speed = parser.value(QStringLiteral("speed")).toDouble(&speedOk);
    if (!portOk || port > 65535 || !speedOk || speed <= 0)
        return fail(QStringLiteral("bad --port or --speed"));
    const auto faults = FaultSchedule::parse(parser.values(QStringLiteral("fault")), &error);
    if (!faults) return fail(error);
    const auto tls = parser.isSet(QStringLiteral("certificate"))
                         ? TlsIdentity::fromFiles(parser.value(QStringLiteral("certificate")),
                                                  parser.value(QStringLiteral("key")), &error)
                         : TlsIdentity::selfSigned(&error);
    if (!tls) return fail(error);

    std::unique_ptr<AnswerSource> source;
    qint64 clockStartDelayMs = 0;
    if (parser.isSet(QStringLiteral("captures"))) {
        source = std::make_unique<CapturedMatch>(QDir(parser.value(QStringLiteral("captures"))),
                                                 parser.isSet(QStringLiteral("replay")));
    } else if (parser.isSet(QStringLiteral("script"))) {
        auto script = MatchScript::load(parser.value(QStringLiteral("script")), &error);
        if (!script) return fail(error);
        auto match = std::make_unique<SimulatedMatch>(std::move(*script), speed);
        clockStartDelayMs = match->clockStartDelayMs();
        source = std::move(match);
    } else {
        return fail(QStringLiteral("give --script FILE or --captures DIR"));
    }

    const qint64 startedAtMs = QDateTime::currentMSecsSinceEpoch();
    SimulatorServer server(*source, *faults, *tls, static_cast<quint16>(port));
    if (!server.start(&error))
        return fail(QStringLiteral("cannot listen on 127.0.0.1:%1: %2").arg(port).arg(error));
    quitOnTerminationSignals(application);
    printLine(QStringLiteral("listening on 127.0.0.1:%1").arg(server.port()));
    printLine(QStringLiteral("game clock starts at %1").arg(startedAtMs + clockStartDelayMs));
    return application.exec();
}
