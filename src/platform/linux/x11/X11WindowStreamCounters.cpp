#include "platform/linux/x11/X11WindowStreamCounters.h"

namespace kestrum {

QString X11WindowStreamCounters::description() const {
    return QStringLiteral("frames read %1, blank %2, late deadlines skipped %3, reads failed %4")
        .arg(framesRead)
        .arg(blankFrames)
        .arg(deadlinesSkipped)
        .arg(readsFailed);
}

}  // namespace kestrum
