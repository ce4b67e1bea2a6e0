#pragma once

#include "core/recording/RecordingStorageLimit.h"
#include "core/recording/RecordingStorageUsage.h"
#include "core/settings/UserDefaults.h"

#include <QString>

namespace kestrum {

// One gigabyte of the budget: the unit is decimal.
inline constexpr qint64 kBytesPerGigabyte = 1'000'000'000;

// The budget from "recordingStorageLimitEnabled" and "recordingStorageMaximumGigabytes": off gives a
// maximum of 0; on, the stored gigabytes (100 when not positive) in bytes, truncated.
RecordingStorageLimit storageLimitBytes(const UserDefaults& defaults);

// "recordingStorageWarningPercentage" as a fraction: the stored per cent over 100 when positive,
// otherwise 0.8.
double storageWarningFraction(const UserDefaults& defaults);

// Walks `folderPath` and measures it against the budget. Synchronous and made for a utility thread: it
// touches only its arguments and the file system. Hidden files and hidden folders (a leading ".") are
// skipped with their contents, symbolic links are neither counted nor followed, and a folder that cannot
// be read counts as empty. Each regular file counts its allocated size (st_blocks * 512), or its plain
// size when the file system reports no blocks for a non-empty file. With no budget, the maximum is the
// sum plus the free space of the volume of the nearest existing parent (0 when it cannot be read).
RecordingStorageUsage measureStorageUsage(const QString& folderPath, qint64 maximumBytes, bool isUnlimited,
                                          double warningFraction);

// The allocated bytes of every regular, non-hidden file under `folderPath`; the walk part of the measure.
qint64 recordingsFolderAllocatedBytes(const QString& folderPath);

// `path` itself when something exists there, otherwise its nearest existing parent; components are
// removed while nothing exists and at least two remain, so "/" (or the first component of a relative
// path) is the last resort even when it does not exist.
QString nearestExistingPath(const QString& path);

}  // namespace kestrum
