#pragma once

#include <QUrl>

namespace kestrum {

// Opens a page of the system's settings for the user, such as the privacy pane of a permission. The
// links are those of the permissions model ("x-apple.systempreferences:...?Privacy_ScreenCapture");
// an adapter maps them to its own desktop's settings, or answers false when it has nothing to open.
// Main thread only; returns without waiting for the settings to appear.
class SettingsOpener {
  public:
    virtual ~SettingsOpener() = default;

    // True when the page was handed to the desktop; false when the link is not understood or the
    // desktop refused it.
    virtual bool openSettingsLink(const QUrl& link) = 0;

  protected:
    SettingsOpener() = default;
    SettingsOpener(const SettingsOpener&) = default;
    SettingsOpener& operator=(const SettingsOpener&) = default;
};

}  // namespace kestrum
