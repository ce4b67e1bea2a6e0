#include "core/shell/FolderSettingsModel.h"

#include <QDir>

namespace kestrum {

FolderSettingsModel::FolderSettingsModel(RecordingFolderStore& folderStore, FileActions& fileActions,
                                         QObject* parent)
    : QObject(parent),
      folderStore_(folderStore),
      fileActions_(fileActions),
      isUsable_(folderStore.isFolderUsable()) {
    connect(&folderStore_, &RecordingFolderStore::folderURLChanged, this, &FolderSettingsModel::reload);
}

void FolderSettingsModel::openFolder() {
    const QString folder = folderStore_.folderPath();
    if (!QDir().mkpath(folder)) {
        openFolderError_ =
            QStringLiteral("Could not create the folder %1.").arg(folderStore_.folderDisplayPath());
    } else if (!fileActions_.open(folder)) {
        openFolderError_ = QStringLiteral("No file manager opened %1.").arg(folderStore_.folderDisplayPath());
    } else {
        openFolderError_.clear();
    }
    reload();
    emit changed();
}

void FolderSettingsModel::chooseFolder() {
    folderStore_.chooseFolder();
}

void FolderSettingsModel::reload() {
    isUsable_ = folderStore_.isFolderUsable();
    emit changed();
}

}  // namespace kestrum
