#pragma once

#include "base/async/SerialQueue.h"
#include "base/common/ReferenceDate.h"
#include "base/common/Result.h"
#include "base/files/DurableAppendFile.h"
#include "core/telemetry/RecordingTelemetryJournalCodec.h"

#include <QString>

#include <chrono>
#include <memory>
#include <optional>

namespace kestrum {

// Writes the telemetry journal of a recording in progress (RecordingTelemetryJournalCodec.h) beside its
// movie. Appends are encoded on the caller's thread and written at once on the journal's own queue
// ("com.kestrum.telemetry.journal"), which also makes them durable every `kSyncInterval`: a crash or a
// power loss loses at most the last second of what was gathered. A journal that cannot be written is
// logged once and then stays silent: the recording goes on without it.
//
// Threads: every member may be called from any thread; the main thread calls them in practice (the
// collector and the coordinator). The file belongs to the queue.
class RecordingTelemetryJournal {
  public:
    static constexpr std::chrono::milliseconds kSyncInterval{500};

    // Creates the journal at `path` (replacing any file there) with the recording's start date as its
    // first line. An Error when the file cannot be made.
    static Result<std::shared_ptr<RecordingTelemetryJournal>> create(const QString& path,
                                                                     ReferenceDate recordingStartedAt);
    ~RecordingTelemetryJournal();
    RecordingTelemetryJournal(const RecordingTelemetryJournal&) = delete;
    RecordingTelemetryJournal& operator=(const RecordingTelemetryJournal&) = delete;

    const QString& path() const { return path_; }
    void appendEvents(const std::vector<RecordingEvent>& events);
    void appendSnapshot(const RecordingScoreboardSnapshot& snapshot);
    void appendMetadata(const RecordingMetadata& metadata);
    // Writes and syncs what is pending, then closes the file; later appends are dropped.
    void close();

  private:
    explicit RecordingTelemetryJournal(QString path);
    void append(const RecordingTelemetryJournalLine& line);
    // Queue: the file's work.
    void write(const std::string& bytes);
    void sync();
    void report(const Error& error);

    const QString path_;
    // Queue.
    DurableAppendFile file_;
    bool failureReported_ = false;
    std::optional<SerialQueueTimer> syncTimer_;
    // Last, so that it goes first: it runs what it still holds while the fields above are alive.
    SerialQueue queue_{QStringLiteral("com.kestrum.telemetry.journal")};
};

}  // namespace kestrum
