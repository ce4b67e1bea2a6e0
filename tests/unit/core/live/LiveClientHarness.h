#pragma once

#include "ScriptedLiveService.h"

#include "core/async/ManualClock.h"
#include "core/log/CaptureLog.h"
#include "core/telemetry/live/LeagueLiveClient.h"
#include "platform/fake/FakeSystemLog.h"

#include <QCoroTask>

#include <chrono>
#include <memory>

namespace kestrum::test {

// A LeagueLiveClient over a ScriptedLiveService, on a ManualClock whose wall clock starts at `wallStart`
// and moves with it, and with the capture log's lines kept for inspection.
struct LiveClientHarness {
    static constexpr ReferenceDate kWallStart{800'000'000.0};

    LiveClientHarness();
    ~LiveClientHarness();

    ReferenceDate wallNow() const;
    // The capture log's messages so far, of both levels, as the capture log words them.
    QStringList logLines() const;

    // Runs `task` to its end, moving the clock by `step` whenever it waits; returns the steps taken.
    template <class T>
    T drive(QCoro::Task<T> task, std::chrono::milliseconds step = std::chrono::milliseconds(250),
            int* steps = nullptr) {
        int taken = 0;
        while (!task.isReady() && clock.pendingSleepCount() > 0) {
            clock.advance(step);
            ++taken;
        }
        if (steps) *steps = taken;
        return QCoro::waitFor(std::move(task));
    }

    ManualClock clock;
    Clock::TimePoint clockStart = clock.now();
    std::shared_ptr<ScriptedLiveService> service = std::make_shared<ScriptedLiveService>();
    std::shared_ptr<FakeSystemLog> log = std::make_shared<FakeSystemLog>();
    LeagueLiveClient client;
};

}  // namespace kestrum::test
