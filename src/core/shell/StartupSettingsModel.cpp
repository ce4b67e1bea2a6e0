#include "core/shell/StartupSettingsModel.h"

namespace kestrum {

StartupSettingsModel::StartupSettingsModel(AutostartEntry& entry, QObject* parent)
    : QObject(parent), entry_(entry), opensAtLogin_(entry.isEnabled()) {}

void StartupSettingsModel::setOpensAtLogin(bool opens) {
    const Status changed = entry_.setEnabled(opens);
    error_ = changed.ok() ? QString() : changed.error().description;
    opensAtLogin_ = entry_.isEnabled();
    emit this->changed();
}

void StartupSettingsModel::reload() {
    opensAtLogin_ = entry_.isEnabled();
    emit changed();
}

}  // namespace kestrum
