#include "core/recording/RecordingSavePath.h"

#include "base/async/Detached.h"
#include "base/log/CaptureLog.h"
#include "core/notifications/RecordingNotifications.h"
#include "core/recording/RecordingFileName.h"
#include "core/recording/StandardOutput.h"
#include "core/telemetry/RecordingSidecarStore.h"
#include "core/telemetry/SessionDocumentBuilder.h"

#include <QCoroFuture>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace kestrum {
namespace {

QString errnoDescription(int errorNumber) {
    return QString::fromLocal8Bit(std::strerror(errorNumber));
}

// The copy half of a move across file systems. A partial copy is removed, so that a failure leaves
// only the source.
Status copyThenRemove(const QString& sourcePath, const QString& destinationPath) {
    QFile source(sourcePath);
    if (!source.copy(destinationPath)) {
        const QString description = source.errorString();
        QFile::remove(destinationPath);
        return Error::withDescription(description);
    }
    // Once copied, the movie is safe at its destination: a source that cannot be removed only leaves a
    // harmless leftover in the in-progress folder.
    QFile::remove(sourcePath);
    return Status::success();
}

}  // namespace

RecordingSavePath::RecordingSavePath(const RecordingFolderStore& folderStore,
                                     NotificationCenter& notificationCenter)
    : folderStore_(folderStore), notificationCenter_(notificationCenter) {}

QString RecordingSavePath::inProgressFolderPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/Kestrum/InProgress");
}

Status RecordingSavePath::moveFile(const QString& sourcePath, const QString& destinationPath) {
    if (std::rename(QFile::encodeName(sourcePath).constData(),
                    QFile::encodeName(destinationPath).constData()) == 0) {
        return Status::success();
    }
    const int renameError = errno;
    if (renameError == EXDEV) return copyThenRemove(sourcePath, destinationPath);
    return Error::withDescription(errnoDescription(renameError));
}

Result<QString> RecordingSavePath::moveIntoRecordingsFolder(
    const QString& temporaryPath, ReferenceDate date,
    const std::optional<RecordingMetadata>& metadata) const {
    const QString folder = folderStore_.folderPath();
    if (!QFileInfo(folder).isDir() && !QDir().mkpath(folder)) {
        return Error::withDescription(QStringLiteral("The folder “%1” couldn’t be created.").arg(folder));
    }
    const QString destination = folder + QLatin1Char('/') + recordingFileName(date.toDateTime(), metadata);
    // A newer recording replaces an older one of the same name; there is no numbering.
    if (QFileInfo::exists(destination) || QFileInfo(destination).isSymLink()) {
        QFile existing(destination);
        if (!existing.remove()) return Error::withDescription(existing.errorString());
    }
    const Status moved = moveFile(temporaryPath, destination);
    if (!moved.ok()) return moved.error();
    return destination;
}

QCoro::Task<void> RecordingSavePath::saveRecording(QString temporaryPath, ReferenceDate date,
                                                   std::optional<RecordingMetadata> metadata,
                                                   std::vector<RecordingEvent> events,
                                                   std::vector<RecordingScoreboardSnapshot> scoreboard) {
    if (!QFileInfo::exists(temporaryPath)) {
        printStandardOutputLine(
            QStringLiteral("⚠️ [GameCapturer] Temp file was not found on disk. Skipping save."));
        co_return;
    }
    const Result<QString> moved = moveIntoRecordingsFolder(temporaryPath, date, metadata);
    if (!moved.ok()) {
        const QString description = moved.error().description;
        printStandardOutputLine(QStringLiteral("❌ [GameCapturer] IO error moving file: ") + description);
        // "Movies" stands whatever the folder really is.
        logCaptureError(QStringLiteral("Could not move recording into Movies: ") + description);
        co_return;
    }
    const QString moviePath = moved.value();

    const RecordingSessionData document =
        makeSessionData(metadata, RecordingTelemetry{std::move(events), std::move(scoreboard), {}});
    const QString documentPath = sessionDocumentPath(moviePath);
    // The future is a named local: GCC 12 destroys the captures of a temporary lambda inside a co_await
    // expression twice.
    QFuture<Status> writing = detached([document, documentPath] {
        return RecordingSidecarStore::shared().writeSessionData(document, documentPath);
    });
    const Status written = co_await writing;
    if (!written.ok()) {
        // Console only: the movie is saved, and the capture log keeps to the movie's fate.
        printStandardOutputLine(
            QStringLiteral("⚠️ [GameCapturer] Video saved, but timeline data could not be saved: ") +
            written.error().description);
    }

    printStandardOutputLine(QStringLiteral("🎥 [GameCapturer] Match recorded! Saved directly to: ") +
                            moviePath);
    logCaptureInfo(QStringLiteral("Match recording saved to ") + moviePath);
    postRecordingSaved(moviePath);
}

void RecordingSavePath::postRecordingSaved(const QString& moviePath) const {
    notificationCenter_.post(RecordingNotifications::recordingSaved,
                             {{RecordingNotifications::urlKey, QUrl::fromLocalFile(moviePath)},
                              {RecordingNotifications::isHighlightKey, false}});
}

}  // namespace kestrum
