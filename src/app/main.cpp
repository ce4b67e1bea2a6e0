// kestrum: the recorder. It lives beside the game with no window of its own yet: it watches for the
// game, records it, and saves the movie and its session document. One runs per user and settings profile:
// a later launch hands its request to the running one and exits 0. It quits on SIGTERM, SIGINT or the end
// of the session only after an active recording has been finalised and saved.
#include "app/RecordingSide.h"
#include "app/TerminationSignals.h"
#include "core/shell/KestrumAppDelegate.h"
#include "core/shell/SingleInstanceLaunch.h"
#include "platform/linux/instance/LocalSocketSingleInstanceChannel.h"
#include "platform/linux/x11/X11ApplicationWindows.h"

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
    // The toolkit reads and clears the launcher's startup id when it starts; a later launch passes it on.
    const QByteArray desktopStartupID = qgetenv("DESKTOP_STARTUP_ID");
    chooseOffscreenWithoutDisplay();
    QGuiApplication application(argc, argv);
    QGuiApplication::setOrganizationName(QStringLiteral("Kestrum"));
    QGuiApplication::setApplicationName(QStringLiteral("Kestrum"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // Installed first, so that a signal that comes while the application starts is kept and acted on once
    // the event loop runs, and never ends the process by the default action.
    TerminationSignals terminationSignals;

    X11ApplicationWindows windows;
    LocalSocketSingleInstanceChannel instanceChannel;
    SingleInstanceLaunch launch(instanceChannel);
    const ActivationToken launchToken = SingleInstanceLaunch::launchToken(
        desktopStartupID, desktopStartupID.isEmpty() ? windows.serverTimeMs() : std::nullopt);
    const std::optional<int> exitStatus = launch.claim(launchToken, [](const ActivationToken&) {
        // The review window comes with the review side; until then the request is only acknowledged.
        printLine(QStringLiteral("Kestrum: another launch asked for the review window"));
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

    KestrumAppDelegate delegate(
        windows, {{}, {}, {}, [&recordingSide] { return recordingSide.prepareForTermination(); }});
    delegate.applicationDidFinishLaunching();
    const auto requestTermination = [&delegate] {
        if (!delegate.isTerminationPending()) {
            printLine(QStringLiteral("Kestrum is quitting; finishing an active recording first"));
        }
        delegate.applicationShouldTerminate();  // a second request waits for the same finalisation
    };
    QObject::connect(&terminationSignals, &TerminationSignals::terminationRequested, requestTermination);
    const Subscription sessionEnding =
        recordingSide.services().sessionEndInhibitor->observeSessionEnding(requestTermination);
    QObject::connect(&delegate, &KestrumAppDelegate::terminationReplied, [&delegate] {
        delegate.applicationWillTerminate();
        QGuiApplication::quit();
    });
    return QGuiApplication::exec();
}
