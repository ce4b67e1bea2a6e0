#pragma once

#include "core/recording/RecordingPermissions.h"
#include "core/recording/RecordingStatus.h"
#include "core/share/LeagueShareCoordinator.h"
#include "core/shell/AppWindowPresenter.h"
#include "core/shell/MenuBarShareControls.h"
#include "core/shell/StorageUsageRefresh.h"
#include "platform/ports/ApplicationWindows.h"

#include <QObject>
#include <QPointer>

#include <functional>

namespace kestrum {

// The tray's panel: what the recorder is doing, the storage warning, the permission line, and the
// commands for the review window, League Share, the settings and quitting. It reads state others own
// and keeps only what it draws.
//
// The panel is a column of fixed width (300) with a padding of 16: "Kestrum" with the status word and
// mark; the storage warning when there is one; "Open Settings to allow Screen Recording access." while
// screen capture is not possible; "Open Dashboard"; the League Share controls; "Settings" and "Quit" side
// by side. The League Share controls (MenuBarShareControls.h) start and stop the share with its window,
// pause and resume it, and tell its status; in a build without League Share (no coordinator attached)
// they are shown disabled, with a line that says so.
//
// Whenever a window of the application gains the focus, the panel reads the permissions again and looks
// for a visible share window; when one closes, it looks for the share window again.
//
// Threads: main thread. Everything given must outlive it.
class MenuBarModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(int width READ width CONSTANT)
    Q_PROPERTY(int padding READ padding CONSTANT)
    Q_PROPERTY(QString statusWord READ statusWord NOTIFY changed)
    Q_PROPERTY(QString statusImageName READ statusImageName NOTIFY changed)
    Q_PROPERTY(bool statusImageIsSystemSymbol READ statusImageIsSystemSymbol NOTIFY changed)
    Q_PROPERTY(bool showsStorageWarning READ showsStorageWarning NOTIFY changed)
    Q_PROPERTY(QString storageWarning READ storageWarning NOTIFY changed)
    Q_PROPERTY(QString storageWarningSymbol READ storageWarningSymbol CONSTANT)
    Q_PROPERTY(bool showsPermissionLine READ showsPermissionLine NOTIFY changed)
    Q_PROPERTY(QString permissionLine READ permissionLine CONSTANT)
    Q_PROPERTY(QString openDashboardTitle READ openDashboardTitle CONSTANT)
    Q_PROPERTY(bool isLeagueShareAvailable READ isLeagueShareAvailable NOTIFY changed)
    Q_PROPERTY(QString startShareTitle READ startShareTitle NOTIFY changed)
    Q_PROPERTY(QString startShareHelp READ startShareHelp NOTIFY changed)
    Q_PROPERTY(bool showsPauseShare READ showsPauseShare NOTIFY changed)
    Q_PROPERTY(QString pauseShareTitle READ pauseShareTitle NOTIFY changed)
    Q_PROPERTY(QString pauseShareSymbol READ pauseShareSymbol NOTIFY changed)
    Q_PROPERTY(bool showsShareStatus READ showsShareStatus NOTIFY changed)
    Q_PROPERTY(QString shareStatusTitle READ shareStatusTitle NOTIFY changed)
    Q_PROPERTY(QString shareStatusSymbol READ shareStatusSymbol NOTIFY changed)
    Q_PROPERTY(QString shareNote READ shareNote NOTIFY changed)
    Q_PROPERTY(bool isShareWindowVisible READ isShareWindowVisible NOTIFY changed)
    Q_PROPERTY(QString aboutShareTitle READ aboutShareTitle CONSTANT)
    Q_PROPERTY(QString aboutShareHeader READ aboutShareHeader CONSTANT)
    Q_PROPERTY(QString aboutShareSymbol READ aboutShareSymbol CONSTANT)
    Q_PROPERTY(QString aboutShareText READ aboutShareText CONSTANT)
    Q_PROPERTY(bool isShareInformationShown READ isShareInformationShown WRITE setShareInformationShown NOTIFY
                   changed)
    Q_PROPERTY(QString settingsTitle READ settingsTitle CONSTANT)
    Q_PROPERTY(QString quitTitle READ quitTitle CONSTANT)

  public:
    // The commands' effects outside the panel. Each is called on the main thread.
    struct Commands {
        // DashboardWindowController's showDashboard().
        std::function<void()> showDashboard;
        // The toolkit's action that opens (or raises) the settings window.
        std::function<void()> openSettingsWindow;
        // The quit request: the delegate's applicationShouldTerminate().
        std::function<void()> quit;
    };

