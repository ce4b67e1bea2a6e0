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

QString MenuBarModel::shareNote() const {
    if (!permissions_.hasScreenAccess()) {
        return QStringLiteral("Screen Recording permission is required for Kestrum Share");
    }
    return QStringLiteral("Kestrum Share is not part of this version yet.");
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
