#include "app/LeagueShareWindowController.h"

#include "core/share/LeagueShareWindowGeometry.h"

#include <QGuiApplication>
#include <QScreen>

namespace kestrum {

LeagueShareWindowController::LeagueShareWindowController(LeagueShareCoordinator& coordinator,
                                                         ApplicationWindows& windows, QObject* parent)
    : QObject(parent), coordinator_(coordinator), windows_(windows) {}

LeagueShareWindowController::~LeagueShareWindowController() {
    if (!window_) return;
    // The coordinator must hold no pointer to the window once it goes, and the window's own hiding in its
    // destructor must reach nothing here.
    disconnect(window_.get(), nullptr, this, nullptr);
    setSurfaceRegistered(false);
}

void LeagueShareWindowController::showWindow() {
    if (!window_) createWindow();
    window_->present();
}

void LeagueShareWindowController::hideWindow() {
    if (window_) window_->hide();
}

void LeagueShareWindowController::createWindow() {
    window_ = std::make_unique<ui::LeagueShareWindow>(&windows_);
    connect(window_.get(), &QWindow::visibleChanged, this,
            [this](bool visible) { setSurfaceRegistered(visible); });
    connect(&coordinator_, &LeagueShareCoordinator::sourceAspectRatioChanged, this,
            &LeagueShareWindowController::followAspectRatio);
    for (const auto signal :
         {&LeagueShareCoordinator::statusChanged, &LeagueShareCoordinator::isSourceFocusedChanged,
          &LeagueShareCoordinator::isSourceUpdatingChanged}) {
        connect(&coordinator_, signal, this, &LeagueShareWindowController::applyOverlay);
    }
    // Centred on the screen at its first size, then fitted to the ratio in force around that centre.
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen != nullptr) {
        QRect centred(QPoint(0, 0), window_->size());
        centred.moveCenter(screen->availableGeometry().center());
        window_->setGeometry(centred);
    }
    followAspectRatio();
    applyOverlay();
}

void LeagueShareWindowController::followAspectRatio() {
    const double ratio = coordinator_.sourceAspectRatio();
    if (appliedAspectRatio_ != 0.0 && !isLeagueShareRatioChange(appliedAspectRatio_, ratio)) return;
    const QScreen* screen =
        window_->screen() != nullptr ? window_->screen() : QGuiApplication::primaryScreen();
    if (screen == nullptr) return;
    const auto frame = leagueShareWindowFrame(ratio, screen->availableGeometry(), window_->geometry());
    if (!frame) return;  // not a usable ratio: the window stays as it is
    appliedAspectRatio_ = ratio;
    window_->setGeometry(*frame);
}

void LeagueShareWindowController::applyOverlay() {
    const LeagueShareOverlay overlay = coordinator_.overlay();
    if (overlay.isShown) {
        window_->setOverlay(overlay.message, overlay.symbol);
    } else {
        window_->clearOverlay();
    }
}

void LeagueShareWindowController::setSurfaceRegistered(bool registered) {
    if (registered == isSurfaceRegistered_) return;
    isSurfaceRegistered_ = registered;
    if (registered) {
        coordinator_.addDisplaySurface(*window_);
    } else {
        coordinator_.removeDisplaySurface(*window_);
    }
}

}  // namespace kestrum
