// kestrum-game-simulator: a stand-in for the game. By default it is the game itself: a window that shows
// the game clock in a stripe, a tone at every game second, and the local HTTPS data service, driven by a
// match script or by saved answers of a real game, with switches for the service's faults; a scripted game
// ends a few seconds after its clock stops. With --client it is only the League client's process.
// run-game.sh, beside the binary, starts it under the process name of the game or of the client.
// With --art-host PORT it also serves a stand-in of the Data Dragon host over plain HTTP; given alone, that
// is all it does.
#include "ArtHostAnswers.h"
#include "CapturedMatch.h"
#include "FaultSchedule.h"
#include "GameClock.h"
#include "GameWindow.h"
#include "SimulatedMatch.h"
#include "SimulatorServer.h"
#include "TlsIdentity.h"
#include "TonePlayer.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QTimer>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>

namespace {

using namespace kestrum::simulator;

// After a scripted game's clock stops, the end state is served this long (real time) before the
// simulator exits, so that a client polling a few times a second still reads it.
constexpr int kEndGraceMs = 4000;
// The clock stripe needs cells of at least 2 pixels: 80 cells a width.
constexpr int kSmallestWindowSide = 160;

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
    parser.setApplicationDescription(QStringLiteral(
        "Plays the game: its window, its sound and its local data service on 127.0.0.1 over HTTPS."));
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
         QStringLiteral("[endpoint:]slow|hang|malformed|http500|closed:from:to (real seconds)."),
         QStringLiteral("switch")},
        {QStringLiteral("certificate"), QStringLiteral("PEM certificate chain to serve."),
         QStringLiteral("file")},
        {QStringLiteral("key"), QStringLiteral("PEM RSA key of the certificate."), QStringLiteral("file")},
        {QStringLiteral("window-size"), QStringLiteral("Size of the game window (default 1280x720)."),
         QStringLiteral("WxH"), QStringLiteral("1280x720")},
        {QStringLiteral("no-window"), QStringLiteral("Serve the data service only, with no window.")},
        {QStringLiteral("window-gap"),
         QStringLiteral("Destroy the window FROM real seconds after the start, and show a new one SECONDS "
                        "later."),
         QStringLiteral("FROM:SECONDS")},
        {QStringLiteral("no-sound"), QStringLiteral("Play no tone.")},
        {QStringLiteral("client"), QStringLiteral("Be the League client only: no window, no service.")},
        {QStringLiteral("art-host"),
         QStringLiteral("Also serve a stand-in of the Data Dragon host over HTTP on 127.0.0.1:PORT (0: any "
                        "free port); alone, serve only that."),
         QStringLiteral("port")},
    });
}

bool hasSwitch(int argc, char** argv, const char* name) {
    const std::size_t length = std::strlen(name);
    for (int index = 1; index < argc; ++index) {
        // "--name" alone or "--name=value".
        if (std::strncmp(argv[index], name, length) == 0 &&
            (argv[index][length] == '\0' || argv[index][length] == '=')) {
            return true;
        }
    }
    return false;
}

// The window is an X11 window (the recorder captures X11 and XWayland windows); without a display the
// game runs without one.
bool useX11Display() {
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) return true;
    if (qEnvironmentVariableIsEmpty("DISPLAY")) return false;
    qputenv("QT_QPA_PLATFORM", "xcb");
    return true;
}

std::optional<QSize> parseWindowSize(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch()) return std::nullopt;
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    if (size.width() < kSmallestWindowSide || size.height() < kSmallestWindowSide) return std::nullopt;
    return size;
}

struct GameOptions {
    quint16 port = 2999;
    double speed = 1;
    FaultSchedule faults;
    QSslConfiguration tls;
    QSize windowSize;
};

