#include "core/shell/MenuBarModel.h"

#include "core/shell/ApplicationWindowKinds.h"
#include "core/shell/MenuBarStatusImage.h"
#include "core/shell/StorageStatusTexts.h"

#include <QMetaObject>
#include <QPointer>

#include <algorithm>

namespace kestrum {

MenuBarModel::MenuBarModel(RecordingStatus status, RecordingPermissions& permissions,
                           StorageUsageRefresh& storage, ApplicationWindows& windows,
                           AppWindowPresenter& presenter, Commands commands, QObject* parent)
    : QObject(parent),
      permissions_(permissions),
      storage_(storage),
      windows_(windows),
      presenter_(presenter),
      commands_(std::move(commands)),
      status_(status) {
    connect(&permissions_, &RecordingPermissions::changed, this, &MenuBarModel::changed);
    connect(&storage_, &StorageUsageRefresh::storageUsageChanged, this, &MenuBarModel::changed);
    const QPointer<MenuBarModel> self(this);
    keyObserver_ = windows_.observe(ApplicationWindows::Notice::windowDidBecomeKey,
                                    [self](const std::optional<ApplicationWindow>&) {
                                        if (!self) return;
                                        self->permissions_.refresh();
                                        self->lookForShareWindow();
                                    });
    // The closing window still counts as visible during the notice: look once it is gone.
    closeObserver_ = windows_.observe(
        ApplicationWindows::Notice::windowWillClose, [self](const std::optional<ApplicationWindow>&) {
            if (!self) return;
            QMetaObject::invokeMethod(
                self.data(), [self] { self->lookForShareWindow(); }, Qt::QueuedConnection);
        });
    lookForShareWindow();
}

QString MenuBarModel::statusImageName() const {
    return menuBarStatusImage(status_).name;
}

bool MenuBarModel::statusImageIsSystemSymbol() const {
    return menuBarStatusImage(status_).isSystemSymbol;
}

QString MenuBarModel::storageWarning() const {
    if (!storage_.storageUsage()) return {};  // a measure that has not come back leaves the line out
    return menuBarStorageWarning(*storage_.storageUsage()).value_or(QString());
}

QString MenuBarModel::storageWarningSymbol() const {
    return kStorageWarningSymbol;
}

MenuBarShareControls MenuBarModel::shareControls() const {
    MenuBarShareState state;
    state.hasCoordinator = shareCoordinator_ != nullptr;
    state.hasScreenAccess = permissions_.hasScreenAccess();
    state.isShareWindowVisible = isShareWindowVisible_;
    if (shareCoordinator_) {
        state.isRunning = shareCoordinator_->isRunning();
        state.status = shareCoordinator_->status();
    }
    return menuBarShareControls(state);
}

void MenuBarModel::attachLeagueShare(LeagueShareCoordinator& coordinator, ShareWindowCommands commands) {
    shareCoordinator_ = &coordinator;
    shareWindowCommands_ = std::move(commands);
    connect(&coordinator, &LeagueShareCoordinator::isRunningChanged, this, &MenuBarModel::changed);
    connect(&coordinator, &LeagueShareCoordinator::statusChanged, this, &MenuBarModel::changed);
    emit changed();
}

void MenuBarModel::toggleShare() {
    if (!shareCoordinator_) return;
    if (shareCoordinator_->isRunning() || isShareWindowVisible_) {
        shareCoordinator_->stop();
        if (isShareWindowVisible_ && shareWindowCommands_.hideShareWindow)
            shareWindowCommands_.hideShareWindow();
    } else {
        shareCoordinator_->start();
        if (shareWindowCommands_.showShareWindow) shareWindowCommands_.showShareWindow();
    }
    // The share window is shown behind the others and never becomes key: no notice tells of it.
    lookForShareWindow();
}

void MenuBarModel::togglePauseShare() {
    if (!shareCoordinator_) return;
    if (shareCoordinator_->isRunning()) {
        shareCoordinator_->stop();
    } else {
        shareCoordinator_->start();
    }
}

void MenuBarModel::setShareInformationShown(bool shown) {
    if (shown == isShareInformationShown_) return;
    isShareInformationShown_ = shown;
    emit changed();
}

void MenuBarModel::setStatus(RecordingStatus status) {
    if (status == status_) return;
    status_ = status;
    emit changed();
}

void MenuBarModel::appeared() {
    if (hasAppeared_) return;
    hasAppeared_ = true;
    storage_.refresh();
}

void MenuBarModel::openDashboard() {
    if (commands_.showDashboard) commands_.showDashboard();
}

void MenuBarModel::openSettings() {
    presenter_.present(std::nullopt, commands_.openSettingsWindow,
                       [windows = &windows_]() -> std::optional<ApplicationWindowID> {
                           const std::vector<ApplicationWindow> all = windows->windows();
                           const auto found = std::find_if(all.begin(), all.end(), isSettingsWindow);
                           if (found == all.end()) return std::nullopt;
                           return found->windowID;
                       });
}

void MenuBarModel::quit() {
    if (commands_.quit) commands_.quit();
}

void MenuBarModel::lookForShareWindow() {
    const std::vector<ApplicationWindow> all = windows_.windows();
    const bool visible = std::any_of(all.begin(), all.end(), [](const ApplicationWindow& window) {
        return window.isVisible && isShareWindow(window);
    });
    if (visible == isShareWindowVisible_) return;
    isShareWindowVisible_ = visible;
    emit changed();
}

}  // namespace kestrum
