#pragma once

#include "core/recording/RecordingFolderStore.h"
#include "core/recording/RecordingStorageQuery.h"
#include "core/recording/RecordingStorageUsage.h"
#include "core/settings/UserDefaults.h"

#include <QFuture>

#include <functional>

namespace kestrum {

// Where the coordinator's storage checks come from: the budget settings and the recordings folder,
// read on the main thread, and the measure, run on a detached utility-pool task.
class RecordingStorageBudgetSource {
  public:
    // Runs on a utility pool thread; must touch nothing but its argument and the file system.
    using Measure = std::function<RecordingStorageUsage(const RecordingStorageQuery& query)>;

    // The folder store and the defaults must outlive the source. `measure` defaults to the real walk,
    // measureStorageUsage.
    RecordingStorageBudgetSource(const RecordingFolderStore& folderStore, const UserDefaults& defaults,
                                 Measure measure = {});

    // Reads the budget: the limit, the warning fraction and the folder. Main thread.
    RecordingStorageQuery readBudget() const;

    // Starts the measure of `query` on a detached task; the future is awaited with QCoro.
    QFuture<RecordingStorageUsage> measureDetached(const RecordingStorageQuery& query) const;

  private:
    const RecordingFolderStore& folderStore_;
    const UserDefaults& defaults_;
    Measure measure_;
};

}  // namespace kestrum
