#pragma once

#include <QByteArray>
#include <QSaveFile>
#include <QString>

namespace kestrum {

// Replaces the file at `path` with `bytes` all at once: readers see the old file or the new one, never a
// part. False on any failure, which leaves the old file, if any, in place.
inline bool writeFileAtomically(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        (void)file.commit();  // after a cancel this only removes the temporary file
        return false;
    }
    return file.commit();
}

}  // namespace kestrum
