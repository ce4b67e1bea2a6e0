#pragma once

#include "core/settings/KestrumAppearance.h"
#include "core/settings/UserDefaults.h"
#include "platform/ports/DesktopColorScheme.h"

#include <QObject>

#include <optional>

namespace kestrum {

// Decides whether the application's windows are drawn dark, from the stored "kestrumAppearance" (an
// unknown text counts as `system`) and, for `system`, the desktop's colour scheme (light when the desktop
// cannot say). It follows both: a theme chosen in the settings, or a desktop switching its scheme, applies
// at once to every window that binds to it, with no restart.
//
// Threads: main thread; a change of the key made on another thread arrives queued. The store and the
// desktop port must outlive it.
class AppearanceController : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isDark READ isDark NOTIFY appearanceChanged)

  public:
    AppearanceController(const UserDefaults& defaults, DesktopColorScheme& desktop,
                         QObject* parent = nullptr);

    // Reads the stored theme and the desktop's scheme now; emits `appearanceChanged` when the outcome
    // differs from the one in force.
    void apply();

    bool isDark() const { return isDark_; }
    KestrumAppearance appearance() const { return appearance_; }

    static bool isDarkAppearance(KestrumAppearance appearance,
                                 std::optional<DesktopColorScheme::Preference> desktopPreference);

  signals:
    void appearanceChanged(bool isDark);

  private:
    const UserDefaults& defaults_;
    DesktopColorScheme& desktop_;
    Subscription desktopObserver_;
    // Main thread.
    KestrumAppearance appearance_ = KestrumAppearance::system;
    bool isDark_ = false;
};

}  // namespace kestrum
