#pragma once

#include "base/async/SystemClock.h"
#include "core/dashboard/DashboardController.h"
#include "media/mpv/MpvVideoPlayerFactory.h"
#include "platform/linux/freedesktop/FreedesktopFileActions.h"

#include <QObject>
#include <QQmlEngine>
#include <QQuickView>

#include <memory>

namespace kestrum {

class RecordingFolderStore;

namespace ui {
class DashboardTabKeyFilter;
class DashboardThumbnailProvider;
}  // namespace ui

// The review window: its QML engine, its controller on the recordings folder (followed as it changes),
// the mpv players, the desktop's file actions, and the window showing `DashboardView`. Made once, hidden;
// `show()` opens it (the first time also reads the library) and raises it; closing it hides it and the
// controller lets go of its players and jobs until the next `show()`.
//
// Needs the OpenGL scene graph chosen before the first window (kestrum::ui::useOpenGlSceneGraph).
// Threads: the main thread. The folder store must outlive the window.
class DashboardWindow final : public QObject {
    Q_OBJECT

  public:
    explicit DashboardWindow(RecordingFolderStore& folders, QObject* parent = nullptr);
    ~DashboardWindow() override;
    DashboardWindow(const DashboardWindow&) = delete;
    DashboardWindow& operator=(const DashboardWindow&) = delete;

    // Shows the window and brings it to the front; false when its content did not load (the errors are
    // logged).
    bool show();
    QQuickView& view() { return *view_; }
    DashboardController& controller() { return *controller_; }

  private:
    void toggleFullScreen();
    void visibilityChanged(bool visible);

    SystemClock clock_;
    MpvVideoPlayerFactory players_;
    FreedesktopFileActions fileActions_;
    // Children of the window's life, destroyed in the reverse order: the view before the controller it
    // binds, the engine last.
    std::unique_ptr<QQmlEngine> engine_;
    std::unique_ptr<DashboardController> controller_;
    std::unique_ptr<ui::DashboardTabKeyFilter> tabKeyFilter_;
    ui::DashboardThumbnailProvider* thumbnails_ = nullptr;  // owned by the engine
    std::unique_ptr<QQuickView> view_;
    bool isShown_ = false;  // main thread: appear() was called and disappear() not since
};

}  // namespace kestrum