    // The share window's effects: shown (created once, kept) and hidden. Main thread.
    struct ShareWindowCommands {
        std::function<void()> showShareWindow;
        std::function<void()> hideShareWindow;
    };

    MenuBarModel(RecordingStatus status, RecordingPermissions& permissions, StorageUsageRefresh& storage,
                 ApplicationWindows& windows, AppWindowPresenter& presenter, Commands commands,
                 QObject* parent = nullptr);

    QString title() const { return QStringLiteral("Kestrum"); }
    int width() const { return 300; }
    int padding() const { return 16; }
    QString statusWord() const { return rawValue(status_); }
    QString statusImageName() const;
    bool statusImageIsSystemSymbol() const;
    bool showsStorageWarning() const { return !storageWarning().isEmpty(); }
    QString storageWarning() const;
    QString storageWarningSymbol() const;
    bool showsPermissionLine() const { return status_ == RecordingStatus::permissionRequired; }
    QString permissionLine() const {
        return QStringLiteral("Open Settings to allow Screen Recording access.");
    }
    QString openDashboardTitle() const { return QStringLiteral("Open Dashboard"); }
    // Whether the main share command (start or stop) can be used.
    bool isLeagueShareAvailable() const { return shareControls().isCommandEnabled; }
    QString startShareTitle() const { return shareControls().commandTitle; }
    QString startShareHelp() const { return shareControls().commandHelp; }
    bool showsPauseShare() const { return shareControls().showsPause; }
    QString pauseShareTitle() const { return shareControls().pauseTitle; }
    QString pauseShareSymbol() const { return shareControls().pauseSymbol; }
    bool showsShareStatus() const { return shareControls().showsStatus; }
    QString shareStatusTitle() const { return shareControls().statusTitle; }
    QString shareStatusSymbol() const { return shareControls().statusSymbol; }
    // Why the share controls cannot start a share; empty when they can.
    QString shareNote() const { return shareControls().note; }
    bool isShareWindowVisible() const { return isShareWindowVisible_; }
    QString aboutShareTitle() const { return QStringLiteral("About Kestrum Share"); }
    QString aboutShareHeader() const { return QStringLiteral("Kestrum Share"); }
    QString aboutShareSymbol() const { return QStringLiteral("rectangle.on.rectangle"); }
    QString aboutShareText() const {
        return QStringLiteral(
            "A private window for sharing League in Discord or OBS without showing your desktop or other "
            "apps.");
    }
    bool isShareInformationShown() const { return isShareInformationShown_; }
    void setShareInformationShown(bool shown);
    QString settingsTitle() const { return QStringLiteral("Settings"); }
    QString quitTitle() const { return QStringLiteral("Quit"); }

    // The coordinator's published status.
    void setStatus(RecordingStatus status);

    // Makes the share controls live. Once, before the panel is shown; both must outlive the model.
    void attachLeagueShare(LeagueShareCoordinator& coordinator, ShareWindowCommands commands);

    // The panel appeared: the first time, storage is measured (later changes refresh it by themselves).
    Q_INVOKABLE void appeared();
    Q_INVOKABLE void openDashboard();
    // Brings the settings window to the front though the panel has the focus (AppWindowPresenter).
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void quit();
    // "Start Kestrum Share" (the share and its window) or "Stop Kestrum Share" (both).
    Q_INVOKABLE void toggleShare();
    // "Pause Kestrum Share" (the share stops, the window stays) or "Resume Kestrum Share".
    Q_INVOKABLE void togglePauseShare();

  signals:
    void changed();

  private:
    void lookForShareWindow();
    MenuBarShareControls shareControls() const;

    RecordingPermissions& permissions_;
    StorageUsageRefresh& storage_;
    ApplicationWindows& windows_;
    AppWindowPresenter& presenter_;
    const Commands commands_;
    // Main thread; null until League Share is attached.
    QPointer<LeagueShareCoordinator> shareCoordinator_;
    ShareWindowCommands shareWindowCommands_;
    Subscription keyObserver_;
    Subscription closeObserver_;
    // Main thread.
    RecordingStatus status_;
    bool isShareWindowVisible_ = false;
    bool isShareInformationShown_ = false;
    bool hasAppeared_ = false;
};

}  // namespace kestrum
