#pragma once

#include "platform/ports/CaptureStream.h"

namespace kestrum {

// A receiver of a window stream's samples and the queue it wants them on; neither is owned.
struct X11StreamOutput {
    CaptureStreamOutput* output = nullptr;
    SerialQueue* queue = nullptr;
};

}  // namespace kestrum
