#pragma once

#include "base/files/FileOwnershipLock.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace kestrum {

// One recording in the in-progress folder: its movie ("kestrum_<UUID>.mov"), the movie's journal, the
// telemetry journal and the lock file that tells whether a living process owns them. The capturer
// claims a new one before the movie exists and holds it until the recording is saved; at launch, one
// whose lock nobody holds is an orphan, which the launch claims and recovers.
//
// Threads: main thread.
class InProgressRecording {
  public:
    // Takes the lock of the recording whose movie is (or will be) `moviePath`; an unowned object when
    // another open file holds it, or when the lock file cannot be made.
    static InProgressRecording claim(const QString& moviePath);
    // The movies of the in-progress folder, by name.
    static QStringList moviesIn(const QString& folder);

    InProgressRecording() = default;
    InProgressRecording(InProgressRecording&&) = default;
    InProgressRecording& operator=(InProgressRecording&&) = default;

    bool isOwned() const { return lock_ != nullptr; }
    const QString& moviePath() const { return moviePath_; }
    QString movieJournalPath() const;
    QString telemetryJournalPath() const;
    QString lockPath() const;

    // The recording is done with: once its movie has left the folder (saved), the journals and the lock
    // file go; a movie still here (its save failed) keeps its journals for the next launch, which will
    // find it unowned. Either way the lock is let go.
    void finish();
    // Nothing worth keeping was recorded: the movie, its journals and the lock file go.
    void discard();

  private:
    void removeJournals() const;

    QString moviePath_;
    std::unique_ptr<FileOwnershipLock> lock_;
};

}  // namespace kestrum
