#include "FakeLogind.h"
#include "FakePortalSettings.h"
#include "platform/linux/freedesktop/LogindSessionEndInhibitor.h"
#include "platform/linux/freedesktop/PortalDesktopColorScheme.h"
#include "support/CapturedLog.h"
#include "support/PrivateSessionBus.h"
#include "support/RequiredServer.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QDBusConnection>

namespace kestrum::test {
namespace {

using Preference = DesktopColorScheme::Preference;

// A private bus with a service of our own registered on a connection of its own, as the system's service
// would be; the adapter under test uses another connection.
class ServiceOnPrivateBus {
  public:
    bool start() { return bus_.start(); }
    QString failure() const { return bus_.failure(); }

    QDBusConnection clientConnection() {
        return QDBusConnection::connectToBus(bus_.address(), QStringLiteral("client-%1").arg(++clients_));
    }
    bool registerService(QObject& object, const QString& service, const QString& path) {
        QDBusConnection connection = QDBusConnection::connectToBus(bus_.address(), QStringLiteral("service"));
        return connection.registerObject(
                   path, &object, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
               connection.registerService(service);
    }
    ~ServiceOnPrivateBus() {
        for (int client = 1; client <= clients_; ++client) {
            QDBusConnection::disconnectFromBus(QStringLiteral("client-%1").arg(client));
        }
        QDBusConnection::disconnectFromBus(QStringLiteral("service"));
    }

  private:
    PrivateSessionBus bus_;
    int clients_ = 0;
};

TEST(LogindSessionEndInhibitor, HoldsTheDelayLockUntilGivenBackAndHearsTheShutdown) {
    ServiceOnPrivateBus bus;
    KESTRUM_REQUIRE_SERVER(bus.start(), bus.failure());
    FakeLogind logind;
    ASSERT_TRUE(bus.registerService(logind, QLatin1String(LogindSessionEndInhibitor::kService),
                                    QLatin1String(LogindSessionEndInhibitor::kPath)));
    LogindSessionEndInhibitor inhibitor(bus.clientConnection());
    int endings = 0;
    const Subscription ending = inhibitor.observeSessionEnding([&] { ++endings; });

    inhibitor.setHeld(true);
    inhibitor.setHeld(true);  // asked once however often
    ASSERT_TRUE(waitUntil([&] { return inhibitor.isHeld(); }));
    EXPECT_EQ(logind.calls,
              QStringList{QStringLiteral("shutdown|Kestrum|Finishing the recording of a game|delay")});
    EXPECT_TRUE(waitUntil([&] { return logind.openLocks() == 1; })) << "only our copy of the lock stays open";

    emit logind.PrepareForShutdown(true);
    emit logind.PrepareForShutdown(false);  // the shutdown was called off: nothing to do
    EXPECT_TRUE(waitUntil([&] { return endings == 1; }));
    processEventsFor(50);
    EXPECT_EQ(endings, 1);

    inhibitor.setHeld(false);
    EXPECT_FALSE(inhibitor.isHeld());
    EXPECT_TRUE(waitUntil([&] { return logind.openLocks() == 0; })) << "the lock is given back";

    // Given back before the grant arrives: the grant is not kept.
    inhibitor.setHeld(true);
    inhibitor.setHeld(false);
    EXPECT_TRUE(waitUntil([&] { return logind.calls.size() == 2; }));
    processEventsFor(100);
    EXPECT_FALSE(inhibitor.isHeld());
    EXPECT_EQ(logind.openLocks(), 0);
}

TEST(LogindSessionEndInhibitor, ARefusalOrNoLogindLeavesTheHoldUntakenWithAnError) {
    for (const bool hasLogind : {true, false}) {
        SCOPED_TRACE(hasLogind ? "refused" : "no logind");
        ServiceOnPrivateBus bus;
        KESTRUM_REQUIRE_SERVER(bus.start(), bus.failure());
        CapturedLog log;
        FakeLogind logind;
        logind.refuses = true;
        if (hasLogind) {
            ASSERT_TRUE(bus.registerService(logind, QLatin1String(LogindSessionEndInhibitor::kService),
                                            QLatin1String(LogindSessionEndInhibitor::kPath)));
        }
        LogindSessionEndInhibitor inhibitor(bus.clientConnection());
        inhibitor.setHeld(true);
        ASSERT_TRUE(waitUntil([&] { return !log.lines().isEmpty(); }));
        EXPECT_FALSE(inhibitor.isHeld());
        EXPECT_TRUE(log.lines().first().startsWith(
            QStringLiteral("Could not delay the system's shutdown during the recording: ")))
            << log.lines().first().toStdString();
        EXPECT_EQ(logind.calls.size(), hasLogind ? 1 : 0);
    }
}

TEST(PortalDesktopColorScheme, ReadsThePortalAndFollowsItsChanges) {
    ServiceOnPrivateBus bus;
    KESTRUM_REQUIRE_SERVER(bus.start(), bus.failure());
    {
        PortalDesktopColorScheme noPortal(bus.clientConnection());
        processEventsFor(200);
        EXPECT_EQ(noPortal.preference(), std::nullopt) << "no portal: the desktop cannot say";
    }
    FakePortalSettings portal;
    portal.colorScheme = 1;
    ASSERT_TRUE(bus.registerService(portal, QLatin1String(PortalDesktopColorScheme::kService),
                                    QLatin1String(PortalDesktopColorScheme::kPath)));
    PortalDesktopColorScheme scheme(bus.clientConnection());
    std::vector<std::optional<Preference>> notices;
    const Subscription observer = scheme.observe([&](std::optional<Preference> p) { notices.push_back(p); });
    ASSERT_TRUE(waitUntil([&] { return scheme.preference().has_value(); }));
    EXPECT_EQ(scheme.preference(), Preference::prefersDark);

    struct Step {
        const char* settingNamespace;
        const char* key;
        uint value;
        std::optional<Preference> expected;
    };
    const std::vector<Step> steps = {
        {"org.freedesktop.appearance", "color-scheme", 2, Preference::prefersLight},
        {"org.freedesktop.appearance", "accent-color", 1, Preference::prefersLight},   // another key
        {"org.gnome.desktop.interface", "color-scheme", 1, Preference::prefersLight},  // another namespace
        {"org.freedesktop.appearance", "color-scheme", 0, Preference::noPreference},
        {"org.freedesktop.appearance", "color-scheme", 7, Preference::noPreference},  // a value of the future
        {"org.freedesktop.appearance", "color-scheme", 1, Preference::prefersDark},
    };
    for (const Step& step : steps) {
        portal.change(QLatin1String(step.settingNamespace), QLatin1String(step.key), step.value);
        processEventsFor(100);
        EXPECT_EQ(scheme.preference(), step.expected)
            << step.settingNamespace << " " << step.key << " " << step.value;
    }
    const std::vector<std::optional<Preference>> expectedNotices = {
        Preference::prefersDark, Preference::prefersLight, Preference::noPreference, Preference::prefersDark};
    EXPECT_EQ(notices, expectedNotices) << "one notice per change";
}

TEST(PortalDesktopColorScheme, PortalValuesMapToPreferences) {
    const std::vector<std::pair<QVariant, std::optional<Preference>>> cases = {
        {QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(1u)))), Preference::prefersDark},
        {QVariant::fromValue(QDBusVariant(2u)), Preference::prefersLight},
        {QVariant(0u), Preference::noPreference},
        {QVariant(QStringLiteral("dark")), std::nullopt},
        {QVariant(), std::nullopt},
    };
    for (const auto& [value, expected] : cases) {
        EXPECT_EQ(PortalDesktopColorScheme::preferenceOf(value), expected) << value.typeName();
    }
}

}  // namespace
}  // namespace kestrum::test
