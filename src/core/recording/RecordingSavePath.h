#pragma once

#include "base/common/ReferenceDate.h"
#include "base/common/Result.h"
#include "core/notifications/NotificationCenter.h"
#include "core/recording/RecordingFolderStore.h"
#include "core/telemetry/RecordingEvent.h"
#include "core/telemetry/RecordingMetadata.h"
#include "core/telemetry/RecordingScoreboardSnapshot.h"

#include <QCoroTask>
#include <QString>

#include <optional>
#include <vector>

namespace kestrum {

// Takes a finalised movie from the in-progress folder into the recordings folder under its final name,
// writes its session document beside it, and tells the application that a recording exists. The movie
// is what counts: a failed document costs the timeline, never the movie.
//
// Threads: main thread; only the document write runs on a detached utility task, which this awaits. The
// folder store and the notification centre must outlive every running save.
class RecordingSavePath {
  public:
    explicit RecordingSavePath(const RecordingFolderStore& folderStore,
                               NotificationCenter& notificationCenter = NotificationCenter::shared());

    // Where the capturer writes movies while they are recorded: the cache folder +
    // "Kestrum/InProgress" (not /tmp, which is often kept in memory).
    static QString inProgressFolderPath();

    // Moves the movie at `temporaryPath` to the folder under the name of `date` (the date of its first
    // frame) and `metadata`, replacing a file of the same name; writes the document with the events and
    // scoreboard; posts "com.tidemoss.Kestrum.recordingSaved". Never fails: a missing temporary file or
    // a failed move is printed and logged, and then nothing else happens (the temporary file stays).
    QCoro::Task<void> saveRecording(QString temporaryPath, ReferenceDate date,
                                    std::optional<RecordingMetadata> metadata,
                                    std::vector<RecordingEvent> events,
                                    std::vector<RecordingScoreboardSnapshot> scoreboard);

    // Moves a file by rename, or, across file systems, by a copy followed by the removal of the source.
    static Status moveFile(const QString& sourcePath, const QString& destinationPath);

  private:
    // The folder (made when gone), the final name, the replacement and the move; gives the final path.
    Result<QString> moveIntoRecordingsFolder(const QString& temporaryPath, ReferenceDate date,
                                             const std::optional<RecordingMetadata>& metadata) const;
    void postRecordingSaved(const QString& moviePath) const;

    const RecordingFolderStore& folderStore_;
    NotificationCenter& notificationCenter_;
};

}  // namespace kestrum
