#pragma once

#include "platform/ports/Subscription.h"

#include <functional>
#include <optional>

namespace kestrum {

// The colour scheme the user chose for the desktop, as the desktop tells applications.
//
// Contract, for every adapter:
// - Every call is made on the main thread and returns at once: the adapter asks the desktop in the
//   background and keeps the newest answer.
// - `preference` is absent while no answer has come, and for good when the desktop cannot say (no
//   settings service): callers then treat the desktop as light.
// - Handlers run on the main thread after every change of `preference`, never inside `observe`.
class DesktopColorScheme {
  public:
    enum class Preference { noPreference, prefersDark, prefersLight };
    using Handler = std::function<void(std::optional<Preference> preference)>;

    virtual ~DesktopColorScheme() = default;

    virtual std::optional<Preference> preference() const = 0;
    [[nodiscard]] virtual Subscription observe(Handler handler) = 0;

  protected:
    DesktopColorScheme() = default;
    DesktopColorScheme(const DesktopColorScheme&) = default;
    DesktopColorScheme& operator=(const DesktopColorScheme&) = default;
};

}  // namespace kestrum
