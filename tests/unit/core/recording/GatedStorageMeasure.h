#pragma once

#include "core/recording/RecordingStorageBudgetSource.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>

namespace kestrum::test {

// A storage measure for the coordinator that answers a scripted usage, and holds chosen calls (by their
// 1-based order) on their utility thread until the test releases them. Thread-safe: the measure runs on
// the utility pool while the test reads and releases on the main thread.
class GatedStorageMeasure {
  public:
    GatedStorageMeasure() = default;
    ~GatedStorageMeasure() { releaseAll(); }

    RecordingStorageBudgetSource::Measure measure();

    void setLimitReached(bool reached);
    void holdCall(int callNumber);
    void releaseAll();
    int callCount() const;
    int heldCount() const;
    // The queries given so far, in order.
    std::vector<RecordingStorageQuery> queries() const;

  private:
    struct State {
        mutable std::mutex mutex;
        std::condition_variable released;
        bool limitReached = false;
        int calls = 0;
        int held = 0;
        std::set<int> callsToHold;
        std::vector<RecordingStorageQuery> queries;
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace kestrum::test
