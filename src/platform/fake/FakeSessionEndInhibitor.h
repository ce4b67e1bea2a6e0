#pragma once

#include "platform/ports/HandlerList.h"
#include "platform/ports/SessionEndInhibitor.h"

#include <vector>

namespace kestrum {

// A session-end inhibitor whose holds are granted at once, keeping every change asked for so that a test
// can read when the hold was taken and given back. Main thread only.
class FakeSessionEndInhibitor final : public SessionEndInhibitor {
  public:
    void setHeld(bool held) override {
        if (held == held_) return;
        held_ = held;
        changes_.push_back(held);
    }
    bool isHeld() const override { return held_; }
    [[nodiscard]] Subscription observeSessionEnding(Handler handler) override {
        return endingHandlers_.add([handler = std::move(handler)](const bool&) { handler(); });
    }

    // The system announces the end of the session.
    void announceSessionEnding() { endingHandlers_.deliver(true); }
    // Each change of the hold, in order (true: taken, false: given back).
    const std::vector<bool>& changes() const { return changes_; }

  private:
    bool held_ = false;
    std::vector<bool> changes_;
    HandlerList<bool> endingHandlers_;
};

}  // namespace kestrum
