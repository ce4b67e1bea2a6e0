#pragma once

#include "platform/ports/LeagueShareAudioRoute.h"

#include <optional>
#include <vector>

namespace kestrum {

// An audio route that records what it was asked and can be told to refuse its start. Main thread only,
// as the port says; both tasks complete at once.
class FakeLeagueShareAudioRoute final : public LeagueShareAudioRoute {
  public:
    QCoro::Task<Status> start(std::int32_t processId) override {
        startedProcessIds.push_back(processId);
        if (startError) co_return *startError;
        routedProcessId = processId;
        co_return Status::success();
    }

    QCoro::Task<> stop() override {
        ++stopCount;
        routedProcessId.reset();
        co_return;
    }

    // Every process a start was asked for, in order, refused ones included.
    std::vector<std::int32_t> startedProcessIds;
    // The process whose sound is routed now; absent when none is.
    std::optional<std::int32_t> routedProcessId;
    int stopCount = 0;
    // The starts fail with it while set.
    std::optional<Error> startError;
};

}  // namespace kestrum
