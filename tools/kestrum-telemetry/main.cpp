// kestrum-telemetry: the telemetry side of Kestrum from the command line. `convert` turns saved answers
// of the game's local service into timeline rows; `collect` runs the collector against a running
// service (the game, or kestrum-game-simulator) and prints the session document; `events` lists the
// rows of a saved session document.
#include "CollectCommand.h"
#include "ConvertCommand.h"
#include "EventsCommand.h"
#include "StderrSystemLog.h"

#include "base/log/CaptureLog.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>
#include <memory>

namespace {

QCoro::Task<void> collectAndQuit(QStringList arguments) {
    const int status = co_await kestrum::tools::runCollect(std::move(arguments));
    QCoreApplication::exit(status);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    const QString command = arguments.size() > 1 ? arguments.takeAt(1) : QString();
    kestrum::installCaptureSystemLog(std::make_shared<kestrum::tools::StderrSystemLog>());

    int status = 2;
    if (command == QLatin1String("convert")) {
        status = kestrum::tools::runConvert(arguments);
    } else if (command == QLatin1String("events")) {
        status = kestrum::tools::runEvents(arguments);
    } else if (command == QLatin1String("collect")) {
        QTimer::singleShot(0, [arguments] { collectAndQuit(arguments); });
        status = application.exec();
    } else {
        std::fprintf(stderr,
                     "usage: kestrum-telemetry convert --eventdata F --playerlist F --activeplayername F "
                     "[--elapsed S --gametime S]\n"
                     "       kestrum-telemetry convert --allgamedata F [--elapsed S --gametime S]\n"
                     "       kestrum-telemetry collect --seconds N [--port P]\n"
                     "       kestrum-telemetry events FILE\n");
    }
    kestrum::installCaptureSystemLog(nullptr);
    kestrum::waitForCaptureLogWrites();
    return status;
}
