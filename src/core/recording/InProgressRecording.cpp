#include "core/recording/InProgressRecording.h"

#include "media/MovieJournal.h"

#include <QDir>
#include <QFile>

namespace kestrum {

InProgressRecording InProgressRecording::claim(const QString& moviePath) {
    InProgressRecording recording;
    recording.moviePath_ = moviePath;
    recording.lock_ = FileOwnershipLock::tryAcquire(recording.lockPath());
    return recording;
}

QStringList InProgressRecording::moviesIn(const QString& folder) {
    return QDir(folder).entryList({QStringLiteral("kestrum_*.mov")}, QDir::Files, QDir::Name);
}

QString InProgressRecording::movieJournalPath() const {
    return kestrum::movieJournalPath(moviePath_);
}

QString InProgressRecording::telemetryJournalPath() const {
    return moviePath_ + QStringLiteral(".telemetry");
}

QString InProgressRecording::lockPath() const {
    return moviePath_ + QStringLiteral(".lock");
}

void InProgressRecording::removeJournals() const {
    QFile::remove(movieJournalPath());
    QFile::remove(telemetryJournalPath());
}

void InProgressRecording::finish() {
    if (!QFile::exists(moviePath_)) {
        removeJournals();
        if (lock_) lock_->removeAndRelease();
    }
    lock_.reset();
}

void InProgressRecording::discard() {
    QFile::remove(moviePath_);
    removeJournals();
    if (lock_) lock_->removeAndRelease();
    lock_.reset();
}

}  // namespace kestrum
