#pragma once

#include "platform/ports/AutostartEntry.h"

namespace kestrum {

// The login start kept in memory; a test can make changes fail, as a read-only configuration folder
// would. Main thread only.
class FakeAutostartEntry final : public AutostartEntry {
  public:
    bool isEnabled() const override { return enabled_; }
    Status setEnabled(bool enabled) override {
        if (failure_) return Error::withDescription(*failure_);
        enabled_ = enabled;
        return Status::success();
    }

    // Changes fail with `description` from now on; absent: they succeed again.
    void setFailure(std::optional<QString> description) { failure_ = std::move(description); }
    // The user changed it in the desktop's own settings.
    void setEnabledOutside(bool enabled) { enabled_ = enabled; }

  private:
    bool enabled_ = false;
    std::optional<QString> failure_;
};

}  // namespace kestrum
