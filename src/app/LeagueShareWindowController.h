#pragma once

#include "core/share/LeagueShareCoordinator.h"
#include "platform/ports/ApplicationWindows.h"
#include "ui/share/LeagueShareWindow.h"

#include <QObject>

#include <memory>

namespace kestrum {

// Owns the share window: makes it on the first `showWindow` and keeps it (closing only hides it), sizes
// it to the source's aspect ratio (followed with the 0.001 tolerance) within the screen, lays the
// coordinator's overlay over it, and keeps it among the coordinator's display surfaces while it shows.
//
// Threads: main thread. The coordinator and the windows port must outlive it.
class LeagueShareWindowController final : public QObject {
    Q_OBJECT

  public:
    LeagueShareWindowController(LeagueShareCoordinator& coordinator, ApplicationWindows& windows,
                                QObject* parent = nullptr);
    ~LeagueShareWindowController() override;

    // Shows the window behind the others, without the focus; the first call creates and centres it.
    void showWindow();
    void hideWindow();

    // Null before the first `showWindow`.
    ui::LeagueShareWindow* window() const { return window_.get(); }

  private:
    void createWindow();
    void followAspectRatio();
    void applyOverlay();
    void setSurfaceRegistered(bool registered);

    LeagueShareCoordinator& coordinator_;
    ApplicationWindows& windows_;
    // Main thread.
    std::unique_ptr<ui::LeagueShareWindow> window_;
    double appliedAspectRatio_ = 0.0;  // the ratio the window was last sized for; 0 before the first
    bool isSurfaceRegistered_ = false;
};

}  // namespace kestrum
