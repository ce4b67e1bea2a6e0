#include "core/library/RecordingLibraryDate.h"

#include <QLocale>
#include <QStringList>

namespace kestrum {

namespace {

// The pattern of the date part of a recording's file name; its one "_" makes it two pieces of the name.
const QString kNameDatePattern = QStringLiteral("yyyy-MM-dd_HH-mm-ss");

}  // namespace

ReferenceDate recordingLibraryDate(const std::optional<QDateTime>& birthTime, const QString& moviePath,
                                   ReferenceDate scanTime) {
    if (birthTime) return ReferenceDate::fromDateTime(*birthTime);
    if (const std::optional<QDateTime> named = dateInRecordingFileName(moviePath))
        return ReferenceDate::fromDateTime(*named);
    return scanTime;
}

std::optional<QDateTime> fileBirthTime(const QFileInfo& file) {
    const QDateTime birth = file.birthTime();
    if (!birth.isValid()) return std::nullopt;
    return birth;
}

std::optional<QDateTime> dateInRecordingFileName(const QString& moviePath) {
    const QStringList pieces = QFileInfo(moviePath).completeBaseName().split(u'_', Qt::SkipEmptyParts);
    if (pieces.size() < 2) return std::nullopt;
    const QString text = pieces.at(0) + QLatin1Char('_') + pieces.at(1);
    // The save path formats with the user's locale, whose digits need not be ASCII.
    for (const QLocale& locale : {QLocale(), QLocale::c()}) {
        const QDateTime date = locale.toDateTime(text, kNameDatePattern);
        if (date.isValid()) return date;
    }
    return std::nullopt;
}

}  // namespace kestrum
