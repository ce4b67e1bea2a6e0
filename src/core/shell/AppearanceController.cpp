#include "core/shell/AppearanceController.h"

#include "core/settings/SettingsKeys.h"
#include "core/settings/SettingsReaders.h"

#include <QPointer>

namespace kestrum {

AppearanceController::AppearanceController(const UserDefaults& defaults, DesktopColorScheme& desktop,
                                           QObject* parent)
    : QObject(parent), defaults_(defaults), desktop_(desktop) {
    connect(&defaults_, &UserDefaults::valueChanged, this, [this](const QString& key) {
        if (key == SettingsKeys::kestrumAppearance) apply();
    });
    desktopObserver_ = desktop_.observe(
        [self = QPointer<AppearanceController>(this)](std::optional<DesktopColorScheme::Preference>) {
            if (self) self->apply();
        });
    appearance_ = readKestrumAppearance(defaults_);
    isDark_ = isDarkAppearance(appearance_, desktop_.preference());
}

void AppearanceController::apply() {
    appearance_ = readKestrumAppearance(defaults_);
    const bool dark = isDarkAppearance(appearance_, desktop_.preference());
    if (dark == isDark_) return;
    isDark_ = dark;
    emit appearanceChanged(isDark_);
}

bool AppearanceController::isDarkAppearance(KestrumAppearance appearance,
                                            std::optional<DesktopColorScheme::Preference> desktopPreference) {
    switch (appearance) {
        case KestrumAppearance::light:
            return false;
        case KestrumAppearance::dark:
            return true;
        case KestrumAppearance::system:
            return desktopPreference == DesktopColorScheme::Preference::prefersDark;
    }
    return false;
}

}  // namespace kestrum
