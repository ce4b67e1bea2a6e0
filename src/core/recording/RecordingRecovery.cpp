#include "core/recording/RecordingRecovery.h"

#include "base/async/Detached.h"
#include "base/log/CaptureLog.h"
#include "core/telemetry/RecordingTelemetryJournalCodec.h"

#include <QCoroFuture>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace kestrum {

RecordingRecovery::RecordingRecovery(const MovieRecovery& movieRecovery, RecordingSavePath& savePath,
                                     QString inProgressFolder)
    : movieRecovery_(movieRecovery), savePath_(savePath), inProgressFolder_(std::move(inProgressFolder)) {}

QString RecordingRecovery::recoveredLine(double heldSeconds) {
    return QStringLiteral("Recovered an unfinished recording: it holds %1 seconds.")
        .arg(QString::number(heldSeconds, 'f', 1));
}

QString RecordingRecovery::unplayableLine(const QString& reason) {
    return QStringLiteral("An unfinished recording could not be made playable (%1); it is kept as it is.")
        .arg(reason);
}

QCoro::Task<int> RecordingRecovery::recoverOrphans() {
    // Journals whose movie was saved just before a crash took the process away: only they remain.
    for (const QString& name :
         QDir(inProgressFolder_).entryList({QStringLiteral("kestrum_*.mov.lock")}, QDir::Files)) {
        const QString moviePath = QDir(inProgressFolder_).filePath(name.chopped(5));
        if (QFileInfo::exists(moviePath)) continue;
        InProgressRecording leftover = InProgressRecording::claim(moviePath);
        if (leftover.isOwned()) leftover.finish();
    }
    int found = 0;
    for (const QString& name : InProgressRecording::moviesIn(inProgressFolder_)) {
        InProgressRecording recording = InProgressRecording::claim(QDir(inProgressFolder_).filePath(name));
        if (!recording.isOwned()) continue;  // a living recording, this process's or another's
        ++found;
        co_await recover(std::move(recording));
    }
    co_return found;
}

QCoro::Task<void> RecordingRecovery::recover(InProgressRecording recording) {
    const QString moviePath = recording.moviePath();
    QFile journalFile(recording.telemetryJournalPath());
    const QByteArray journalBytes =
        journalFile.open(QIODevice::ReadOnly) ? journalFile.readAll() : QByteArray();
    RecordingTelemetryJournalContents contents = decodeRecordingTelemetryJournal(
        std::string_view(journalBytes.constData(), static_cast<std::size_t>(journalBytes.size())));

    // A named future: GCC 12 destroys the captures of a temporary lambda inside co_await twice.
    QFuture<Result<RecoveredMovie>> rebuilding =
        detached([recovery = &movieRecovery_, moviePath] { return recovery->recover(moviePath); });
    const Result<RecoveredMovie> rebuilt = co_await rebuilding;
    if (rebuilt.ok()) {
        logCaptureInfo(recoveredLine(rebuilt.value().heldSeconds));
    } else {
        logCaptureError(unplayableLine(rebuilt.error().description));
    }
    const ReferenceDate date = contents.recordingStartedAt.value_or(movieFileDate(moviePath));
    QCoro::Task<void> saving = savePath_.saveRecording(moviePath, date, std::move(contents.metadata),
                                                       std::move(contents.telemetry.events),
                                                       std::move(contents.telemetry.scoreboard));
    co_await std::move(saving);
    recording.finish();
}

ReferenceDate movieFileDate(const QString& moviePath) {
    const QFileInfo info(moviePath);
    const QDateTime born = info.birthTime();
    return ReferenceDate::fromDateTime(born.isValid() ? born : info.lastModified());
}

}  // namespace kestrum
