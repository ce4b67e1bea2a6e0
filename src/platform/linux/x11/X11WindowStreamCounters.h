#pragma once

#include <QString>

#include <cstdint>

namespace kestrum {

// What a window stream did, for the capture log at its stop. Read on the main thread; the capture thread
// counts.
struct X11WindowStreamCounters {
    std::int64_t framesRead = 0;        // pictures read from the window and delivered
    std::int64_t blankFrames = 0;       // blank samples delivered while the window showed nothing
    std::int64_t deadlinesSkipped = 0;  // frame deadlines passed over because a read ran late
    std::int64_t readsFailed = 0;       // reads the display server refused, or that could not be scaled

    // "frames read 1800, blank 0, late deadlines skipped 2, reads failed 0"
    QString description() const;

    friend bool operator==(const X11WindowStreamCounters&, const X11WindowStreamCounters&) = default;
};

}  // namespace kestrum
