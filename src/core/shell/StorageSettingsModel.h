#pragma once

#include "core/shell/SettingsToggle.h"
#include "core/shell/StorageLimitField.h"
#include "core/shell/StorageUsageRefresh.h"

#include <QObject>

namespace kestrum {

// The "Storage" section: the budget's switch and its two fields, the use line with its bar and warning,
// and the note that Kestrum never deletes recordings. The use is measured in the background
// (StorageUsageRefresh); until the first measure comes back the line is empty.
//
// Threads: main thread. The store and the refresh must outlive it.
class StorageSettingsModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(kestrum::SettingsToggle* limitEnabled READ limitEnabled CONSTANT)
    Q_PROPERTY(kestrum::StorageLimitField* maximum READ maximum CONSTANT)
    Q_PROPERTY(kestrum::StorageLimitField* warningPercentage READ warningPercentage CONSTANT)
    Q_PROPERTY(bool hasUsage READ hasUsage NOTIFY usageChanged)
    Q_PROPERTY(QString useLine READ useLine NOTIFY usageChanged)
    Q_PROPERTY(double usedFraction READ usedFraction NOTIFY usageChanged)
    Q_PROPERTY(QString warning READ warning NOTIFY usageChanged)
    Q_PROPERTY(QString warningSymbol READ warningSymbol CONSTANT)
    Q_PROPERTY(QString note READ note CONSTANT)

  public:
    StorageSettingsModel(UserDefaults& defaults, StorageUsageRefresh& refresh, QObject* parent = nullptr);

    QString title() const { return QStringLiteral("Storage"); }
    SettingsToggle* limitEnabled() { return &limitEnabled_; }
    StorageLimitField* maximum() { return &maximum_; }
    StorageLimitField* warningPercentage() { return &warningPercentage_; }
    bool hasUsage() const { return refresh_.storageUsage().has_value(); }
    QString useLine() const;
    double usedFraction() const;
    // Empty when no warning applies.
    QString warning() const;
    QString warningSymbol() const;
    QString note() const { return QStringLiteral("Kestrum never deletes recordings."); }

  signals:
    void usageChanged();

  private:
    StorageUsageRefresh& refresh_;
    SettingsToggle limitEnabled_;
    StorageLimitField maximum_;
    StorageLimitField warningPercentage_;
};

}  // namespace kestrum
