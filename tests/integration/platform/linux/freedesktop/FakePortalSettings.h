#pragma once

#include <QDBusContext>
#include <QDBusVariant>
#include <QObject>

namespace kestrum::test {

// The settings interface of the XDG desktop portal, with one setting: the colour scheme. Read answers the
// value wrapped in a second variant, as the portal does.
class FakePortalSettings : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

  public:
    uint colorScheme = 0;

    void change(const QString& settingNamespace, const QString& key, uint value) {
        if (settingNamespace == QLatin1String("org.freedesktop.appearance")) colorScheme = value;
        emit SettingChanged(settingNamespace, key, QDBusVariant(value));
    }

  public slots:
    QDBusVariant Read(const QString& settingNamespace, const QString& key) {
        if (settingNamespace != QLatin1String("org.freedesktop.appearance") ||
            key != QLatin1String("color-scheme")) {
            sendErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"),
                           QStringLiteral("Requested setting not found"));
            return {};
        }
        return QDBusVariant(QVariant::fromValue(QDBusVariant(colorScheme)));
    }

  signals:
    void SettingChanged(const QString& settingNamespace, const QString& key, const QDBusVariant& value);
};

}  // namespace kestrum::test
