#pragma once

#include "base/async/Job.h"
#include "core/notifications/NotificationCenter.h"
#include "core/recording/RecordingFolderStore.h"
#include "core/recording/RecordingStorageBudgetSource.h"
#include "core/recording/RecordingStorageUsage.h"
#include "core/settings/UserDefaults.h"

#include <QObject>
#include <QUuid>

#include <optional>

namespace kestrum {

// The last measure of the recordings folder that a view shows, refreshed in the background. Each refresh
// reads the budget and the folder on the main thread, measures on a utility thread, and keeps the result
// only if no later refresh began meanwhile (its token still stands), so of two refreshes at once only the
// later one's result is kept, whichever finishes first.
//
// It refreshes by itself, once started (`refresh` the first time a view appears), when the folder or one
// of the three storage settings changes, and when a recording is saved.
//
// Threads: main thread; the measure runs on the utility pool and its result comes back to the main
// thread. Everything given must outlive the object; a measure still running when it is destroyed is
// dropped.
class StorageUsageRefresh : public QObject {
    Q_OBJECT

  public:
    StorageUsageRefresh(const RecordingStorageBudgetSource& source, const UserDefaults& defaults,
                        const RecordingFolderStore& folderStore, NotificationCenter& notifications,
                        QObject* parent = nullptr);

    // Starts a measure with a new token.
    void refresh();

    // The last measure kept; absent before the first one comes back.
    const std::optional<RecordingStorageUsage>& storageUsage() const { return storageUsage_; }
    QUuid storageRefreshID() const { return storageRefreshID_; }

  signals:
    void storageUsageChanged();

  private:
    const RecordingStorageBudgetSource& source_;
    NotificationObserverToken savedObserver_;
    // Main thread.
    std::optional<RecordingStorageUsage> storageUsage_;
    QUuid storageRefreshID_ = QUuid::createUuid();
    bool hasStarted_ = false;
};

}  // namespace kestrum
