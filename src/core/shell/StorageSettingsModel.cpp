#include "core/shell/StorageSettingsModel.h"

#include "core/settings/SettingsKeys.h"
#include "core/settings/SettingsReaders.h"
#include "core/shell/StorageStatusTexts.h"

namespace kestrum {

StorageSettingsModel::StorageSettingsModel(UserDefaults& defaults, StorageUsageRefresh& refresh,
                                           QObject* parent)
    : QObject(parent),
      refresh_(refresh),
      limitEnabled_(defaults, SettingsKeys::recordingStorageLimitEnabled, QStringLiteral("Storage limit"),
                    readRecordingStorageLimitEnabled),
      maximum_(defaults, StorageLimitField::maximumShape()),
      warningPercentage_(defaults, StorageLimitField::warningShape()) {
    connect(&refresh_, &StorageUsageRefresh::storageUsageChanged, this, &StorageSettingsModel::usageChanged);
}

QString StorageSettingsModel::useLine() const {
    if (!refresh_.storageUsage()) return {};
    return settingsStorageLines(*refresh_.storageUsage()).useLine;
}

double StorageSettingsModel::usedFraction() const {
    if (!refresh_.storageUsage()) return 0;
    return settingsStorageLines(*refresh_.storageUsage()).usedFraction;
}

QString StorageSettingsModel::warning() const {
    if (!refresh_.storageUsage()) return {};
    return settingsStorageLines(*refresh_.storageUsage()).warning.value_or(QString());
}

QString StorageSettingsModel::warningSymbol() const {
    return kStorageWarningSymbol;
}

}  // namespace kestrum
