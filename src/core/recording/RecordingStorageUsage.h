#pragma once

#include <QtGlobal>

namespace kestrum {

// One measure of the recordings folder against the budget. Bytes are decimal-free counts of bytes.
struct RecordingStorageUsage {
    qint64 usedBytes = 0;  // allocated bytes of every regular, non-hidden file under the folder
    // The budget; with no budget, the used bytes plus the free space on the folder's volume.
    qint64 maximumBytes = 0;
    double warningFraction = 0.8;  // the share of the budget at which the interface warns
    bool isUnlimited = false;      // no budget is set

    // A budget is used up only when one is set and the folder has reached it.
    bool isLimitReached() const { return !isUnlimited && usedBytes >= maximumBytes; }

    friend bool operator==(const RecordingStorageUsage&, const RecordingStorageUsage&) = default;
};

}  // namespace kestrum
