#pragma once

#include "core/recording/RecordingFolderStore.h"
#include "platform/ports/FileActions.h"

#include <QObject>

namespace kestrum {

// The "Recordings folder" section: the folder's path as people read it ("~/Videos/Kestrum"), "Open
// Folder", the button that chooses another folder, and a warning when the folder cannot be used.
//
// Threads: main thread. The folder store and the file actions must outlive it.
class FolderSettingsModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString path READ path NOTIFY changed)
    Q_PROPERTY(bool isUsable READ isUsable NOTIFY changed)
    Q_PROPERTY(QString unavailableText READ unavailableText CONSTANT)
    Q_PROPERTY(QString unavailableSymbol READ unavailableSymbol CONSTANT)
    Q_PROPERTY(QString openFolderTitle READ openFolderTitle CONSTANT)
    Q_PROPERTY(QString chooseFolderTitle READ chooseFolderTitle CONSTANT)
    Q_PROPERTY(QString openFolderError READ openFolderError NOTIFY changed)

  public:
    FolderSettingsModel(RecordingFolderStore& folderStore, FileActions& fileActions,
                        QObject* parent = nullptr);

    QString title() const { return QStringLiteral("Recordings folder"); }
    QString path() const { return folderStore_.folderDisplayPath(); }
    bool isUsable() const { return isUsable_; }
    QString unavailableText() const {
        return QStringLiteral("Folder access is unavailable. Choose a folder to save recordings.");
    }
    QString unavailableSymbol() const { return QStringLiteral("folder.badge.questionmark"); }
    QString openFolderTitle() const { return QStringLiteral("Open Folder"); }
    QString chooseFolderTitle() const { return QStringLiteral("Choose…"); }
    // Why the last "Open Folder" failed; empty when it did not.
    QString openFolderError() const { return openFolderError_; }

    // Opens the folder in the file manager, making it first when it does not exist yet (a fresh
    // installation has recorded nothing).
    Q_INVOKABLE void openFolder();
    // Shows the folder chooser; a folder confirmed there becomes the recordings folder.
    Q_INVOKABLE void chooseFolder();
    // Tests the folder again (the settings window opened; the disk may have changed meanwhile).
    void reload();

  signals:
    void changed();

  private:
    RecordingFolderStore& folderStore_;
    FileActions& fileActions_;
    // Main thread.
    bool isUsable_ = false;
    QString openFolderError_;
};

}  // namespace kestrum
