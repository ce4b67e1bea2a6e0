#pragma once

#include "base/common/ReferenceDate.h"

#include <QDateTime>
#include <QFileInfo>
#include <QString>

#include <optional>

namespace kestrum {

// The date a library entry carries, the one that orders the list and groups it into sessions: the
// movie's creation (birth) time where the file system keeps one. Many Linux file systems keep none
// (ext3, and others mounted without it); there the date at the head of the movie's file name stands
// for it, which the save path writes from the first frame's date, so it is the game's start to the
// second. Only a movie with neither takes the time of the scan that built its entry. Pure.
ReferenceDate recordingLibraryDate(const std::optional<QDateTime>& birthTime, const QString& moviePath,
                                   ReferenceDate scanTime);

// The file's birth time as the file system reports it (statx), or absent where it keeps none.
std::optional<QDateTime> fileBirthTime(const QFileInfo& file);

// The local date and time at the head of a recording's file name, "2026-01-02_10-00-00_...", written
// with the digits of the system's locale or with plain ones; absent when the name starts otherwise or
// names no moment that exists in the local time zone.
std::optional<QDateTime> dateInRecordingFileName(const QString& moviePath);

}  // namespace kestrum
