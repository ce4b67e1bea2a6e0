#include "core/settings/SettingsKeys.h"
#include "core/shell/AppearanceController.h"
#include "core/shell/MenuBarStatusImage.h"
#include "platform/fake/FakeDesktopColorScheme.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTemporaryDir>

namespace kestrum::test {
namespace {

using Preference = DesktopColorScheme::Preference;

TEST(AppearanceController, TheStoredThemeAndTheDesktopDecideDarkness) {
    struct Case {
        std::optional<QString> stored;  // absent: never set
        std::optional<Preference> desktop;
        bool dark;
    };
    const std::vector<Case> cases = {
        {std::nullopt, std::nullopt, false},  // no portal: light
        {std::nullopt, Preference::prefersDark, true},
        {QStringLiteral("system"), Preference::prefersLight, false},
        {QStringLiteral("system"), Preference::noPreference, false},
        {QStringLiteral("system"), Preference::prefersDark, true},
        {QStringLiteral("light"), Preference::prefersDark, false},
        {QStringLiteral("dark"), Preference::prefersLight, true},
        {QStringLiteral("dark"), std::nullopt, true},
        {QStringLiteral("Dark"), Preference::prefersLight, false},  // unknown text counts as system
        {QStringLiteral("sepia"), Preference::prefersDark, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.stored.value_or(QStringLiteral("(unset)")).toStdString());
        QTemporaryDir directory;
        UserDefaults defaults(directory.path() + QStringLiteral("/defaults.json"));
        if (c.stored) defaults.setString(*c.stored, SettingsKeys::kestrumAppearance);
        FakeDesktopColorScheme desktop(c.desktop);
        AppearanceController controller(defaults, desktop);
        controller.apply();
        EXPECT_EQ(controller.isDark(), c.dark);
        EXPECT_EQ(defaults.stringForKey(SettingsKeys::kestrumAppearance), c.stored) << "nothing written back";
    }
}

TEST(AppearanceController, AChosenThemeOrADesktopSwitchAppliesAtOnce) {
    QTemporaryDir directory;
    UserDefaults defaults(directory.path() + QStringLiteral("/defaults.json"));
    FakeDesktopColorScheme desktop(Preference::prefersLight);
    AppearanceController controller(defaults, desktop);
    controller.apply();
    QSignalSpy changes(&controller, &AppearanceController::appearanceChanged);

    const std::vector<std::pair<std::function<void()>, bool>> steps = {
        {[&] { defaults.setString(QStringLiteral("dark"), SettingsKeys::kestrumAppearance); }, true},
        {[&] { desktop.setPreference(Preference::prefersDark); }, true},  // forced dark: no change
        {[&] { defaults.setString(QStringLiteral("system"), SettingsKeys::kestrumAppearance); }, true},
        {[&] { desktop.setPreference(std::nullopt); }, false},  // the portal went away
        {[&] { defaults.setString(QStringLiteral("light"), SettingsKeys::kestrumAppearance); }, false},
    };
    std::vector<QVariant> expectedSignals;
    bool previous = controller.isDark();
    for (const auto& [step, dark] : steps) {
        step();
        EXPECT_EQ(controller.isDark(), dark);
        if (dark != previous) expectedSignals.push_back(dark);
        previous = dark;
    }
    ASSERT_EQ(changes.count(), static_cast<int>(expectedSignals.size()))
        << "one signal per change, none else";
    for (int index = 0; index < changes.count(); ++index)
        EXPECT_EQ(changes.at(index).at(0), expectedSignals[index]);
}

TEST(MenuBarStatusImage, EachStatusHasItsWordImageAndTrayVariant) {
    struct Case {
        RecordingStatus status;
        QString word;
        MenuBarStatusImage image;
    };
    const QString warning = QStringLiteral("exclamationmark.triangle.fill");
    const std::vector<Case> cases = {
        {RecordingStatus::idle, QStringLiteral("Idle"), {QStringLiteral("MenuBarIdle"), false}},
        {RecordingStatus::ready, QStringLiteral("Ready"), {QStringLiteral("MenuBarReady"), false}},
        {RecordingStatus::recording,
         QStringLiteral("Recording"),
         {QStringLiteral("MenuBarRecording"), false}},
        {RecordingStatus::permissionRequired, QStringLiteral("Action Required"), {warning, true}},
        {RecordingStatus::storageLimitReached, QStringLiteral("Storage Limit"), {warning, true}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.word.toStdString());
        EXPECT_EQ(rawValue(c.status), c.word);
        EXPECT_EQ(menuBarStatusImage(c.status), c.image);
        EXPECT_EQ(trayIconName(c.status, Preference::prefersDark), c.image.name + QStringLiteral("-dark"));
        for (const std::optional<Preference> light :
             {std::optional<Preference>(Preference::prefersLight),
              std::optional<Preference>(Preference::noPreference), std::optional<Preference>()}) {
            EXPECT_EQ(trayIconName(c.status, light), c.image.name + QStringLiteral("-light"));
        }
    }
}

}  // namespace
}  // namespace kestrum::test
