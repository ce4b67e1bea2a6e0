#include "core/recording/RecordingStorageBudgetSource.h"

#include "base/async/Detached.h"
#include "core/recording/RecordingStorageBudget.h"

namespace kestrum {

RecordingStorageBudgetSource::RecordingStorageBudgetSource(const RecordingFolderStore& folderStore,
                                                           const UserDefaults& defaults, Measure measure)
    : folderStore_(folderStore), defaults_(defaults), measure_(std::move(measure)) {
    if (!measure_) {
        measure_ = [](const RecordingStorageQuery& query) {
            return measureStorageUsage(query.folderPath, query.maximumBytes, query.isUnlimited,
                                       query.warningFraction);
        };
    }
}

RecordingStorageQuery RecordingStorageBudgetSource::readBudget() const {
    const RecordingStorageLimit limit = storageLimitBytes(defaults_);
    return {folderStore_.folderPath(), limit.maximumBytes, limit.isUnlimited,
            storageWarningFraction(defaults_)};
}

QFuture<RecordingStorageUsage> RecordingStorageBudgetSource::measureDetached(
    const RecordingStorageQuery& query) const {
    return detached([measure = measure_, query] { return measure(query); });
}

}  // namespace kestrum
