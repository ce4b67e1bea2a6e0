#include "app/KestrumApp.h"

#include "app/MenuBarPanelWindow.h"
#include "app/SettingsWindow.h"
#include "base/log/CaptureLog.h"
#include "core/notifications/NotificationCenter.h"
#include "core/settings/UserDefaults.h"
#include "core/shell/BuildVersion.h"
#include "core/shell/PermissionTexts.h"
#include "platform/fake/FakeLeagueShareAudioRoute.h"
#include "ui/KestrumUi.h"
#include "ui/style/KestrumStyle.h"

#include <QApplication>
#include <QQmlEngine>

namespace kestrum {

namespace {

// On the offscreen platform (no display at all) nobody could see a window: the panel is not opened.
bool hasVisibleDesktop() {
    return QGuiApplication::platformName() != QLatin1String("offscreen");
}

LeagueShareAudioRoute& shareAudioRoute(PlatformServices& services,
                                       std::unique_ptr<LeagueShareAudioRoute>& silentRoute) {
    if (services.leagueShareAudioRoute) return *services.leagueShareAudioRoute;
    silentRoute = std::make_unique<FakeLeagueShareAudioRoute>();
    return *silentRoute;
}

}  // namespace

KestrumApp::KestrumApp(RecordingSide& recordingSide, ApplicationWindows& windows,
                       std::function<void()> showReviewWindow, QObject* parent)
    : QObject(parent),
      recordingSide_(recordingSide),
      windows_(windows),
      showReviewWindow_(std::move(showReviewWindow)),
      appearance_(UserDefaults::standard(), *recordingSide.services().desktopColorScheme),
      shareCoordinator_(LeagueShareEnvironment{
          *recordingSide.services().screenCaptureAccess, *recordingSide.services().shareableContent,
          *recordingSide.services().windowStreams, *recordingSide.services().workspace,
          shareAudioRoute(recordingSide.services(), silentAudioRoute_),
          LeagueShareSettings(UserDefaults::standard()), Clock::system()}),
      shareWindow_(shareCoordinator_, windows),
      delegate_(windows, {[this] { appearance_.apply(); }, [this] { dashboard().showDashboard(); },
                          [this] { shareCoordinator_.stop(); }, [this] { return prepareForTermination(); }}) {
    connect(&appearance_, &AppearanceController::appearanceChanged, this,
            [](bool isDark) { ui::KestrumStyle::instance().setDark(isDark); });
}

KestrumApp::~KestrumApp() = default;

void KestrumApp::start() {
    delegate_.applicationDidFinishLaunching();
    ui::KestrumStyle::instance().setDark(appearance_.isDark());
    sessionEnding_ =
        recordingSide_.services().sessionEndInhibitor->observeSessionEnding([this] { requestTermination(); });
    connect(&delegate_, &KestrumAppDelegate::terminationReplied, this, [this] {
        delegate_.applicationWillTerminate();
        QCoreApplication::quit();
    });

    RecordingCoordinator& coordinator = recordingSide_.coordinator();
    if (TrayIcon::isAvailable()) {
        trayIcon_ = std::make_unique<TrayIcon>(*recordingSide_.services().desktopColorScheme,
                                               coordinator.currentStatus());
        connect(&coordinator, &RecordingCoordinator::currentStatusChanged, trayIcon_.get(),
                &TrayIcon::setStatus);
        connect(trayIcon_.get(), &TrayIcon::clicked, this, &KestrumApp::openPanelAt);
        trayIcon_->show();
        logCaptureInfo(QStringLiteral("Kestrum is in the tray."));
    } else if (hasVisibleDesktop()) {
        logCaptureInfo(QStringLiteral("The desktop has no tray; Kestrum opens its panel as a window."));
        panel(true).showWindow();
    }
}

void KestrumApp::requestTermination() {
    delegate_.applicationShouldTerminate();
}

void KestrumApp::reopen(const ActivationToken& token) {
    // The delegate's reopen shows the review window; a launch's token goes with it so that the window
    // manager gives it the focus.
    if (token == ActivationToken{}) {
        delegate_.applicationShouldHandleReopen(false);
    } else {
        dashboard().showDashboard(token);
    }
}

void KestrumApp::showDashboard() {
    dashboard().showDashboard();
}

QCoro::Task<void> KestrumApp::prepareForTermination() {
    // The share's sink and stream go before the process does; the delegate has already asked it to stop.
    co_await shareCoordinator_.stopSharing();
    co_await recordingSide_.prepareForTermination();
}

void KestrumApp::startLeagueShare() {
    shareCoordinator_.start();  // nothing happens while it runs already
    shareWindow_.showWindow();
}

void KestrumApp::openPanelAt(QPoint pointer) {
    panel(false).toggleAt(pointer);
}

QQmlEngine& KestrumApp::engine() {
    if (!engine_) {
        engine_ = std::make_unique<QQmlEngine>();
        ui::registerQmlModules(*engine_);
    }
    return *engine_;
}

AppWindowPresenter& KestrumApp::presenter() {
    if (!presenter_) presenter_ = std::make_unique<AppWindowPresenter>(windows_);
    return *presenter_;
}

DashboardWindowController& KestrumApp::dashboard() {
    if (!dashboard_) {
        dashboard_ = std::make_unique<DashboardWindowController>(windows_, presenter(), showReviewWindow_);
    }
    return *dashboard_;
}

MenuBarModel& KestrumApp::menuBarModel() {
    if (!menuBarModel_) {
        panelStorage_ =
            std::make_unique<StorageUsageRefresh>(recordingSide_.storageBudget(), UserDefaults::standard(),
                                                  recordingSide_.folderStore(), NotificationCenter::shared());
        RecordingCoordinator& coordinator = recordingSide_.coordinator();
        menuBarModel_ = std::make_unique<MenuBarModel>(
            coordinator.currentStatus(), recordingSide_.permissions(), *panelStorage_, windows_, presenter(),
            MenuBarModel::Commands{[this] { dashboard().showDashboard(); },
                                   [this] { settingsWindow().show(); }, [this] { requestTermination(); }});
        connect(&coordinator, &RecordingCoordinator::currentStatusChanged, menuBarModel_.get(),
                &MenuBarModel::setStatus);
        menuBarModel_->attachLeagueShare(shareCoordinator_, {[this] { shareWindow_.showWindow(); },
                                                             [this] { shareWindow_.hideWindow(); }});
    }
    return *menuBarModel_;
}

MenuBarPanelWindow& KestrumApp::panel(bool ordinaryWindow) {
    if (!panel_) {
        using Kind = MenuBarPanelWindow::Kind;
        panel_ = std::make_unique<MenuBarPanelWindow>(
            engine(), menuBarModel(), ordinaryWindow ? Kind::ordinaryWindow : Kind::trayPanel);
        if (const QString errors = panel_->errors(); !errors.isEmpty()) logCaptureError(errors);
    }
    return *panel_;
}

SettingsWindow& KestrumApp::settingsWindow() {
    if (!settingsWindow_) {
        PlatformServices& services = recordingSide_.services();
        settingsModel_ = std::make_unique<SettingsModel>(SettingsModel::Environment{
            UserDefaults::standard(), recordingSide_.folderStore(), recordingSide_.permissions(),
            recordingSide_.storageBudget(), NotificationCenter::shared(), *services.fileActions,
            *services.autostart, Clock::system(), linuxPermissionTexts(), buildVersion()});
        settingsWindow_ = std::make_unique<SettingsWindow>(engine(), *settingsModel_);
        if (const QString errors = settingsWindow_->errors(); !errors.isEmpty()) logCaptureError(errors);
    }
    return *settingsWindow_;
}

}  // namespace kestrum
