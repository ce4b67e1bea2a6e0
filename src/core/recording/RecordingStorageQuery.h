#pragma once

#include <QString>

namespace kestrum {

// Everything one storage measure needs, read on the main thread and handed by value to the thread that
// walks the folder.
struct RecordingStorageQuery {
    QString folderPath;
    qint64 maximumBytes = 0;
    bool isUnlimited = false;
    double warningFraction = 0.8;

    friend bool operator==(const RecordingStorageQuery&, const RecordingStorageQuery&) = default;
};

}  // namespace kestrum
