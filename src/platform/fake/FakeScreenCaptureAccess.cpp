#include "platform/fake/FakeScreenCaptureAccess.h"

namespace kestrum {

bool FakeScreenCaptureAccess::request() {
    ++requestCount_;
    if (grantsOnRequest_) granted_ = true;
    return granted_;
}

}  // namespace kestrum
