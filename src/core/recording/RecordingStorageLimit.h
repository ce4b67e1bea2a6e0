#pragma once

#include <QtGlobal>

namespace kestrum {

// The budget as the settings give it: `maximumBytes` is 0 whenever `isUnlimited` is set.
struct RecordingStorageLimit {
    qint64 maximumBytes = 0;
    bool isUnlimited = false;

    friend bool operator==(const RecordingStorageLimit&, const RecordingStorageLimit&) = default;
};

}  // namespace kestrum
