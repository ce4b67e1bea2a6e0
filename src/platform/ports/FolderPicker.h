#pragma once

#include <QString>

#include <optional>

namespace kestrum {

// Lets the user choose one folder (the shell shows a modal dialog). Main thread only; the call returns
// when the user has answered, with the event loop kept running meanwhile.
class FolderPicker {
  public:
    // The texts and the start of the dialog; every text is shown as it stands.
    struct Request {
        QString title;
        QString prompt;   // the confirming button
        QString message;  // the line that explains the choice
        QString startDirectoryPath;
        bool canCreateDirectories = true;
    };

    virtual ~FolderPicker() = default;

    // The absolute path of the folder chosen; absent when the user cancelled.
    virtual std::optional<QString> chooseFolder(const Request& request) = 0;

  protected:
    FolderPicker() = default;
    FolderPicker(const FolderPicker&) = default;
    FolderPicker& operator=(const FolderPicker&) = default;
};

}  // namespace kestrum
