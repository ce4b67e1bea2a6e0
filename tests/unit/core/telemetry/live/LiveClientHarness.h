#pragma once

#include "ScriptedLiveService.h"

#include "base/async/ManualClock.h"
#include "core/telemetry/live/LeagueLiveClient.h"
#include "support/CapturedLog.h"

#include <QCoroTask>

#include <chrono>
#include <memory>

namespace kestrum::test {

inline const QString kGameStatsPath = QStringLiteral("/liveclientdata/gamestats");
inline const QString kActivePlayerNamePath = QStringLiteral("/liveclientdata/activeplayername");
inline const QString kPlayerListPath = QStringLiteral("/liveclientdata/playerlist");
inline const QString kEventDataPath = QStringLiteral("/liveclientdata/eventdata");
inline const QString kAllGameDataPath = QStringLiteral("/liveclientdata/allgamedata");
inline const QString kReplayPath = QStringLiteral("/replay/game");

// A LeagueLiveClient over a ScriptedLiveService, on a ManualClock whose wall clock starts at `kWallStart`
// and moves with it, and with the capture log's lines kept for inspection.
struct LiveClientHarness {
    static constexpr ReferenceDate kWallStart{800'000'000.0};

    ReferenceDate wallNow() const {
        return {kWallStart.secondsSince2001 +
                std::chrono::duration<double>(clock.now() - clockStart).count()};
    }

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

    CapturedLog log;
    ManualClock clock;
    Clock::TimePoint clockStart = clock.now();
    std::shared_ptr<ScriptedLiveService> service = std::make_shared<ScriptedLiveService>();
    LeagueLiveClient client{service, clock, [this] { return wallNow(); }};
};

}  // namespace kestrum::test
