#pragma once

#include "platform/ports/FolderPicker.h"

#include <QList>

namespace kestrum {

// Answers every dialog with the folder set by the test (absent: the user cancels), and keeps the
// requests it was shown. Main thread only.
class FakeFolderPicker final : public FolderPicker {
  public:
    std::optional<QString> chooseFolder(const Request& request) override {
        requests_.append(request);
        return answer_;
    }

    void setAnswer(std::optional<QString> folderPath) { answer_ = std::move(folderPath); }
    QList<Request> requests() const { return requests_; }

  private:
    std::optional<QString> answer_;
    QList<Request> requests_;
};

}  // namespace kestrum
