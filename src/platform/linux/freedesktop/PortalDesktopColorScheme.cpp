#include "platform/linux/freedesktop/PortalDesktopColorScheme.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace kestrum {

namespace {

const QString kNamespace = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");

}  // namespace

PortalDesktopColorScheme::PortalDesktopColorScheme(QDBusConnection bus, QObject* parent)
    : QObject(parent), bus_(std::move(bus)) {
    bus_.connect(QLatin1String(kService), QLatin1String(kPath), QLatin1String(kInterface),
                 QStringLiteral("SettingChanged"), this,
                 SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage read = QDBusMessage::createMethodCall(QLatin1String(kService), QLatin1String(kPath),
                                                       QLatin1String(kInterface), QStringLiteral("Read"));
    read << kNamespace << kKey;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(read), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *finished;
        // No portal, or a portal without the key: the preference stays absent (a light desktop).
        if (reply.isError() || hasSignalledValue_) return;
        publish(preferenceOf(reply.value().variant()));
    });
}

Subscription PortalDesktopColorScheme::observe(Handler handler) {
    return handlers_.add(
        [handler = std::move(handler)](const std::optional<Preference>& preference) { handler(preference); });
}

std::optional<DesktopColorScheme::Preference> PortalDesktopColorScheme::preferenceOf(
    const QVariant& portalValue) {
    // Read answers the value wrapped in one more variant than SettingChanged carries; unwrap all.
    QVariant value = portalValue;
    while (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    bool ok = false;
    const uint number = value.toUInt(&ok);
    if (!ok) return std::nullopt;
    switch (number) {
        case 1:
            return Preference::prefersDark;
        case 2:
            return Preference::prefersLight;
        default:
            return Preference::noPreference;  // 0, and values the portal may add later
    }
}

void PortalDesktopColorScheme::settingChanged(const QString& settingNamespace, const QString& key,
                                              const QDBusVariant& value) {
    if (settingNamespace != kNamespace || key != kKey) return;
    hasSignalledValue_ = true;
    publish(preferenceOf(value.variant()));
}

void PortalDesktopColorScheme::publish(std::optional<Preference> preference) {
    if (preference == preference_) return;
    preference_ = preference;
    handlers_.deliver(preference_);
}

}  // namespace kestrum
