// kestrum: the recorder. It lives in the tray beside the game: it watches for the game, records it, and
// saves the movie and its session document; its panel, settings and review windows open from the tray icon
// (or, on a desktop without a tray, the panel opens as a window). With --dashboard the review window opens
// at launch (see DashboardLaunchOptions for the options that set it up and take its screenshot); with
// --share League Share starts with its window, as the panel's command does. One runs
// per user and settings profile: a later launch hands its request to the running one and exits 0. It quits
// on SIGTERM, SIGINT or the end of the session only after an active recording has been finalised and saved.
#include "app/DashboardLaunchOptions.h"
#include "app/DashboardScreenshotScript.h"
#include "app/DashboardWindow.h"
#include "app/KestrumApp.h"
#include "app/RecordingSide.h"
#include "app/ShellScreens.h"
#include "app/TerminationSignals.h"
#include "base/async/Detached.h"
#include "core/settings/SettingsKeys.h"
#include "core/settings/UserDefaults.h"
#include "core/shell/KestrumAppDelegate.h"
#include "core/shell/ShellWindowGeometry.h"
#include "core/shell/SingleInstanceLaunch.h"
#include "platform/linux/instance/LocalSocketSingleInstanceChannel.h"
#include "platform/linux/x11/X11ApplicationWindows.h"
#include "ui/KestrumUi.h"
#include "ui/style/KestrumStyle.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

constexpr int kFinishDetachedWorkLimitMs = 5'000;

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

// The program's arguments as given, before any application exists.
QStringList argumentsOf(int argc, char** argv) {
    QStringList arguments;
    for (int index = 0; index < argc; ++index) arguments.append(QString::fromLocal8Bit(argv[index]));
    return arguments;
}

// The review window as the options ask: shown, set up, and with a screenshot taken if asked for. Null
// when its content did not load.
std::unique_ptr<kestrum::DashboardWindow> openDashboard(kestrum::RecordingFolderStore& folders,
                                                        const kestrum::DashboardLaunchOptions& options) {
    using namespace kestrum;
    if (options.artHost)
        UserDefaults::standard().setString(options.artHost->toString(), SettingsKeys::dataDragonBaseAddress);
    if (options.dark) ui::KestrumStyle::instance().setDark(*options.dark);
    auto window = std::make_unique<DashboardWindow>(folders);
    if (options.size) {
        window->view().resize(*options.size);
    } else {
        const std::optional<ScreenFrames> screen = screenFrames(QGuiApplication::primaryScreen());
        const QSizeF size = dashboardContentSize(screen);
        window->view().resize(size.toSize());
        if (const std::optional<QPointF> origin = centredWindowOrigin(size, screen))
            window->view().setPosition(origin->toPoint());
    }
    if (!window->show()) return nullptr;
    auto* script = new DashboardScreenshotScript(*window, options, window.get());
    script->start();
    return window;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace kestrum;
    // The toolkit reads and clears the launcher's startup id when it starts; a later launch passes it on.
    const QByteArray desktopStartupID = qgetenv("DESKTOP_STARTUP_ID");
    const auto parsed = DashboardLaunchOptions::parse(argumentsOf(argc, argv));
    if (const QString* error = std::get_if<QString>(&parsed)) {
        std::fprintf(stderr, "kestrum: %s\n", qPrintable(*error));
        return 2;
    }
    const DashboardLaunchOptions& dashboardOptions = std::get<DashboardLaunchOptions>(parsed);
    const bool startsLeagueShare = argumentsOf(argc, argv).contains(QStringLiteral("--share"));
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
    using LaunchRequest = SingleInstanceChannel::Request;
    const LaunchRequest launchRequest{launchToken, startsLeagueShare ? LaunchRequest::Kind::startLeagueShare
                                                                     : LaunchRequest::Kind::showDashboard};
    const std::optional<int> exitStatus =
        launch.claim(launchRequest, [&runningApp](const LaunchRequest& request) {
            if (request.kind == LaunchRequest::Kind::startLeagueShare) {
                printLine(QStringLiteral("Kestrum: another launch asked for League Share"));
                if (runningApp) runningApp->startLeagueShare();
                return;
            }
            printLine(QStringLiteral("Kestrum: another launch asked for the review window"));
            if (runningApp) runningApp->reopen(request.token);
        });
    if (exitStatus) {
        printLine(startsLeagueShare
                      ? QStringLiteral("Kestrum is already running; it was asked to start League Share")
                      : QStringLiteral("Kestrum is already running; it was asked to show its review window"));
        return *exitStatus;
    }

    RecordingSide recordingSide(makePlatformServices());
    printLine(QStringLiteral("Kestrum is running; recordings go to ") +
              recordingSide.folderStore().folderPath());
    QObject::connect(
        &recordingSide.coordinator(), &RecordingCoordinator::currentStatusChanged,
        [](RecordingStatus status) { printLine(QStringLiteral("Kestrum status: ") + rawValue(status)); });

    // The review window is made on its first request (no Qt Quick window before the user asks for one),
    // then shown again as it is.
    std::unique_ptr<DashboardWindow> dashboard;
    bool dashboardFailed = false;
    const std::function<void()> showReviewWindow = [&] {
        if (dashboard) {
            dashboard->show();
        } else if (!dashboardFailed) {
            dashboard = openDashboard(recordingSide.folderStore(), dashboardOptions);
            dashboardFailed = !dashboard;
            if (dashboardFailed) printLine(QStringLiteral("Kestrum: the review window did not load"));
        }
    };
    KestrumApp app(recordingSide, windows, showReviewWindow);
    runningApp = &app;
    QObject::connect(&terminationSignals, &TerminationSignals::terminationRequested, &app, [&app] {
        if (!app.delegate().isTerminationPending()) {
            printLine(QStringLiteral("Kestrum is quitting; finishing an active recording first"));
        }
        app.requestTermination();  // a second request waits for the same finalisation
    });
    app.start();
    if (dashboardOptions.opensDashboard) {
        app.showDashboard();
        if (dashboardFailed) return 1;
    }
    if (startsLeagueShare) {
        app.startLeagueShare();
        printLine(QStringLiteral("Kestrum Share started"));
    }
    printLine(app.isInTray() ? QStringLiteral("Kestrum is in the tray")
                             : QStringLiteral("Kestrum found no tray on this desktop"));
    const int status = QApplication::exec();
    // The review window's loads may still run; the wait is bounded so that a stuck read never holds the
    // quit (the system's own shutdown would then end the process).
    if (!finishDetachedWork(kFinishDetachedWorkLimitMs))
        printLine(QStringLiteral("Kestrum: quitting with background work still running"));
    return status;
}
