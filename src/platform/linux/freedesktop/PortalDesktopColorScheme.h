#pragma once

#include "platform/ports/DesktopColorScheme.h"
#include "platform/ports/HandlerList.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

namespace kestrum {

// The desktop's colour scheme from the XDG desktop portal's settings (org.freedesktop.portal.Settings,
// "org.freedesktop.appearance" "color-scheme": 0 no preference, 1 prefers dark, 2 prefers light), read
// once asynchronously and then followed through its SettingChanged signal. With no portal the preference
// stays absent. A change signalled before the first answer arrives wins over that answer.
//
// Threads: main thread. The connection is the session bus in the product; tests give a private bus.
class PortalDesktopColorScheme final : public QObject, public DesktopColorScheme {
    Q_OBJECT

  public:
    static constexpr const char* kService = "org.freedesktop.portal.Desktop";
    static constexpr const char* kPath = "/org/freedesktop/portal/desktop";
    static constexpr const char* kInterface = "org.freedesktop.portal.Settings";

    explicit PortalDesktopColorScheme(QDBusConnection bus = QDBusConnection::sessionBus(),
                                      QObject* parent = nullptr);

    std::optional<Preference> preference() const override { return preference_; }
    [[nodiscard]] Subscription observe(Handler handler) override;

    // The preference a portal value stands for; absent for a value that is no number.
    static std::optional<Preference> preferenceOf(const QVariant& portalValue);

  private slots:
    void settingChanged(const QString& settingNamespace, const QString& key, const QDBusVariant& value);

  private:
    void publish(std::optional<Preference> preference);

    QDBusConnection bus_;
    // Main thread.
    std::optional<Preference> preference_;
    bool hasSignalledValue_ = false;
    HandlerList<std::optional<Preference>> handlers_;
};

}  // namespace kestrum
