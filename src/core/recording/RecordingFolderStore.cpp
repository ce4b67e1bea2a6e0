#include "core/recording/RecordingFolderStore.h"

#include "base/log/CaptureLog.h"
#include "core/recording/RecordingStorageBudget.h"
#include "core/settings/SettingsKeys.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <unistd.h>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace kestrum {
namespace {

const QString kFolderName = QStringLiteral("Kestrum");
const QString kLegacyFolderName = QStringLiteral("Brindlet");

// Why a stored or chosen path cannot serve as the folder, or nothing when it can. A folder that does
// not exist any more counts as unusable, as a bookmark of a deleted folder no longer resolves.
std::optional<QString> unusableFolderReason(const QString& path) {
    if (path.isEmpty()) return QStringLiteral("The folder path is empty.");
    if (QDir::isRelativePath(path)) {
        return QStringLiteral("The folder path “%1” is not absolute.").arg(path);
    }
    const QFileInfo info(path);
    if (!info.exists()) return QStringLiteral("The folder “%1” doesn’t exist.").arg(path);
    if (!info.isDir()) return QStringLiteral("“%1” is not a folder.").arg(path);
    return std::nullopt;
}

}  // namespace

RecordingFolderStore::RecordingFolderStore(UserDefaults& defaults, FolderPicker& picker, QObject* parent)
    : QObject(parent), defaults_(defaults), picker_(picker), folderPath_(defaultFolderPath()) {
    restoreStoredFolder();
}

QString RecordingFolderStore::defaultFolderPath() {
    const QString movies = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    if (movies.isEmpty()) qFatal("kestrum::RecordingFolderStore: the system has no Videos folder");
    const QString folder = QDir::cleanPath(movies + QLatin1Char('/') + kFolderName);
    const QString legacyFolder = QDir::cleanPath(movies + QLatin1Char('/') + kLegacyFolderName);
    if (QFileInfo(folder).isDir() || !QFileInfo(legacyFolder).isDir()) return folder;

    if (std::rename(QFile::encodeName(legacyFolder).constData(), QFile::encodeName(folder).constData()) !=
        0) {
        const QString description = QString::fromLocal8Bit(std::strerror(errno));
        logCaptureError(QStringLiteral("Could not migrate the recordings folder to Kestrum: ") + description);
        return legacyFolder;
    }
    return folder;
}

void RecordingFolderStore::restoreStoredFolder() {
    const std::optional<QByteArray> stored = defaults_.dataForKey(SettingsKeys::recordingsFolderBookmark);
    if (!stored) return;
    const Result<QString> resolved = resolveStoredFolder(*stored);
    if (!resolved.ok()) {
        defaults_.removeObjectForKey(SettingsKeys::recordingsFolderBookmark);
        logCaptureError(QStringLiteral("Could not restore recordings folder: ") +
                        resolved.error().description);
        return;
    }
    setFolderPath(resolved.value());
    // A stored path never goes stale the way a bookmark does, so there is nothing to renew here.
}

Result<QString> RecordingFolderStore::resolveStoredFolder(const QByteArray& storedPath) {
    const QString path = QString::fromUtf8(storedPath);
    if (const std::optional<QString> reason = unusableFolderReason(path)) {
        return Error::withDescription(*reason);
    }
    return QDir::cleanPath(path);
}

void RecordingFolderStore::takeFolder(const QString& folderPath) {
    if (const std::optional<QString> reason = unusableFolderReason(folderPath)) {
        logCaptureError(QStringLiteral("Could not remember recordings folder: ") + *reason);
        return;
    }
    const QString cleaned = QDir::cleanPath(folderPath);
    defaults_.setData(cleaned.toUtf8(), SettingsKeys::recordingsFolderBookmark);
    setFolderPath(cleaned);
}

void RecordingFolderStore::chooseFolder() {
    FolderPicker::Request request;
    request.title = QStringLiteral("Choose Recordings Folder");
    request.prompt = QStringLiteral("Choose");
    request.message = QStringLiteral("Kestrum will save new recordings and timeline files here.");
    request.startDirectoryPath = folderPath_;
    request.canCreateDirectories = true;
    if (const std::optional<QString> chosen = picker_.chooseFolder(request)) takeFolder(*chosen);
}

bool RecordingFolderStore::isFolderUsable() const {
    const QString existing = nearestExistingPath(folderPath_);
    return ::access(QFile::encodeName(existing).constData(), W_OK) == 0;
}

QString RecordingFolderStore::folderDisplayPath() const {
    const QString home = QDir::cleanPath(QDir::homePath());
    if (home == QLatin1String("/")) return folderPath_;
    if (folderPath_ == home) return QStringLiteral("~");
    if (folderPath_.startsWith(home + QLatin1Char('/')))
        return QLatin1Char('~') + folderPath_.mid(home.size());
    return folderPath_;
}

void RecordingFolderStore::setFolderPath(const QString& folderPath) {
    if (folderPath_ == folderPath) return;
    folderPath_ = folderPath;
    emit folderURLChanged(folderURL());
}

}  // namespace kestrum
