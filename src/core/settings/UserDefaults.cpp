#include "core/settings/UserDefaults.h"

#include "base/log/CaptureLog.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <utility>

namespace kestrum {

UserDefaults& UserDefaults::standard() {
    // Leaked on purpose: settings are read until the very end of the process.
    static UserDefaults* const instance = [] {
        auto* created = new UserDefaults(standardFilePath());
        if (QCoreApplication* application = QCoreApplication::instance()) {
            created->moveToThread(application->thread());
        }
        return created;
    }();
    return *instance;
}

QString UserDefaults::standardFilePath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/Kestrum/defaults.json");
}

UserDefaults::UserDefaults(QString filePath, QObject* parent)
    : QObject(parent), filePath_(std::move(filePath)) {
    load();
}

void UserDefaults::load() {
    QFile file(filePath_);
    if (!file.exists()) return;
    if (!file.open(QIODevice::ReadOnly)) {
        persists_ = false;
        logCaptureError(QStringLiteral("Settings file could not be read; changes will not be saved: %1 (%2)")
                            .arg(filePath_, file.errorString()));
        return;
    }
    Result<UserDefaultsMap> decoded = decodeUserDefaults(file.readAll());
    file.close();
    if (!decoded.ok()) {
        setAside(decoded.error().description);
        return;
    }
    values_ = std::move(decoded).value();
}

void UserDefaults::setAside(const QString& reason) {
    const QString stem = filePath_ + QLatin1String(".corrupt-") +
                         QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString asidePath = stem;
    for (int attempt = 2; QFileInfo::exists(asidePath); ++attempt) {
        asidePath = stem + QLatin1Char('-') + QString::number(attempt);
    }
    // QFile::rename never replaces an existing file, so a set-aside file is never overwritten.
    QFile file(filePath_);
    if (file.rename(asidePath)) {
        logCaptureError(QStringLiteral("Settings file could not be read and was set aside: %1 (%2)")
                            .arg(asidePath, reason));
        return;
    }
    persists_ = false;
    logCaptureError(QStringLiteral("Settings file could not be read or set aside; changes will not be saved: "
                                   "%1 (%2; %3)")
                        .arg(filePath_, reason, file.errorString()));
}

std::optional<UserDefaultsValue> UserDefaults::objectForKey(const QString& key) const {
    const std::lock_guard lock(mutex_);
    const auto it = values_.constFind(key);
    if (it == values_.constEnd()) return std::nullopt;
    return *it;
}

bool UserDefaults::boolForKey(const QString& key) const {
    const std::optional<UserDefaultsValue> value = objectForKey(key);
    return value && toBool(*value);
}

qint64 UserDefaults::integerForKey(const QString& key) const {
    const std::optional<UserDefaultsValue> value = objectForKey(key);
    return value ? toInteger(*value) : 0;
}

double UserDefaults::doubleForKey(const QString& key) const {
    const std::optional<UserDefaultsValue> value = objectForKey(key);
    return value ? toDouble(*value) : 0.0;
}

std::optional<QString> UserDefaults::stringForKey(const QString& key) const {
    const std::optional<UserDefaultsValue> value = objectForKey(key);
    return value ? toStringValue(*value) : std::nullopt;
}

std::optional<QStringList> UserDefaults::stringArrayForKey(const QString& key) const {
    const std::optional<UserDefaultsValue> value = objectForKey(key);
    if (!value || !std::holds_alternative<QStringList>(*value)) return std::nullopt;
    return std::get<QStringList>(*value);
}

std::optional<QByteArray> UserDefaults::dataForKey(const QString& key) const {
    const std::optional<UserDefaultsValue> value = objectForKey(key);
    if (!value || !std::holds_alternative<QByteArray>(*value)) return std::nullopt;
    return std::get<QByteArray>(*value);
}

void UserDefaults::setObject(const UserDefaultsValue& value, const QString& key) {
    change(key, value);
}
void UserDefaults::setBool(bool value, const QString& key) {
    change(key, UserDefaultsValue(value));
}
void UserDefaults::setInteger(qint64 value, const QString& key) {
    change(key, UserDefaultsValue(value));
}
void UserDefaults::setDouble(double value, const QString& key) {
    change(key, UserDefaultsValue(value));
}
void UserDefaults::setString(const QString& value, const QString& key) {
    change(key, UserDefaultsValue(value));
}
void UserDefaults::setStringArray(const QStringList& value, const QString& key) {
    change(key, UserDefaultsValue(value));
}
void UserDefaults::setData(const QByteArray& value, const QString& key) {
    change(key, UserDefaultsValue(value));
}
void UserDefaults::removeObjectForKey(const QString& key) {
    change(key, std::nullopt);
}

void UserDefaults::change(const QString& key, const std::optional<UserDefaultsValue>& value) {
    std::optional<QString> failure;
    {
        const std::lock_guard lock(mutex_);
        const auto it = values_.find(key);
        if (value) {
            if (it != values_.end() && *it == *value) return;
            values_.insert(key, *value);
        } else {
            if (it == values_.end()) return;
            values_.erase(it);
        }
        failure = persistLocked();
    }
    if (failure) logCaptureError(*failure);
    emit valueChanged(key);
}

std::optional<QString> UserDefaults::persistLocked() const {
    if (!persists_) return std::nullopt;
    QDir().mkpath(QFileInfo(filePath_).absolutePath());
    QSaveFile file(filePath_);
    const QByteArray bytes = encodeUserDefaults(values_);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return std::nullopt;
    return QStringLiteral("Settings could not be saved: %1 (%2)").arg(filePath_, file.errorString());
}

}  // namespace kestrum
