#pragma once

#include "platform/ports/ScreenCaptureAccess.h"

namespace kestrum {

// Screen capture access scripted by a test: `preflight` answers the present state, and `request` grants
// it only when the test said the user will agree. Main thread only.
class FakeScreenCaptureAccess final : public ScreenCaptureAccess {
  public:
    explicit FakeScreenCaptureAccess(bool granted = true) : granted_(granted) {}

    bool preflight() const override { return granted_; }
    bool request() override;

    void setGranted(bool granted) { granted_ = granted; }
    // Whether a later `request` turns access on (the user agrees at the prompt).
    void setGrantsOnRequest(bool grants) { grantsOnRequest_ = grants; }
    int requestCount() const { return requestCount_; }

  private:
    bool granted_;
    bool grantsOnRequest_ = false;
    int requestCount_ = 0;
};

}  // namespace kestrum
