#include "core/library/RecordingMovieWalk.h"

#include <QDir>
#include <QDirIterator>

namespace kestrum {

namespace {

constexpr QDir::Filters kListedItems = QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot;

bool isPackage(const QFileInfo& folder) {
    const QString extension = folder.suffix();
    return extension.compare(u"app", Qt::CaseInsensitive) == 0 ||
           extension.compare(u"bundle", Qt::CaseInsensitive) == 0 ||
           extension.compare(u"photoslibrary", Qt::CaseInsensitive) == 0;
}

void walkFolder(const QString& folderPath, const std::function<void(const QFileInfo&)>& visit) {
    QDirIterator items(folderPath, kListedItems);
    while (items.hasNext()) {
        items.next();
        const QFileInfo item = items.fileInfo();
        if (hasMovieExtension(item)) visit(item);
        if (item.isDir() && !item.isSymLink() && !isPackage(item)) walkFolder(item.filePath(), visit);
    }
}

}  // namespace

bool hasMovieExtension(const QFileInfo& path) {
    const QString extension = path.suffix();
    return extension.compare(u"mov", Qt::CaseInsensitive) == 0 ||
           extension.compare(u"mp4", Qt::CaseInsensitive) == 0;
}

bool forEachMovieIn(const QString& folderPath, const std::function<void(const QFileInfo& movie)>& visit) {
    const QFileInfo folder(folderPath);
    if (!folder.isDir() || !folder.isReadable()) return false;
    walkFolder(folder.absoluteFilePath(), visit);
    return true;
}

}  // namespace kestrum
