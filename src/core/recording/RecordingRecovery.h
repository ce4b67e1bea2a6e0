#pragma once

#include "base/common/ReferenceDate.h"
#include "core/recording/InProgressRecording.h"
#include "core/recording/RecordingSavePath.h"
#include "media/MovieRecovery.h"

#include <QCoroTask>
#include <QString>

namespace kestrum {

// Brings the recordings a crash, a kill or a power loss left in the in-progress folder into the
// recordings folder at launch. A recording whose lock nobody holds is an orphan: its movie is made
// playable from its journal (MovieRecovery), its session document rebuilt from its telemetry journal,
// and both go through the normal save path (final name, document, saved notification), with a capture
// log line saying how much it holds. A movie that cannot be made playable is saved as it is, with a
// line saying why; the library shows it as damaged. Nothing is deleted but the journals of a recording
// that has been saved.
//
// Threads: main thread; the rebuild of a movie runs on a detached task, which this awaits. The movie
// recovery and the save path must outlive a running recovery.
class RecordingRecovery {
  public:
    RecordingRecovery(const MovieRecovery& movieRecovery, RecordingSavePath& savePath,
                      QString inProgressFolder);

    // Recovers every orphan of the folder, one after the other; gives how many were found.
    QCoro::Task<int> recoverOrphans();

    // "Recovered an unfinished recording: it holds 83.4 seconds." and the damaged case's line.
    static QString recoveredLine(double heldSeconds);
    static QString unplayableLine(const QString& reason);

  private:
    QCoro::Task<void> recover(InProgressRecording recording);

    const MovieRecovery& movieRecovery_;
    RecordingSavePath& savePath_;
    const QString inProgressFolder_;
};

// The date a recording's name is made of when its telemetry journal does not say: when its movie was
// created, else when it was last written.
ReferenceDate movieFileDate(const QString& moviePath);

}  // namespace kestrum
