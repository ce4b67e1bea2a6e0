#pragma once

#include "platform/ports/AutostartEntry.h"

#include <QObject>

namespace kestrum {

// The "Startup" section: whether the desktop opens Kestrum when the user logs in (off until turned on).
// The switch shows the desktop's own state, read again each time the settings open; a change that fails
// leaves the switch as it was and shows why.
//
// Threads: main thread. The entry must outlive it.
class StartupSettingsModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString toggleTitle READ toggleTitle CONSTANT)
    Q_PROPERTY(bool opensAtLogin READ opensAtLogin WRITE setOpensAtLogin NOTIFY changed)
    Q_PROPERTY(QString error READ error NOTIFY changed)

  public:
    explicit StartupSettingsModel(AutostartEntry& entry, QObject* parent = nullptr);

    QString title() const { return QStringLiteral("Startup"); }
    QString toggleTitle() const { return QStringLiteral("Open Kestrum at login"); }
    bool opensAtLogin() const { return opensAtLogin_; }
    void setOpensAtLogin(bool opens);
    // Why the last change failed; empty when it did not.
    QString error() const { return error_; }

    // Reads the desktop's state again.
    void reload();

  signals:
    void changed();

  private:
    AutostartEntry& entry_;
    // Main thread.
    bool opensAtLogin_ = false;
    QString error_;
};

}  // namespace kestrum
