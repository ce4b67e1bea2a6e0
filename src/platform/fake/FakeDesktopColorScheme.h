#pragma once

#include "platform/ports/DesktopColorScheme.h"
#include "platform/ports/HandlerList.h"

namespace kestrum {

// The desktop's colour scheme set by a test; a change is delivered synchronously by `setPreference`,
// standing for the desktop's own notice. Main thread only.
class FakeDesktopColorScheme final : public DesktopColorScheme {
  public:
    explicit FakeDesktopColorScheme(std::optional<Preference> preference = std::nullopt)
        : preference_(preference) {}

    std::optional<Preference> preference() const override { return preference_; }
    [[nodiscard]] Subscription observe(Handler handler) override {
        return handlers_.add([handler = std::move(handler)](const std::optional<Preference>& preference) {
            handler(preference);
        });
    }

    void setPreference(std::optional<Preference> preference) {
        if (preference == preference_) return;
        preference_ = preference;
        handlers_.deliver(preference_);
    }

  private:
    std::optional<Preference> preference_;
    HandlerList<std::optional<Preference>> handlers_;
};

}  // namespace kestrum
