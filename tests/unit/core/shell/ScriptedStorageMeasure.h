#pragma once

#include "core/recording/RecordingStorageBudgetSource.h"

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <set>

namespace kestrum::test {

// A storage measure that answers the usage scripted for the folder it is asked about, or the default
// usage; measures of chosen folders wait on their utility thread until the test releases them (calls may
// enter in any order, since each runs on a pool thread). Thread-safe.
class ScriptedStorageMeasure {
  public:
    ~ScriptedStorageMeasure() { releaseAll(); }

    RecordingStorageBudgetSource::Measure measure();

    void setDefaultUsage(const RecordingStorageUsage& usage);
    void setUsage(const QString& folderPath, const RecordingStorageUsage& usage);
    void holdFolder(const QString& folderPath);
    void releaseFolder(const QString& folderPath);
    void releaseAll();
    int callCount() const;

  private:
    struct State {
        mutable std::mutex mutex;
        std::condition_variable released;
        int calls = 0;
        RecordingStorageUsage defaultUsage;
        std::map<QString, RecordingStorageUsage> usages;
        std::set<QString> held;
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace kestrum::test
