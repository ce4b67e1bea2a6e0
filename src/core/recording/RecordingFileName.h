#pragma once

#include "core/telemetry/RecordingMetadata.h"

#include <QDateTime>
#include <QString>

#include <optional>
#include <string>

namespace kestrum {

// The date part of a recording's name: pattern "yyyy-MM-dd_HH-mm-ss" in the local time zone, written
// with the default locale (so its digits follow the user's locale).
QString recordingDateNamePart(const QDateTime& date);

// A name part for the game mode or the position: trimmed; every Unicode scalar that is not a letter or a
// digit becomes "_"; runs of "_" collapse and none is left at either end. Absent when nothing remains.
std::optional<QString> sanitizedNamePart(const std::optional<std::string>& value);

// The champion's name part: trimmed, only its letters and digits kept, joined and upper-cased
// ("Miss Fortune" -> "MISSFORTUNE"). Absent when nothing remains.
std::optional<QString> compactedNamePart(const std::optional<std::string>& value);

// The final file name: date, mode, champion and position joined by "_", each absent or empty part left
// out, the position also when it reads "NONE" in any case; then ".mov".
QString recordingFileName(const QDateTime& date, const std::optional<RecordingMetadata>& metadata);

}  // namespace kestrum
