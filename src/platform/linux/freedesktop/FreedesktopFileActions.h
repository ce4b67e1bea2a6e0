#pragma once

#include "platform/ports/FileActions.h"

#include <QUrl>

#include <functional>

namespace kestrum {

// File actions on a freedesktop.org desktop:
// - trash: the XDG trash through QFile::moveToTrash ($XDG_DATA_HOME/Trash for the home's file system,
//   the volume's .Trash-<uid> elsewhere); refused, with the file left in place, while the home trash
//   cannot be used, which is where Qt would otherwise fall back to the working directory;
// - open: the desktop's default application (QDesktopServices, i.e. the platform's URL handler);
// - reveal: org.freedesktop.FileManager1.ShowItems on the session bus, which file managers (Nautilus,
//   Dolphin, Nemo, Thunar...) answer by showing the item selected; with no such service, or no bus,
//   the folder that holds the item is opened instead;
// - copy: the application's clipboard.
// Opening and the clipboard need the QGuiApplication; without one they do nothing (open and reveal then
// answer false). Main thread only.
class FreedesktopFileActions final : public FileActions {
  public:
    // Hands a URL to the desktop; true when it was taken.
    using UrlOpener = std::function<bool(const QUrl&)>;

    // How long reveal waits for the file manager's answer before falling back to the folder (the bus may
    // first have to start the file manager).
    static constexpr int kShowItemsTimeoutMs = 3000;

    // `openUrl` replaces QDesktopServices::openUrl, for tests that must not start applications.
    explicit FreedesktopFileActions(UrlOpener openUrl = {});

    Status moveToTrash(const QString& path) override;
    bool open(const QString& path) override;
    bool reveal(const QString& path) override;
    void copyText(const QString& text) override;

    // $XDG_DATA_HOME/Trash, the trash of the home's file system.
    static QString homeTrashFolder();

  private:
    // True when a file manager on the session bus took the request.
    static bool showItemsOnBus(const QString& path);
    // Whether the trash folder is a writable folder with its "files" and "info" folders (made if missing).
    static bool isUsableTrashFolder(const QString& trashFolder);

    UrlOpener openUrl_;
};

}  // namespace kestrum
