#pragma once

#include "core/settings/UserDefaults.h"

#include <QObject>

#include <functional>

namespace kestrum {

// A switch bound to one stored Boolean. It reads through the key's own reader, so a Boolean that
// defaults to true reads true while unset; turning it stores a Boolean. Follows changes made elsewhere.
//
// Threads: main thread. The store must outlive it.
class SettingsToggle : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(bool isOn READ isOn WRITE setOn NOTIFY isOnChanged)

  public:
    using Reader = std::function<bool(const UserDefaults& defaults)>;

    SettingsToggle(UserDefaults& defaults, QString key, QString title, Reader reader,
                   QObject* parent = nullptr);

    QString title() const { return title_; }
    bool isOn() const { return isOn_; }
    void setOn(bool on);

  signals:
    void isOnChanged();

  private:
    UserDefaults& defaults_;
    const QString key_;
    const QString title_;
    const Reader reader_;
    bool isOn_ = false;  // main thread
};

}  // namespace kestrum
