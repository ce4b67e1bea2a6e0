#include "core/telemetry/RecordingTelemetryJournal.h"

#include "base/log/CaptureLog.h"

namespace kestrum {

Result<std::shared_ptr<RecordingTelemetryJournal>> RecordingTelemetryJournal::create(
    const QString& path, ReferenceDate recordingStartedAt) {
    std::shared_ptr<RecordingTelemetryJournal> journal(new RecordingTelemetryJournal(path));
    Status created;
    journal->queue_.sync([&] { created = journal->file_.create(path); });
    if (!created.ok()) return created.error();
    RecordingTelemetryJournalLine start;
    start.recordingStartedAt = recordingStartedAt;
    journal->append(start);
    journal->queue_.sync([&] {
        journal->sync();
        journal->syncTimer_ = journal->queue_.scheduleTimer(kSyncInterval, kSyncInterval,
                                                            [raw = journal.get()] { raw->sync(); });
    });
    return journal;
}

RecordingTelemetryJournal::RecordingTelemetryJournal(QString path) : path_(std::move(path)) {}

RecordingTelemetryJournal::~RecordingTelemetryJournal() {
    close();
}

void RecordingTelemetryJournal::appendEvents(const std::vector<RecordingEvent>& events) {
    if (events.empty()) return;
    RecordingTelemetryJournalLine line;
    line.events = events;
    append(line);
}

void RecordingTelemetryJournal::appendSnapshot(const RecordingScoreboardSnapshot& snapshot) {
    RecordingTelemetryJournalLine line;
    line.snapshot = snapshot;
    append(line);
}

void RecordingTelemetryJournal::appendMetadata(const RecordingMetadata& metadata) {
    RecordingTelemetryJournalLine line;
    line.metadata = metadata;
    append(line);
}

void RecordingTelemetryJournal::append(const RecordingTelemetryJournalLine& line) {
    Result<std::string> encoded = encodeRecordingTelemetryJournalLine(line);
    if (!encoded.ok()) {
        queue_.async([this, error = encoded.error()] { report(error); });
        return;
    }
    queue_.async([this, bytes = std::move(encoded).value()] { write(bytes); });
}

void RecordingTelemetryJournal::write(const std::string& bytes) {
    if (!file_.isOpen()) return;
    const Status written = file_.append(bytes);
    if (!written.ok()) report(written.error());
}

void RecordingTelemetryJournal::sync() {
    if (!file_.isOpen()) return;
    const Status synced = file_.sync();
    if (!synced.ok()) report(synced.error());
}

void RecordingTelemetryJournal::report(const Error& error) {
    if (failureReported_) return;
    failureReported_ = true;
    logCaptureError(
        QStringLiteral("Telemetry journal could not be written; a crash would lose this game's events: ") +
        error.description);
}

void RecordingTelemetryJournal::close() {
    queue_.sync([this] {
        syncTimer_.reset();
        sync();
        file_.close();
    });
}

}  // namespace kestrum
