#include "app/FileDialogFolderPicker.h"

#include <QFileDialog>

namespace kestrum {

std::optional<QString> FileDialogFolderPicker::chooseFolder(const Request& request) {
    QFileDialog dialog(nullptr, request.title, request.startDirectoryPath);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setOption(QFileDialog::ReadOnly, !request.canCreateDirectories);
    if (!request.prompt.isEmpty()) dialog.setLabelText(QFileDialog::Accept, request.prompt);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    const QStringList chosen = dialog.selectedFiles();
    if (chosen.isEmpty()) return std::nullopt;
    return chosen.constFirst();
}

}  // namespace kestrum