std::optional<GameOptions> readGameOptions(const QCommandLineParser& parser, QString* error) {
    bool portOk = false;
    bool speedOk = false;
    const uint port = parser.value(QStringLiteral("port")).toUInt(&portOk);
    const double speed = parser.value(QStringLiteral("speed")).toDouble(&speedOk);
    if (!portOk || port > 65535 || !speedOk || speed <= 0) {
        *error = QStringLiteral("bad --port or --speed");
        return std::nullopt;
    }
    const std::optional<QSize> windowSize = parseWindowSize(parser.value(QStringLiteral("window-size")));
    if (!windowSize) {
        *error =
            QStringLiteral("bad --window-size: give WxH, each side at least %1").arg(kSmallestWindowSide);
        return std::nullopt;
    }
    auto faults = FaultSchedule::parse(parser.values(QStringLiteral("fault")), error);
    if (!faults) return std::nullopt;
    auto tls = parser.isSet(QStringLiteral("certificate"))
                   ? TlsIdentity::fromFiles(parser.value(QStringLiteral("certificate")),
                                            parser.value(QStringLiteral("key")), error)
                   : TlsIdentity::selfSigned(error);
    if (!tls) return std::nullopt;
    return GameOptions{static_cast<quint16>(port), speed, std::move(*faults), std::move(*tls), *windowSize};
}

// The clock and the answers of the game that the options name. Saved answers have no clock of their own:
// their window counts from the start, with no loading and no end.
bool makeGame(const QCommandLineParser& parser, double speed, std::unique_ptr<GameClock>& clock,
              std::unique_ptr<AnswerSource>& source, QString* error) {
    if (parser.isSet(QStringLiteral("captures"))) {
        clock = std::make_unique<GameClock>(0, std::numeric_limits<double>::infinity(), speed);
        source = std::make_unique<CapturedMatch>(QDir(parser.value(QStringLiteral("captures"))),
                                                 parser.isSet(QStringLiteral("replay")));
        return true;
    }
    if (!parser.isSet(QStringLiteral("script"))) {
        *error = QStringLiteral("give --script FILE or --captures DIR");
        return false;
    }
    auto script = MatchScript::load(parser.value(QStringLiteral("script")), error);
    if (!script) return false;
    clock = std::make_unique<GameClock>(script->loadingSeconds, script->durationSeconds, speed);
    source = std::make_unique<SimulatedMatch>(std::move(*script), *clock);
    return true;
}

std::unique_ptr<TonePlayer> startTone(const GameClock& clock) {
    QString reason;
    auto tone = TonePlayer::start(clock, &reason);
    printLine(tone ? QStringLiteral("a %1 Hz tone plays at every game second").arg(TonePlayer::kToneHz)
                   : QStringLiteral("no sound server (%1): the game plays no sound").arg(reason));
    return tone;
}

void quitAfterTheEnd(const GameClock& clock) {
    const std::optional<qint64> endNs = clock.endElapsedNs();
    if (!endNs) return;
    const qint64 delayMs = std::max<qint64>(*endNs - clock.elapsedNs(), 0) / 1'000'000 + kEndGraceMs;
    QTimer::singleShot(std::chrono::milliseconds(delayMs), QCoreApplication::instance(), [] {
        printLine(QStringLiteral("the game is over"));
        QCoreApplication::quit();
    });
}

// The art host's stand-in, when asked for: listening before the function returns, with its address printed.
struct ArtHost {
    ArtHostAnswers answers;
    std::unique_ptr<SimulatorServer> server;
};

std::optional<std::unique_ptr<ArtHost>> startArtHost(const QCommandLineParser& parser, QString* error) {
    if (!parser.isSet(QStringLiteral("art-host"))) return std::unique_ptr<ArtHost>();
    bool portOk = false;
    const uint port = parser.value(QStringLiteral("art-host")).toUInt(&portOk);
    if (!portOk || port > 65535) {
        *error = QStringLiteral("bad --art-host: give a port number (0 for any free port)");
        return std::nullopt;
    }
    auto host = std::make_unique<ArtHost>();
    host->server = std::make_unique<SimulatorServer>(host->answers, FaultSchedule(), std::nullopt,
                                                     static_cast<quint16>(port));
    if (!host->server->start(error)) {
        *error = QStringLiteral("cannot listen on 127.0.0.1:%1 for the art host: %2").arg(port).arg(*error);
        return std::nullopt;
    }
    printLine(QStringLiteral("art host on http://127.0.0.1:%1").arg(host->server->port()));
    return host;
}

