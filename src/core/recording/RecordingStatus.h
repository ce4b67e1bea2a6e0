#pragma once

#include <QMetaType>
#include <QString>

namespace kestrum {

// The coordinator's published status, in the order of declaration; the raw values are the texts the
// interface shows.
enum class RecordingStatus {
    idle = 0,                 // "Idle": neither the game nor a League client runs
    ready = 1,                // "Ready": a League client runs and no game does, or the game is a replay
    recording = 2,            // "Recording": a live game runs; set before the capture has started
    permissionRequired = 3,   // "Action Required": screen capture access is missing
    storageLimitReached = 4,  // "Storage Limit": not recording and the storage budget is used up
};

QString rawValue(RecordingStatus status);

}  // namespace kestrum

Q_DECLARE_METATYPE(kestrum::RecordingStatus)
