#include "platform/fake/FakeFileActions.h"

namespace kestrum {

Status FakeFileActions::moveToTrash(const QString& path) {
    trashRequests_.append(path);
    if (const auto failure = trashFailures.find(path); failure != trashFailures.end()) return failure->second;
    if (trashError) return *trashError;
    trashedPaths_.append(path);
    return Status::success();
}

bool FakeFileActions::open(const QString& path) {
    openedPaths_.append(path);
    return openSucceeds;
}

bool FakeFileActions::reveal(const QString& path) {
    revealedPaths_.append(path);
    return revealSucceeds;
}

void FakeFileActions::copyText(const QString& text) {
    copiedTexts_.append(text);
}

}  // namespace kestrum
