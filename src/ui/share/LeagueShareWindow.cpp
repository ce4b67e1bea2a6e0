#include "ui/share/LeagueShareWindow.h"

#include "platform/ports/ApplicationWindows.h"

#include <QEvent>
#include <QExposeEvent>
#include <QImage>
#include <QPainter>
#include <QResizeEvent>

namespace kestrum::ui {
namespace {

constexpr QSize kInitialSize(960, 540);
constexpr int kIndicatorPhaseCount = 10;

std::optional<ApplicationWindowID> findWindowID(const ApplicationWindows& windows,
                                                const QString& identifier) {
    for (const ApplicationWindow& window : windows.windows()) {
        if (window.identifier == identifier) return window.windowID;
    }
    return std::nullopt;
}

}  // namespace

LeagueShareWindow::LeagueShareWindow(ApplicationWindows* windows) : windows_(windows), backingStore_(this) {
    setObjectName(kIdentifier);
    setTitle(kTitle);
    setSurfaceType(QSurface::RasterSurface);
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint |
             Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus);
    resize(kInitialSize);
    indicatorTimer_.setInterval(kIndicatorIntervalMs);
    connect(&indicatorTimer_, &QTimer::timeout, this, [this] {
        indicatorPhase_ = (indicatorPhase_ + 1) % kIndicatorPhaseCount;
        statusPainter_.setIndicatorPhase(indicatorPhase_);
        render();
    });
}

LeagueShareWindow::~LeagueShareWindow() = default;

void LeagueShareWindow::present() {
    if (!madeCaptureOnly_ && windows_ != nullptr) {
        if (const auto id = findWindowID(*windows_, kIdentifier)) windows_->makeCaptureOnly(*id);
        madeCaptureOnly_ = true;
    }
    // Qt::WindowDoesNotAcceptFocus keeps show() from asking for the focus; lower() puts it behind.
    show();
    lower();
}

void LeagueShareWindow::enqueueFrame(std::shared_ptr<const PixelBuffer> frame) {
    if (!frame || !frame->isValid()) return;
    {
        const std::lock_guard lock(frameMutex_);
        pendingFrame_ = std::move(frame);
    }
    if (!repaintQueued_.exchange(true)) {
        QMetaObject::invokeMethod(this, &LeagueShareWindow::takePendingFrame, Qt::QueuedConnection);
    }
}

void LeagueShareWindow::flush(bool removeDisplayedImage) {
    if (!removeDisplayedImage) return;  // a restart: the picture stays until the new stream's first frame
    {
        const std::lock_guard lock(frameMutex_);
        pendingFrame_.reset();
    }
    displayedFrame_.reset();
    scaledFrame_ = nullptr;
    render();
}

void LeagueShareWindow::setOverlay(const QString& message, const QString& symbolName) {
    statusPainter_.setStatus(message, symbolName);
    overlayShown_ = true;
    updateIndicatorTimer();
    render();
}

void LeagueShareWindow::clearOverlay() {
    if (!overlayShown_) return;
    overlayShown_ = false;
    updateIndicatorTimer();
    render();
}

bool LeagueShareWindow::event(QEvent* event) {
    if (event->type() == QEvent::Close) {
        // Kept for the next showWindow: hiding leaves the object and its native window alive.
        event->ignore();
        hide();
        return true;
    }
    if (event->type() == QEvent::UpdateRequest) {
        render();
        return true;
    }
    return QWindow::event(event);
}

void LeagueShareWindow::showEvent(QShowEvent* event) {
    QWindow::showEvent(event);
    updateIndicatorTimer();
}

void LeagueShareWindow::hideEvent(QHideEvent* event) {
    QWindow::hideEvent(event);
    updateIndicatorTimer();
}

void LeagueShareWindow::exposeEvent(QExposeEvent*) {
    render();
}

void LeagueShareWindow::resizeEvent(QResizeEvent* event) {
    backingStore_.resize(event->size() * devicePixelRatio());
}

void LeagueShareWindow::takePendingFrame() {
    repaintQueued_ = false;
    std::shared_ptr<const PixelBuffer> frame;
    {
        const std::lock_guard lock(frameMutex_);
        frame = std::move(pendingFrame_);
    }
    if (!frame) return;  // taken by an earlier repaint, or flushed meanwhile
    displayedFrame_ = std::move(frame);
    scaledFrame_ = nullptr;
    ++paintedFrameCount_;
    render();
}

void LeagueShareWindow::render() {
    if (!isExposed()) return;
    const QSize pixels = size() * devicePixelRatio();
    if (pixels.isEmpty()) return;
    if (backingStore_.size() != pixels) backingStore_.resize(pixels);
    const QRect area(QPoint(0, 0), size());
    backingStore_.beginPaint(area);
    {
        QPainter painter(backingStore_.paintDevice());
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(area, Qt::black);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        drawFrame(painter, pixels);
        if (overlayShown_) statusPainter_.paint(painter, area.width(), area.height());
    }
    backingStore_.endPaint();
    backingStore_.flush(area);
}

void LeagueShareWindow::drawFrame(QPainter& painter, const QSize& areaPixels) {
    if (!displayedFrame_) return;
    const PixelBuffer& frame = *displayedFrame_;
    const QRect target = LeagueShareFrameScaler::fittedRect(QSize(frame.width(), frame.height()), areaPixels);
    // Scaled once per frame and window size; a repaint of the same frame (an expose, the indicator) only
    // copies the kept image.
    if (!scaledImage_ || scaledFrame_ != displayedFrame_.get() || scaledImage_->size() != target.size()) {
        scaledImage_ = &frameScaler_.scale(frame, target.size(), devicePixelRatio());
        scaledFrame_ = displayedFrame_.get();
    }
    if (scaledImage_->isNull()) return;
    // One image pixel to one device pixel: the painter copies rows, it does not filter.
    painter.drawImage(QPointF(target.topLeft()) / devicePixelRatio(), *scaledImage_);
}

void LeagueShareWindow::updateIndicatorTimer() {
    if (overlayShown_ && isVisible()) {
        if (!indicatorTimer_.isActive()) indicatorTimer_.start();
    } else {
        indicatorTimer_.stop();
    }
}

}  // namespace kestrum::ui
