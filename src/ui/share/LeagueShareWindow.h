#pragma once

#include "base/media/PixelBuffer.h"
#include "core/share/LeagueShareDisplaySurface.h"
#include "ui/share/LeagueShareFrameScaler.h"
#include "ui/share/LeagueShareStatusPainter.h"

#include <QBackingStore>
#include <QTimer>
#include <QWindow>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

namespace kestrum {
class ApplicationWindows;
}

namespace kestrum::ui {

// The window another program captures to share League: frameless, titled "Kestrum Share", identified as
// "league-share", black, with the newest frame scaled into it (aspect kept, black bars) and, when there
// is one, the status overlay on top. The pointer passes through it, it never takes the focus, and it
// opens behind the other windows. Closing it hides it; the object and its native window are kept.
//
// Drawn on the raster backing store, so no GL context has to be shared with the review window's player.
// Each new frame is scaled once, by LeagueShareFrameScaler, to the size it takes in the window; a paint
// then copies that image unfiltered. The stream delivers a source smaller than its box at the source's
// own size, so this is the picture's only scaling.
//
// Threads: `enqueueFrame` runs on the share's output queue; everything else on the main thread. A frame
// waits in `pendingFrame_` (guarded by `frameMutex_`) and at most one repaint is queued on the main thread
// at a time, so frames that come faster than the screen takes them are replaced, never stacked up. The
// window must outlive the coordinator's hold on it: remove it from the coordinator before destroying it.
class LeagueShareWindow final : public QWindow, public LeagueShareDisplaySurface {
    Q_OBJECT

  public:
    static inline const QString kIdentifier = QStringLiteral("league-share");
    static inline const QString kTitle = QStringLiteral("Kestrum Share");
    static constexpr int kIndicatorIntervalMs = 100;  // 10 steps, one turn a second

    // `windows` makes the window capture-only (identity and an empty input region) on the desktop; null
    // leaves that out (a test without a desktop adapter). Not owned; must outlive the window.
    explicit LeagueShareWindow(ApplicationWindows* windows = nullptr);
    ~LeagueShareWindow() override;

    // Shows the window behind the others without activating it; the first call makes it capture-only.
    void present();

    void enqueueFrame(std::shared_ptr<const PixelBuffer> frame) override;
    void flush(bool removeDisplayedImage) override;

    // The status over the picture: `message` as the caption, `symbolName` ("lock.shield") above the
    // indicator, empty for none. The indicator turns only while an overlay is set and the window shows.
    void setOverlay(const QString& message, const QString& symbolName);
    void clearOverlay();
    bool hasOverlay() const { return overlayShown_; }
    bool isIndicatorAnimating() const { return indicatorTimer_.isActive(); }

    // Main thread: frames drawn so far (each repaint that had a new frame); a probe for tests and the
    // benchmark.
    quint64 paintedFrameCount() const { return paintedFrameCount_; }
    // The frame on screen now; null when the window shows black.
    std::shared_ptr<const PixelBuffer> displayedFrame() const { return displayedFrame_; }

  protected:
    bool event(QEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    // Not visibleChanged: QWindow's destructor hides the window after this class is gone.
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void takePendingFrame();
    void render();
    void drawFrame(QPainter& painter, const QSize& areaPixels);
    void updateIndicatorTimer();

    ApplicationWindows* windows_;  // main thread; not owned
    bool madeCaptureOnly_ = false;
    QBackingStore backingStore_;

    // The newest frame not drawn yet; output queue writes, main thread takes.
    std::mutex frameMutex_;
    std::shared_ptr<const PixelBuffer> pendingFrame_;
    // Set by the output queue when it queues a repaint, cleared by the main thread when that repaint runs.
    std::atomic<bool> repaintQueued_ = false;

    // Main thread.
    std::shared_ptr<const PixelBuffer> displayedFrame_;
    LeagueShareFrameScaler frameScaler_;
    const QImage* scaledImage_ = nullptr;       // frameScaler_'s image of displayedFrame_; null: none yet
    const PixelBuffer* scaledFrame_ = nullptr;  // the frame scaledImage_ was made from; null: none yet
    quint64 paintedFrameCount_ = 0;
    bool overlayShown_ = false;
    LeagueShareStatusPainter statusPainter_;
    QTimer indicatorTimer_;
    int indicatorPhase_ = 0;
};

}  // namespace kestrum::ui
