#include "platform/fake/FakeShareableContent.h"

namespace kestrum {

Result<ShareableContentSnapshot> FakeShareableContent::currentContent(bool excludingDesktopWindows,
                                                                      bool onScreenWindowsOnly) {
    ++callCount_;
    lastExcludingDesktopWindows_ = excludingDesktopWindows;
    lastOnScreenWindowsOnly_ = onScreenWindowsOnly;
    if (queued_.empty()) return standing_;
    Result<ShareableContentSnapshot> answer = std::move(queued_.front());
    queued_.pop_front();
    return answer;
}

}  // namespace kestrum
