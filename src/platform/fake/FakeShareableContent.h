#pragma once

#include "platform/ports/ShareableContent.h"

#include <deque>

namespace kestrum {

// Shareable content scripted by a test: a queue of answers, then a standing one. Main thread only.
class FakeShareableContent final : public ShareableContent {
  public:
    Result<ShareableContentSnapshot> currentContent(bool excludingDesktopWindows,
                                                    bool onScreenWindowsOnly) override;

    // The answer of every call once the queued ones are used up.
    void setContent(ShareableContentSnapshot snapshot) { standing_ = std::move(snapshot); }
    void setError(Error error) { standing_ = std::move(error); }
    // Answers given before the standing one, first queued first given.
    void queueContent(Result<ShareableContentSnapshot> answer) { queued_.push_back(std::move(answer)); }

    int callCount() const { return callCount_; }
    // The arguments of the last call.
    bool lastExcludedDesktopWindows() const { return lastExcludingDesktopWindows_; }
    bool lastOnScreenWindowsOnly() const { return lastOnScreenWindowsOnly_; }

  private:
    Result<ShareableContentSnapshot> standing_ = ShareableContentSnapshot{};
    std::deque<Result<ShareableContentSnapshot>> queued_;
    int callCount_ = 0;
    bool lastExcludingDesktopWindows_ = false;
    bool lastOnScreenWindowsOnly_ = false;
};

}  // namespace kestrum
