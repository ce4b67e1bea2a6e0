#pragma once

#include "base/common/Result.h"

#include <QRectF>
#include <QSizeF>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrum {

// An application that owns shareable windows.
struct ShareableApplication {
    qint32 processID = 0;
    // Empty when the desktop cannot name the process (matches no identifier).
    QString bundleIdentifier;
    QString applicationName;

    friend bool operator==(const ShareableApplication&, const ShareableApplication&) = default;
};

// A top-level window that can be captured. `frame` is in desktop points with the origin at the top left
// of the virtual screen; on Linux one point is one pixel.
struct ShareableWindow {
    std::uint32_t windowID = 0;
    // Absent when the window has no title at all; an empty title is a title.
    std::optional<QString> title;
    QRectF frame;
    bool isOnScreen = false;
    std::optional<ShareableApplication> owningApplication;

    friend bool operator==(const ShareableWindow&, const ShareableWindow&) = default;
};

// One display (monitor) of the desktop, its frame in the same coordinates as windows'.
struct ShareableDisplay {
    std::uint32_t displayID = 0;
    QRectF frame;

    friend bool operator==(const ShareableDisplay&, const ShareableDisplay&) = default;
};

// What can be captured now. Windows come in the desktop's stacking order, top-most first where the
// desktop knows it; callers that pick "the first listed" of equal windows rely on that order being
// stable between calls.
struct ShareableContentSnapshot {
    std::vector<ShareableWindow> windows;
    std::vector<ShareableDisplay> displays;
    std::vector<ShareableApplication> applications;
};

// The desktop's list of capturable windows, displays and applications.
//
// Contract, for every adapter: called on the main thread; answers promptly (a few round trips to the
// display server, no waiting on other processes); the snapshot is a copy that later changes of the
// desktop do not touch. An Error when the desktop cannot be asked at all (no display server); an empty
// snapshot is a valid answer.
class ShareableContent {
  public:
    virtual ~ShareableContent() = default;

    // `excludingDesktopWindows` leaves out the desktop's own windows (background, panels);
    // `onScreenWindowsOnly` leaves out windows that are not mapped and visible now.
    virtual Result<ShareableContentSnapshot> currentContent(bool excludingDesktopWindows,
                                                            bool onScreenWindowsOnly) = 0;

  protected:
    ShareableContent() = default;
    ShareableContent(const ShareableContent&) = default;
    ShareableContent& operator=(const ShareableContent&) = default;
};

}  // namespace kestrum
