#pragma once

#include "base/async/Detached.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace kestrum::test {

// GoogleTest's run, then a bounded wait for the work a test left on the utility pool (a load of the
// review window still reading), so that none of it runs while the toolkit's statics are destroyed at
// exit. A program whose background work outlives the wait fails. For the test programs' mains.
inline int runAllTestsThenFinishBackgroundWork() {
    constexpr int kLimitMs = 30'000;
    const int status = RUN_ALL_TESTS();
    if (finishDetachedWork(kLimitMs)) return status;
    std::fprintf(stderr, "background work still ran %d ms after the tests\n", kLimitMs);
    return 1;
}

}  // namespace kestrum::test
