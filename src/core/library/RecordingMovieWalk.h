#pragma once

#include <QFileInfo>
#include <QString>

#include <functional>

namespace kestrum {

// Walks `folderPath` deeply and calls `visit` for every item whose extension, lower-cased, is "mov" or
// "mp4", in the order the file system lists them. Only the name counts: the item's type is not
// consulted, just as a movie is never opened here.
//
// Skipped: hidden items (a leading dot) with everything inside them, and the insides of packages.
// Linux has no packages; a folder whose extension is "app", "bundle" or "photoslibrary" (any case) is
// taken for one, as a folder of that kind copied from a Mac is, and its contents are not entered.
// Symbolic links to folders are not followed, so a link cannot make the walk loop. An unreadable
// subfolder is skipped silently. Returns false, visiting nothing, when `folderPath` is not a folder
// that can be listed.
bool forEachMovieIn(const QString& folderPath, const std::function<void(const QFileInfo& movie)>& visit);

// Whether `path`'s extension, lower-cased, is "mov" or "mp4".
bool hasMovieExtension(const QFileInfo& path);

}  // namespace kestrum
