#pragma once

#include "base/common/Result.h"

#include <QString>

namespace kestrum {

// What the review window does with a recording's files on the desktop: move them to the Trash, open
// them in the default application, show them in the file manager, and copy text such as a path.
//
// Contract, for every adapter: main thread only; paths are absolute local paths. Nothing here deletes
// a file outright: a file either goes to the user's trash, from where it can be restored, or stays.
class FileActions {
  public:
    virtual ~FileActions() = default;

    // Moves the file or folder at `path` to the user's trash. On failure the file stays where it was and
    // the Error's description is the system's reason alone, without the file's name (the caller writes
    // "name: reason" lines).
    virtual Status moveToTrash(const QString& path) = 0;

    // Opens `path` with the desktop's default application for it. True when the desktop took the
    // request; returns without waiting for the application.
    virtual bool open(const QString& path) = 0;

    // Shows `path` selected in the file manager, or at least the folder that holds it. True when the
    // desktop took the request.
    virtual bool reveal(const QString& path) = 0;

    // Replaces the clipboard's content with `text` as plain text.
    virtual void copyText(const QString& text) = 0;

  protected:
    FileActions() = default;
    FileActions(const FileActions&) = default;
    FileActions& operator=(const FileActions&) = default;
};

}  // namespace kestrum
