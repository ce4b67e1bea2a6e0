#pragma once

#include "core/settings/UserDefaultsFileFormat.h"
#include "core/settings/UserDefaultsValue.h"

#include <QObject>
#include <QString>

#include <mutex>
#include <optional>

namespace kestrum {

// The per-user typed key-value store of settings, the counterpart of the platform's user defaults.
// Values are Booleans, 64-bit integers, doubles, strings, string lists and data, kept with their type.
//
// Storage: one JSON file (UserDefaultsFileFormat.h), read once at construction and written whole,
// atomically (a temporary file in the same folder, then a rename), on every change. The instance owns
// the file for its lifetime; changes made to it by others meanwhile are not seen and are overwritten.
// - A missing file is an empty store; the file is made at the first change.
// - A file that is not of the form (not JSON, wrong shape, a value of unknown type) is set aside under
//   "<file>.corrupt-<yyyyMMdd-HHmmss>" (never overwritten, never deleted), the store starts empty, and
//   one capture log error says so. If it cannot be set aside, or cannot be read at all, the store starts
//   empty and keeps changes in memory only, so that the file is never overwritten; one error says so.
// - A failed write keeps the change in memory and logs one capture log error; the next change writes
//   the whole store again.
//
// Threads: every operation may be called from any thread; one mutex guards the values and the file.
// `valueChanged` is emitted on the thread that made the change, after the file was written and with the
// mutex released; a receiver connected with a context object on another thread gets it queued there.
//
// The getters convert by the rules documented on toBool, toInteger, toDouble and toStringValue
// (UserDefaultsValue.h), which follow the platform's rules; a missing key gives false, 0, 0.0 or absent.
class UserDefaults : public QObject {
    Q_OBJECT

  public:
    // The application's store: QStandardPaths::GenericConfigLocation + "/Kestrum/defaults.json"
    // (~/.config/Kestrum/defaults.json). Made on first use, thread-safe, never destroyed; it belongs to
    // the main thread when a QCoreApplication exists.
    static UserDefaults& standard();
    static QString standardFilePath();

    explicit UserDefaults(QString filePath, QObject* parent = nullptr);

    QString filePath() const { return filePath_; }

    // Presence and the stored value with its type.
    std::optional<UserDefaultsValue> objectForKey(const QString& key) const;
    bool boolForKey(const QString& key) const;
    qint64 integerForKey(const QString& key) const;
    double doubleForKey(const QString& key) const;
    std::optional<QString> stringForKey(const QString& key) const;
    // Only a stored string list; any other value gives absent.
    std::optional<QStringList> stringArrayForKey(const QString& key) const;
    // Only stored data; any other value gives absent.
    std::optional<QByteArray> dataForKey(const QString& key) const;

    // Each setter replaces the value and its type. Storing a value equal to the present one (same type,
    // same value) changes nothing: no write, no signal.
    void setObject(const UserDefaultsValue& value, const QString& key);
    void setBool(bool value, const QString& key);
    void setInteger(qint64 value, const QString& key);
    void setDouble(double value, const QString& key);
    void setString(const QString& value, const QString& key);
    void setStringArray(const QStringList& value, const QString& key);
    void setData(const QByteArray& value, const QString& key);
    // Removing a missing key changes nothing.
    void removeObjectForKey(const QString& key);

  signals:
    // Emitted after every change of `key` (a set or a removal); see the threads above.
    void valueChanged(const QString& key);

  private:
    void load();
    void setAside(const QString& reason);
    void change(const QString& key, const std::optional<UserDefaultsValue>& value);
    // Writes the whole store; gives the capture log line on failure. Called with mutex_ held.
    std::optional<QString> persistLocked() const;

    const QString filePath_;
    mutable std::mutex mutex_;
    UserDefaultsMap values_;  // guarded by mutex_
    bool persists_ = true;    // false when the file must not be overwritten; guarded by mutex_
};

}  // namespace kestrum
