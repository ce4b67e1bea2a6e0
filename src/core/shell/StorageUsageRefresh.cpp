#include "core/shell/StorageUsageRefresh.h"

#include "core/notifications/RecordingNotifications.h"
#include "core/settings/SettingsKeys.h"

#include <QCoroFuture>
#include <QPointer>

namespace kestrum {

StorageUsageRefresh::StorageUsageRefresh(const RecordingStorageBudgetSource& source,
                                         const UserDefaults& defaults,
                                         const RecordingFolderStore& folderStore,
                                         NotificationCenter& notifications, QObject* parent)
    : QObject(parent), source_(source) {
    // Changes only refresh a line that is already shown: the first refresh belongs to the view.
    const auto refreshIfStarted = [this] {
        if (hasStarted_) refresh();
    };
    connect(&defaults, &UserDefaults::valueChanged, this, [refreshIfStarted](const QString& key) {
        if (key == SettingsKeys::recordingStorageMaximumGigabytes ||
            key == SettingsKeys::recordingStorageLimitEnabled ||
            key == SettingsKeys::recordingStorageWarningPercentage) {
            refreshIfStarted();
        }
    });
    connect(&folderStore, &RecordingFolderStore::folderURLChanged, this, refreshIfStarted);
    savedObserver_ = notifications.observe(RecordingNotifications::recordingSaved, this,
                                           [refreshIfStarted](const QVariantMap&) { refreshIfStarted(); });
}

void StorageUsageRefresh::refresh() {
    hasStarted_ = true;
    const QUuid token = QUuid::createUuid();
    storageRefreshID_ = token;
    QFuture<RecordingStorageUsage> measuring = source_.measureDetached(source_.readBudget());
    Job<void>::start([self = QPointer<StorageUsageRefresh>(this), token,
                      measuring = std::move(measuring)](CancellationToken) mutable -> QCoro::Task<void> {
        const RecordingStorageUsage usage = co_await measuring;
        if (!self || self->storageRefreshID_ != token) co_return;  // a later refresh began: drop this one
        self->storageUsage_ = usage;
        emit self->storageUsageChanged();
    });
}

}  // namespace kestrum
