#include "core/recording/RecordingStatus.h"

namespace kestrum {

QString rawValue(RecordingStatus status) {
    switch (status) {
        case RecordingStatus::idle:
            return QStringLiteral("Idle");
        case RecordingStatus::ready:
            return QStringLiteral("Ready");
        case RecordingStatus::recording:
            return QStringLiteral("Recording");
        case RecordingStatus::permissionRequired:
            return QStringLiteral("Action Required");
        case RecordingStatus::storageLimitReached:
            return QStringLiteral("Storage Limit");
    }
    return {};
}

}  // namespace kestrum
