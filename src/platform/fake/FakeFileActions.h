#pragma once

#include "platform/ports/FileActions.h"

#include <QStringList>

#include <map>
#include <optional>

namespace kestrum {

// File actions that touch no file and no desktop: every call is recorded in order, and trash, open and
// reveal succeed or fail as the test scripts them. Main thread only.
class FakeFileActions final : public FileActions {
  public:
    Status moveToTrash(const QString& path) override;
    bool open(const QString& path) override;
    bool reveal(const QString& path) override;
    void copyText(const QString& text) override;

    // Every path asked for, successful or not, in call order.
    const QStringList& trashRequests() const { return trashRequests_; }
    // The paths whose trash succeeded.
    const QStringList& trashedPaths() const { return trashedPaths_; }
    const QStringList& openedPaths() const { return openedPaths_; }
    const QStringList& revealedPaths() const { return revealedPaths_; }
    const QStringList& copiedTexts() const { return copiedTexts_; }

    // A trash of a path listed here fails with its Error; otherwise `trashError`, while set, fails
    // every trash.
    std::map<QString, Error> trashFailures;
    std::optional<Error> trashError;
    bool openSucceeds = true;
    bool revealSucceeds = true;

  private:
    QStringList trashRequests_;
    QStringList trashedPaths_;
    QStringList openedPaths_;
    QStringList revealedPaths_;
    QStringList copiedTexts_;
};

}  // namespace kestrum
