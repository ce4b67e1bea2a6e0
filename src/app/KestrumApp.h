#pragma once

#include "app/DashboardWindowController.h"
#include "app/LeagueShareWindowController.h"
#include "app/RecordingSide.h"
#include "app/TrayIcon.h"
#include "core/share/LeagueShareCoordinator.h"
#include "core/shell/AppWindowPresenter.h"
#include "core/shell/AppearanceController.h"
#include "core/shell/KestrumAppDelegate.h"
#include "core/shell/MenuBarModel.h"
#include "core/shell/SettingsModel.h"
#include "core/shell/StorageUsageRefresh.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

class QQmlEngine;

namespace kestrum {

class MenuBarPanelWindow;
class SettingsWindow;

// The application as the user meets it: the delegate (launch, quit, task-switcher rules), the tray icon
// with its panel, the settings window, the review window's controller and the appearance, over the
// recording side. The tray icon is made at start; the QML engine, the panel, the settings window and
// their models on their first use, so no Qt Quick window or GL context exists before the user opens one.
// League Share's coordinator is made at start, idle until started; its window on its first use.
// Without a tray the panel opens at start as an ordinary window, so that the user always has a way in.
//
// Quitting (the panel's "Quit", SIGTERM, SIGINT, the end of the session) goes through the delegate: an
// active recording is finalised and saved first, then the application quits.
//
// Threads: main thread, with a QApplication. The recording side and the windows port must outlive it.
class KestrumApp : public QObject {
    Q_OBJECT

  public:
    // `showReviewWindow` builds the review window on its first call and shows it; empty without the
    // review side.
    KestrumApp(RecordingSide& recordingSide, ApplicationWindows& windows,
               std::function<void()> showReviewWindow, QObject* parent = nullptr);
    ~KestrumApp() override;

    // Finishes the launch: the delegate's launch steps, the quit's wiring, and the tray icon or, without
    // a tray, the panel as a window.
    void start();

    // A quit request from anywhere; a second one waits for the same finalisation.
    void requestTermination();
    // Another launch asked for the review window.
    void reopen(const ActivationToken& token);
    // Brings the review window to the front, as "Open Dashboard" does (the launch's --dashboard).
    void showDashboard();
    // Starts League Share with its window, as the panel's "Start Kestrum Share" does (the launch's
    // --share); a share that runs already only shows its window again.
    void startLeagueShare();

    void openPanelAt(QPoint pointer);

    KestrumAppDelegate& delegate() { return delegate_; }
    // Whether the icon went to the desktop's tray (else the panel opened as a window, or, with no
    // display at all, nothing shows).
    bool isInTray() const { return trayIcon_ != nullptr; }

  private:
    // League Share's stop, awaited, then the recording side's.
    QCoro::Task<void> prepareForTermination();
    QQmlEngine& engine();
    AppWindowPresenter& presenter();
    DashboardWindowController& dashboard();
    MenuBarModel& menuBarModel();
    SettingsWindow& settingsWindow();
    MenuBarPanelWindow& panel(bool ordinaryWindow);

    RecordingSide& recordingSide_;
    ApplicationWindows& windows_;
    const std::function<void()> showReviewWindow_;
    AppearanceController appearance_;
    // League Share's sound when the platform has no route of its own: a route that carries nothing.
    std::unique_ptr<LeagueShareAudioRoute> silentAudioRoute_;
    LeagueShareCoordinator shareCoordinator_;
    LeagueShareWindowController shareWindow_;
    KestrumAppDelegate delegate_;
    Subscription sessionEnding_;
    // Made on first use, in this order of dependence; main thread.
    std::unique_ptr<TrayIcon> trayIcon_;
    std::unique_ptr<QQmlEngine> engine_;
    std::unique_ptr<AppWindowPresenter> presenter_;
    std::unique_ptr<DashboardWindowController> dashboard_;
    std::unique_ptr<StorageUsageRefresh> panelStorage_;
    std::unique_ptr<MenuBarModel> menuBarModel_;
    std::unique_ptr<MenuBarPanelWindow> panel_;
    std::unique_ptr<SettingsModel> settingsModel_;
    std::unique_ptr<SettingsWindow> settingsWindow_;
};

}  // namespace kestrum
