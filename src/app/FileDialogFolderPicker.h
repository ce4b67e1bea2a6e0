#pragma once

#include "platform/ports/FolderPicker.h"

namespace kestrum {

// The folder chooser as the desktop shows it: Qt's folder dialog, which is the desktop portal's or the
// platform theme's own dialog where one is provided, else Qt's. The request's title names the dialog and
// its prompt labels the confirming button; its message has no place in these dialogs and is not shown.
//
// Threads: main thread, with a QApplication; `chooseFolder` runs a modal event loop until the user answers.
class FileDialogFolderPicker final : public FolderPicker {
  public:
    std::optional<QString> chooseFolder(const Request& request) override;
};

}  // namespace kestrum
