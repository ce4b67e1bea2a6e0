// kestrum: the recorder. It lives in the tray beside the game: it watches for the game, records it, and
// saves the movie and its session document; its panel and settings window open from the tray icon (or,
// on a desktop without a tray, the panel opens as a window). One runs per user and settings profile:
// a later launch hands its request to the running one and exits 0. It quits on SIGTERM, SIGINT or the end
// of the session only after an active recording has been finalised and saved.
#include "app/KestrumApp.h"
#include "app/RecordingSide.h"
#include "app/TerminationSignals.h"
#include "core/shell/KestrumAppDelegate.h"
#include "core/shell/SingleInstanceLaunch.h"
#include "platform/linux/instance/LocalSocketSingleInstanceChannel.h"
#include "platform/linux/x11/X11ApplicationWindows.h"
#include "ui/KestrumUi.h"

#include <QApplication>

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
    // The toolkit reads and clears the launcher's startup id when it starts; a later launch passes it on.
    const QByteArray desktopStartupID = qgetenv("DESKTOP_STARTUP_ID");
    chooseOffscreenWithoutDisplay();
    ui::useOpenGlSceneGraph();
    QApplication application(argc, argv);
    QGuiApplication::setOrganizationName(QStringLiteral("Kestrum"));
    QGuiApplication::setApplicationName(QStringLiteral("Kestrum"));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.tidemoss.Kestrum"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // Installed first, so that a signal that comes while the application starts is kept and acted on once
    // the event loop runs, and never ends the process by the default action.
    TerminationSignals terminationSignals;

    X11ApplicationWindows windows;
    LocalSocketSingleInstanceChannel instanceChannel;
    SingleInstanceLaunch launch(instanceChannel);
    const ActivationToken launchToken = SingleInstanceLaunch::launchToken(
        desktopStartupID, desktopStartupID.isEmpty() ? windows.serverTimeMs() : std::nullopt);
    KestrumApp* runningApp = nullptr;  // set once the application is composed, below
    const std::optional<int> exitStatus =
        launch.claim(launchToken, [&runningApp](const ActivationToken& token) {
            printLine(QStringLiteral("Kestrum: another launch asked for the review window"));
            if (runningApp) runningApp->reopen(token);
        });
    if (exitStatus) {
        printLine(QStringLiteral("Kestrum is already running; it was asked to show its review window"));
        return *exitStatus;
    }

    RecordingSide recordingSide(makePlatformServices());
    printLine(QStringLiteral("Kestrum is running; recordings go to ") +
              recordingSide.folderStore().folderPath());
    QObject::connect(
        &recordingSide.coordinator(), &RecordingCoordinator::currentStatusChanged,
        [](RecordingStatus status) { printLine(QStringLiteral("Kestrum status: ") + rawValue(status)); });

    // The review window is the review side's; this build has none yet, so "Open Dashboard" is logged.
    const std::function<void()> showReviewWindow;
    KestrumApp app(recordingSide, windows, showReviewWindow);
    runningApp = &app;
    QObject::connect(&terminationSignals, &TerminationSignals::terminationRequested, &app, [&app] {
        if (!app.delegate().isTerminationPending()) {
            printLine(QStringLiteral("Kestrum is quitting; finishing an active recording first"));
        }
        app.requestTermination();  // a second request waits for the same finalisation
    });
    app.start();
    printLine(app.isInTray() ? QStringLiteral("Kestrum is in the tray")
                             : QStringLiteral("Kestrum found no tray on this desktop"));
    return QApplication::exec();
}
