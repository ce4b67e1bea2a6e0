#include "core/recording/RecordingStorageBudget.h"

#include "core/settings/SettingsReaders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace kestrum {
namespace {

// Bytes a file takes on disk. st_blocks counts 512-byte units whatever the file system's block size.
qint64 allocatedBytes(const struct stat& status) {
    const qint64 allocated = static_cast<qint64>(status.st_blocks) * 512;
    if (allocated == 0 && status.st_size > 0) return static_cast<qint64>(status.st_size);
    return allocated;
}

// Sums the folder open at `folderFd`, which it takes over and closes. Relative *at() calls keep the
// walk free of path building, which is most of its cost on large folders.
qint64 sumOpenFolder(int folderFd) {
    DIR* const folder = fdopendir(folderFd);
    if (folder == nullptr) {
        ::close(folderFd);
        return 0;
    }
    qint64 sum = 0;
    while (const dirent* entry = readdir(folder)) {
        if (entry->d_name[0] == '.') continue;  // ".", ".." and every hidden entry
        struct stat status {};
        if (fstatat(dirfd(folder), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) continue;
        if (S_ISREG(status.st_mode)) {
            sum += allocatedBytes(status);
        } else if (S_ISDIR(status.st_mode)) {
            const int childFd = openat(dirfd(folder), entry->d_name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            if (childFd >= 0) sum += sumOpenFolder(childFd);
        }
    }
    closedir(folder);
    return sum;
}

qint64 freeBytesOfVolume(const QString& path) {
    struct statvfs volume {};
    if (statvfs(QFile::encodeName(path).constData(), &volume) != 0) return 0;
    return static_cast<qint64>(volume.f_bavail) * static_cast<qint64>(volume.f_frsize);
}

}  // namespace

RecordingStorageLimit storageLimitBytes(const UserDefaults& defaults) {
    if (!readRecordingStorageLimitEnabled(defaults)) return {0, true};
    const double gigabytes = readRecordingStorageMaximumGigabytes(defaults);
    return {static_cast<qint64>(gigabytes * static_cast<double>(kBytesPerGigabyte)), false};
}

double storageWarningFraction(const UserDefaults& defaults) {
    // The reader already gives 80 for a value that is not positive.
    return readRecordingStorageWarningPercentage(defaults) / 100.0;
}

qint64 recordingsFolderAllocatedBytes(const QString& folderPath) {
    const int folderFd =
        ::open(QFile::encodeName(folderPath).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folderFd < 0) return 0;
    return sumOpenFolder(folderFd);
}

QString nearestExistingPath(const QString& path) {
    QString candidate = QDir::cleanPath(path);
    while (!QFileInfo::exists(candidate)) {
        const qsizetype lastSeparator = candidate.lastIndexOf(QLatin1Char('/'));
        if (lastSeparator < 0) break;  // a single relative component
        if (lastSeparator == 0) {
            if (candidate.size() == 1) break;  // "/" itself
            candidate = QStringLiteral("/");
        } else {
            candidate.truncate(lastSeparator);
        }
    }
    return candidate;
}

RecordingStorageUsage measureStorageUsage(const QString& folderPath, qint64 maximumBytes, bool isUnlimited,
                                          double warningFraction) {
    const qint64 usedBytes = recordingsFolderAllocatedBytes(folderPath);
    const qint64 freeBytes = freeBytesOfVolume(nearestExistingPath(folderPath));
    const qint64 maximum = isUnlimited ? usedBytes + freeBytes : maximumBytes;
    return {usedBytes, maximum, warningFraction, isUnlimited};
}

}  // namespace kestrum
