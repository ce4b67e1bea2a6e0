#pragma once

#include "base/common/Result.h"
#include "core/telemetry/RecordingSessionData.h"
#include "core/telemetry/SessionDocumentCodec.h"

#include <QString>

#include <functional>
#include <mutex>
#include <optional>

namespace kestrum {

// The one gate through which session documents are read from and written to disk, so that the save
// path, the library scanner and the detail loader never see a half-done read-modify-write of a file.
// Every operation is synchronous and holds the one process-wide lock for its whole length, file access
// included, for all files alike; callers run them off the main thread. Nothing else is locked while the
// lock is held, so it takes part in no lock-order cycle. The transform given to a rewrite runs under
// the lock and must not call back into the store.
class RecordingSidecarStore {
  public:
    // The process-wide instance, created on first use by any thread and never destroyed.
    static RecordingSidecarStore& shared();

    RecordingSidecarStore(const RecordingSidecarStore&) = delete;
    RecordingSidecarStore& operator=(const RecordingSidecarStore&) = delete;

    // The document at `path`, or nothing: a missing, unreadable or undecodable file gives nothing,
    // silently. The file is left as it is.
    std::optional<RecordingSessionData> readSessionData(const QString& path);

    // The same read, decoded by the streaming decoder: the snapshots go to `visitSnapshot`, under the
    // lock, and the document comes back with an empty scoreboard (see SessionDocumentCodec.h). The
    // visitor must not call back into the store.
    std::optional<RecordingSessionData> readSessionData(const QString& path,
                                                        const ScoreboardSnapshotVisitor& visitSnapshot);

    // Encodes `session` and replaces the file at `path` atomically: the bytes go to a temporary file
    // in the same folder, are flushed to the disk, and the temporary file is renamed over the target,
    // so a reader sees the old document or the new one and a failure leaves the old one in place.
    Status writeSessionData(const RecordingSessionData& session, const QString& path);

    // Reads and decodes the file, applies `transform`, encodes and writes the result atomically, all
    // within one hold of the lock, so the transform works on the file's current content. A file that
    // cannot be read or decoded is never overwritten and `transform` is not called.
    Status rewriteSessionData(const QString& path,
                              const std::function<RecordingSessionData(RecordingSessionData)>& transform);

  private:
    RecordingSidecarStore() = default;

    // The bodies of the operations; the caller holds `lock_`.
    Result<RecordingSessionData> readLocked(const QString& path,
                                            const ScoreboardSnapshotVisitor* visitSnapshot = nullptr);
    Status writeLocked(const RecordingSessionData& session, const QString& path);

    // Held over a whole read, write or rewrite of any session document. Not recursive.
    std::mutex lock_;
};

}  // namespace kestrum
