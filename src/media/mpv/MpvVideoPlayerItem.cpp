#include "media/mpv/MpvVideoPlayerItem.h"

#include "media/mpv/MpvHandle.h"
#include "media/mpv/MpvUpdateRelay.h"
#include "media/mpv/MpvVideoPlayer.h"
#include "media/mpv/MpvVideoRenderer.h"

namespace kestrum {

MpvVideoPlayerItem::MpvVideoPlayerItem(QQuickItem* parent)
    : QQuickFramebufferObject(parent), relay_(std::make_shared<MpvUpdateRelay>(*this)) {}

MpvVideoPlayerItem::~MpvVideoPlayerItem() {
    relay_->detach();
    if (player_) player_->setVideoOutputAttached(false);
}

void MpvVideoPlayerItem::setPlayer(QObject* player) {
    if (player == playerObject_) return;
    if (playerObject_) disconnect(playerObject_, nullptr, this, nullptr);
    // The old player stops decoding pictures before its render context goes (on the render thread).
    if (player_) player_->setVideoOutputAttached(false);
    playerObject_ = player;
    player_ = qobject_cast<MpvVideoPlayer*>(player);
    shownEngine_ = player_ ? player_->engine() : nullptr;
    if (player) connect(player, &QObject::destroyed, this, &MpvVideoPlayerItem::forgetDestroyedPlayer);
    emit playerChanged();
    update();
}

QQuickFramebufferObject::Renderer* MpvVideoPlayerItem::createRenderer() const {
    return new MpvVideoRenderer(relay_);
}

void MpvVideoPlayerItem::forgetDestroyedPlayer() {
    playerObject_ = nullptr;
    player_ = nullptr;
    shownEngine_.reset();
    emit playerChanged();
    update();
}

void MpvVideoPlayerItem::applyRenderReport() {
    const MpvRenderReport report = renderReport_;
    const bool newContext = report.contextGeneration != appliedReport_.contextGeneration;
    const std::uint64_t picturesBefore = newContext ? 0 : appliedReport_.picturesDrawn;
    appliedReport_ = report;
    if (!player_) return;
    const bool drawn = report.engine != nullptr && report.engine == player_->engine().get();
    // A context made or freed for the shown player (a window that lost its scene graph and got a new
    // one frees and makes one without the player changing).
    if (newContext) player_->setVideoOutputAttached(drawn);
    if (!drawn || report.picturesDrawn <= picturesBefore) return;
    picturesShown_ += report.picturesDrawn - picturesBefore;
    player_->noteVideoFrameShown();
    emit pictureShown();
}

}  // namespace kestrum
