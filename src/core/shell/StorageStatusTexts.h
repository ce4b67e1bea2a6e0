#pragma once

#include "core/recording/RecordingStorageUsage.h"

#include <QString>

#include <optional>

namespace kestrum {

// The texts of the storage use shown by the tray's panel and the settings, from one measure of the
// recordings folder. "Reached" here means used bytes at or above the maximum, whether the maximum is the
// budget or, with no budget, the used bytes plus the drive's free space (then the drive is full).

inline const QString kStorageWarningSymbol = QStringLiteral("externaldrive.badge.exclamationmark");

// Whether a warning shows: the use has reached the warning share of the maximum, or the maximum itself.
bool isStorageWarningDue(const RecordingStorageUsage& usage);

// The panel's line: "Storage <n>% full" below the maximum (n truncated; 0 with no positive maximum),
// otherwise "Drive full — clear space to record" when the drive is the limit, else "Storage limit
// reached — clear space to record". `limitFromDrive` is true when no budget applies.
QString menuBarStorageLine(qint64 usedBytes, qint64 maximumBytes, bool limitFromDrive);

// The panel's warning: the line above while a warning is due; absent otherwise.
std::optional<QString> menuBarStorageWarning(const RecordingStorageUsage& usage);

// What the settings show under "Storage".
struct SettingsStorageLines {
    // "<used> of <maximum> used" with a budget; "<used> used, <free> free" without.
    QString useLine;
    // Used over maximum for the bar, within 0...1 (0 with no positive maximum).
    double usedFraction = 0;
    // "Storage limit reached" or "Drive full" at the maximum, "Storage is over <p>%" past the warning
    // share; absent when neither.
    std::optional<QString> warning;

    friend bool operator==(const SettingsStorageLines&, const SettingsStorageLines&) = default;
};

SettingsStorageLines settingsStorageLines(const RecordingStorageUsage& usage);

// A byte count for people, in decimal units as the budget is: "512 bytes", "12 KB", "1.5 MB", "12.35 GB",
// "2 TB" (no decimals below a megabyte, one for megabytes, two above; trailing zeros dropped).
QString byteCountText(qint64 bytes);

}  // namespace kestrum
