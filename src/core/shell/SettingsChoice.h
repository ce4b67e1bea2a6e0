#pragma once

#include "core/settings/UserDefaults.h"

#include <QObject>
#include <QStringList>

#include <vector>

namespace kestrum {

// A segmented picker bound to one stored key: the labels in order, the index of the option the stored
// value names, and the choice of an option, stored with the option's own type (a string such as "p720",
// or an integer such as 60). While the key is unset the default applies; a stored value that names no
// option selects nothing (-1) and is never written back: whoever reads the key falls back to its own
// default.
//
// Threads: main thread; a change of the key made elsewhere is followed. The store must outlive it.
class SettingsChoice : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QStringList labels READ labels CONSTANT)
    Q_PROPERTY(int selectedIndex READ selectedIndex NOTIFY selectedIndexChanged)

  public:
    struct Option {
        QString label;
        // A QString or a qint64: the stored form, compared by that type.
        UserDefaultsValue rawValue;
    };

    SettingsChoice(UserDefaults& defaults, QString key, QString title, std::vector<Option> options,
                   UserDefaultsValue defaultValue, QObject* parent = nullptr);

    QString title() const { return title_; }
    QStringList labels() const;
    int selectedIndex() const { return selectedIndex_; }

    // Stores the option at `index`; an index out of range changes nothing.
    Q_INVOKABLE void select(int index);

  signals:
    void selectedIndexChanged();

  private:
    int readSelectedIndex() const;
    bool names(const Option& option, const UserDefaultsValue& stored) const;

    UserDefaults& defaults_;
    const QString key_;
    const QString title_;
    const std::vector<Option> options_;
    const UserDefaultsValue defaultValue_;
    int selectedIndex_ = -1;  // main thread
};

}  // namespace kestrum
