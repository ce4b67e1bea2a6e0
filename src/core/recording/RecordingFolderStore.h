#pragma once

#include "base/common/Result.h"
#include "core/settings/UserDefaults.h"
#include "platform/ports/FolderPicker.h"

#include <QObject>
#include <QString>
#include <QUrl>

namespace kestrum {

// The one folder where recordings go, remembered across launches. The chosen folder is stored as its
// plain path (UTF-8 bytes as data) under "recordingsFolderBookmark", the key that holds a bookmark on
// systems with security scopes; Linux has none, so there is no scope to open or close.
//
// Threads: confined to the main thread, like its `folderURL` observers. The defaults store and the
// picker must outlive it.
class RecordingFolderStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(QUrl folderURL READ folderURL NOTIFY folderURLChanged)

  public:
    // Sets the folder to the default one (migrating a legacy folder once), then restores the stored
    // choice; a stored path that cannot be used is forgotten, with a capture log error.
    RecordingFolderStore(UserDefaults& defaults, FolderPicker& picker, QObject* parent = nullptr);

    // The folder in use, a local file URL; it need not exist yet (the save path makes it).
    QUrl folderURL() const { return QUrl::fromLocalFile(folderPath_); }
    QString folderPath() const { return folderPath_; }

    // Shows the picker at the present folder and takes the folder the user confirms.
    void chooseFolder();

    // Whether the folder, or for a folder not made yet its nearest existing parent, is writable.
    bool isFolderUsable() const;

    // The folder's path for the interface, with the home folder written "~" ("~/Videos/Kestrum").
    QString folderDisplayPath() const;

    // Remembers `folderPath` and switches to it; an unusable path is refused with a capture log error
    // and the present folder stays.
    void takeFolder(const QString& folderPath);

    // The Videos folder + "Kestrum". When only the legacy "Brindlet" folder exists there, it is renamed
    // to "Kestrum" first; when that fails, the error is logged and the legacy folder is the default,
    // since the recordings are still there.
    static QString defaultFolderPath();

  signals:
    void folderURLChanged(const QUrl& folderURL);

  private:
    void restoreStoredFolder();
    static Result<QString> resolveStoredFolder(const QByteArray& storedPath);
    void setFolderPath(const QString& folderPath);

    UserDefaults& defaults_;
    FolderPicker& picker_;
    QString folderPath_;  // absolute, cleaned; main thread
};

}  // namespace kestrum