// "FROM:SECONDS": the window is destroyed (as a crashed renderer's is) and another made later. The
// application must not quit on its last window meanwhile.
void scheduleWindowGap(const QString& gap, std::unique_ptr<GameWindow>& window,
                       const std::function<void()>& showNewWindow) {
    const QStringList parts = gap.split(QLatin1Char(':'));
    if (parts.size() != 2) return;
    const int fromMs = static_cast<int>(parts[0].toDouble() * 1000);
    const int gapMs = static_cast<int>(parts[1].toDouble() * 1000);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QTimer::singleShot(fromMs, [&window, gapMs, showNewWindow] {
        window.reset();
        printLine(QStringLiteral("window destroyed"));
        QTimer::singleShot(gapMs, showNewWindow);
    });
}

int runGame(QCoreApplication& application, const QCommandLineParser& parser, bool showWindow) {
    QString error;
    const std::optional<GameOptions> options = readGameOptions(parser, &error);
    if (!options) return fail(error);
    std::unique_ptr<GameClock> clock;
    std::unique_ptr<AnswerSource> source;
    if (!makeGame(parser, options->speed, clock, source, &error)) return fail(error);

    const qint64 startedAtMs = QDateTime::currentMSecsSinceEpoch();
    SimulatorServer server(*source, options->faults, options->tls, options->port);
    if (!server.start(&error)) {
        return fail(QStringLiteral("cannot listen on 127.0.0.1:%1: %2").arg(options->port).arg(error));
    }
    printLine(QStringLiteral("listening on 127.0.0.1:%1").arg(server.port()));
    printLine(QStringLiteral("game clock starts at %1").arg(startedAtMs + clock->clockStartDelayMs()));

    std::unique_ptr<GameWindow> window;
    const auto showNewWindow = [&] {
        window = std::make_unique<GameWindow>(*clock, options->windowSize);
        window->show();
        printLine(QStringLiteral("window \"%1\" shown at %2x%3")
                      .arg(QString::fromLatin1(GameWindow::kTitle))
                      .arg(options->windowSize.width())
                      .arg(options->windowSize.height()));
    };
    if (showWindow) {
        showNewWindow();
        scheduleWindowGap(parser.value(QStringLiteral("window-gap")), window, showNewWindow);
    } else if (!parser.isSet(QStringLiteral("no-window"))) {
        printLine(QStringLiteral("no display: the game runs without a window"));
    }
    const std::unique_ptr<TonePlayer> tone =
        parser.isSet(QStringLiteral("no-sound")) ? nullptr : startTone(*clock);
    quitAfterTheEnd(*clock);
    const int status = application.exec();
    if (window) {
        printLine(QStringLiteral("painted %1 frames in %2 s")
                      .arg(window->framesPainted())
                      .arg(window->secondsShown(), 0, 'f', 1));
    }
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    const bool client = hasSwitch(argc, argv, "--client");
    const bool showWindow = !client && !hasSwitch(argc, argv, "--no-window") && useX11Display();
    // The art host draws text into its tiles, which takes a GUI application; off screen when no window.
    const bool drawsArt = hasSwitch(argc, argv, "--art-host");
    if (drawsArt && !showWindow && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    std::unique_ptr<QCoreApplication> application;
    if (showWindow || drawsArt) {
        application = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        application = std::make_unique<QCoreApplication>(argc, argv);
    }
    QCommandLineParser parser;
    addOptions(parser);
    parser.process(*application);
    quitOnTerminationSignals(*application);
    if (client) {
        printLine(QStringLiteral("the League client runs until SIGTERM"));
        return application->exec();
    }
    QString error;
    const std::optional<std::unique_ptr<ArtHost>> artHost = startArtHost(parser, &error);
    if (!artHost) return fail(error);
    const bool gameGiven = parser.isSet(QStringLiteral("script")) || parser.isSet(QStringLiteral("captures"));
    if (*artHost && !gameGiven) {
        printLine(QStringLiteral("serving only the art host until SIGTERM"));
        return application->exec();
    }
    return runGame(*application, parser, showWindow);
}
