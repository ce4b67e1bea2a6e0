#include "core/shell/StorageStatusTexts.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrum {

namespace {

bool isMaximumReached(const RecordingStorageUsage& usage) {
    return usage.usedBytes >= usage.maximumBytes;
}

QString decimalText(double value, int decimals) {
    QString text = QString::number(value, 'f', decimals);
    if (text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0'))) text.chop(1);
        if (text.endsWith(QLatin1Char('.'))) text.chop(1);
    }
    return text;
}

}  // namespace

bool isStorageWarningDue(const RecordingStorageUsage& usage) {
    if (isMaximumReached(usage)) return true;
    return static_cast<double>(usage.usedBytes) >=
           usage.warningFraction * static_cast<double>(usage.maximumBytes);
}

QString menuBarStorageLine(qint64 usedBytes, qint64 maximumBytes, bool limitFromDrive) {
    if (usedBytes < maximumBytes) {
        const qint64 percent =
            maximumBytes > 0 ? static_cast<qint64>(static_cast<double>(usedBytes) / maximumBytes * 100) : 0;
        return QStringLiteral("Storage %1% full").arg(percent);
    }
    if (limitFromDrive) return QStringLiteral("Drive full — clear space to record");
    return QStringLiteral("Storage limit reached — clear space to record");
}

std::optional<QString> menuBarStorageWarning(const RecordingStorageUsage& usage) {
    if (!isStorageWarningDue(usage)) return std::nullopt;
    return menuBarStorageLine(usage.usedBytes, usage.maximumBytes, usage.isUnlimited);
}

SettingsStorageLines settingsStorageLines(const RecordingStorageUsage& usage) {
    SettingsStorageLines lines;
    if (usage.isUnlimited) {
        const qint64 freeBytes = std::max<qint64>(0, usage.maximumBytes - usage.usedBytes);
        lines.useLine = byteCountText(usage.usedBytes) + QStringLiteral(" used, ") +
                        byteCountText(freeBytes) + QStringLiteral(" free");
    } else {
        lines.useLine = byteCountText(usage.usedBytes) + QStringLiteral(" of ") +
                        byteCountText(usage.maximumBytes) + QStringLiteral(" used");
    }
    if (usage.maximumBytes > 0) {
        lines.usedFraction = std::clamp(
            static_cast<double>(usage.usedBytes) / static_cast<double>(usage.maximumBytes), 0.0, 1.0);
    }
    if (isMaximumReached(usage)) {
        lines.warning =
            usage.isUnlimited ? QStringLiteral("Drive full") : QStringLiteral("Storage limit reached");
    } else if (isStorageWarningDue(usage)) {
        lines.warning = QStringLiteral("Storage is over %1%").arg(std::llround(usage.warningFraction * 100));
    }
    return lines;
}

QString byteCountText(qint64 bytes) {
    if (std::llabs(bytes) < 1000)
        return QStringLiteral("%1 %2").arg(bytes).arg(QLatin1String(bytes == 1 ? "byte" : "bytes"));
    struct Unit {
        const char* name;
        int decimals;
    };
    static constexpr std::array<Unit, 5> units = {{{"KB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}}};
    double value = static_cast<double>(bytes);
    for (const Unit& unit : units) {
        value /= 1000;
        // The rounded value decides whether the next unit reads better ("1,000 KB" is "1 MB").
        const double rounded = std::round(value * std::pow(10, unit.decimals)) / std::pow(10, unit.decimals);
        if (std::fabs(rounded) < 1000 || &unit == &units.back()) {
            return decimalText(rounded, unit.decimals) + QLatin1Char(' ') + QLatin1String(unit.name);
        }
    }
    return {};
}

}  // namespace kestrum
