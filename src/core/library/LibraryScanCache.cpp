#include "core/library/LibraryScanCache.h"

namespace kestrum {

LibraryScanCache::FileStamp LibraryScanCache::FileStamp::of(const QString& path) {
    return of(QFileInfo(path));
}

LibraryScanCache::FileStamp LibraryScanCache::FileStamp::of(const QFileInfo& info) {
    if (!info.exists()) return {};
    FileStamp stamp;
    const QDateTime modified = info.lastModified();
    if (modified.isValid()) stamp.modificationDate = ReferenceDate::fromDateTime(modified);
    stamp.fileSize = info.size();
    return stamp;
}

}  // namespace kestrum
