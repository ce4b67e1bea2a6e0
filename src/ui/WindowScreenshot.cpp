#include "ui/WindowScreenshot.h"

#include <QQuickWindow>

#include <cstdio>

namespace kestrum::ui {

WindowScreenshot::WindowScreenshot(QQuickWindow& window, std::function<bool()> settled, int timeoutMs,
                                   QObject* parent)
    : QObject(parent), window_(&window), settled_(std::move(settled)), timeoutMs_(timeoutMs) {
    sinceStart_.start();
    // The first frame, and every later one, may be the moment the window is settled.
    connect(&window, &QQuickWindow::frameSwapped, this, [this] {
        frameShown_ = true;
        check();
    });
    poll_.setInterval(kPollMs);
    connect(&poll_, &QTimer::timeout, this, &WindowScreenshot::check);
    poll_.start();
    window.update();
}

bool savePicture(const QImage& picture, const QString& path) {
    if (picture.isNull() || !picture.save(path, "PNG")) return false;
    std::fprintf(stdout, "screenshot written to %s (%dx%d)\n", qPrintable(path), picture.width(),
                 picture.height());
    std::fflush(stdout);
    return true;
}

void WindowScreenshot::check() {
    if (done_ || !window_) return;
    const bool late = sinceStart_.elapsed() >= timeoutMs_;
    if (!late && (!frameShown_ || !settled_())) return;
    done_ = true;
    timedOut_ = late && !(frameShown_ && settled_());
    poll_.stop();
    emit grabbed(window_->grabWindow());
}

}  // namespace kestrum::ui
