// kestrum: the recorder. It lives beside the game with no window of its own yet: it watches for the
// game, records it, and saves the movie and its session document. It quits on SIGTERM or SIGINT only
// after an active recording has been finalised and saved.
#include "app/RecordingSide.h"
#include "app/TerminationSignals.h"
#include "base/async/Job.h"

#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>

namespace {

// Without any display the application still runs (and reports that capture is unavailable) rather than
// refusing to start.
void chooseOffscreenWithoutDisplay() {
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) return;
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }
}

void printLine(const QString& line) {
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace kestrum;
    chooseOffscreenWithoutDisplay();
    QGuiApplication application(argc, argv);
    QGuiApplication::setOrganizationName(QStringLiteral("Kestrum"));
    QGuiApplication::setApplicationName(QStringLiteral("Kestrum"));
    QGuiApplication::setQuitOnLastWindowClosed(false);

    RecordingSide recordingSide(makePlatformServices());
    printLine(QStringLiteral("Kestrum is running; recordings go to ") +
              recordingSide.folderStore().folderPath());
    QObject::connect(
        &recordingSide.coordinator(), &RecordingCoordinator::currentStatusChanged,
        [](RecordingStatus status) { printLine(QStringLiteral("Kestrum status: ") + rawValue(status)); });

    TerminationSignals terminationSignals;
    std::optional<Job<void>> termination;
    QObject::connect(&terminationSignals, &TerminationSignals::terminationRequested, [&](int) {
        if (termination) return;  // a second signal waits for the same finalisation
        printLine(QStringLiteral("Kestrum is quitting; finishing an active recording first"));
        termination = Job<void>::start([&](CancellationToken) -> QCoro::Task<void> {
            auto prepared = recordingSide.prepareForTermination();
            co_await std::move(prepared);
            QGuiApplication::quit();
        });
    });
    return QGuiApplication::exec();
}
