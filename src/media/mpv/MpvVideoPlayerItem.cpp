#include "media/mpv/MpvVideoPlayerItem.h"

#include "media/mpv/MpvHandle.h"
#include "media/mpv/MpvUpdateRelay.h"
#include "media/mpv/MpvVideoPlayer.h"
#include "media/mpv/MpvVideoRenderer.h"

#include <algorithm>

namespace kestrum {

MpvVideoPlayerItem::MpvVideoPlayerItem(QQuickItem* parent)
    : QQuickFramebufferObject(parent), relay_(std::make_shared<MpvUpdateRelay>(*this)) {}

MpvVideoPlayerItem::~MpvVideoPlayerItem() {
    relay_->detach();
    if (player_) player_->setVideoOutputAttached(false);
    for (const QPointer<MpvVideoPlayer>& prepared : std::as_const(preparedPlayers_))
        if (prepared) prepared->setVideoOutputAttached(false);
}

void MpvVideoPlayerItem::setPlayer(QObject* player) {
    if (player == playerObject_) return;
    if (playerObject_) disconnect(playerObject_, nullptr, this, nullptr);
    // The old player stops decoding pictures before its render context goes (on the render thread),
    // unless it stays prepared: the renderer then keeps its context warm.
    if (player_ && !isPrepared(player_)) player_->setVideoOutputAttached(false);
    if (player_ && isPrepared(player_)) attachedWarmEngines_.push_back(player_->engine().get());
    playerObject_ = player;
    player_ = qobject_cast<MpvVideoPlayer*>(player);
    shownEngine_ = player_ ? player_->engine() : nullptr;
    if (player_) std::erase(attachedWarmEngines_, player_->engine().get());
    if (player) connect(player, &QObject::destroyed, this, &MpvVideoPlayerItem::forgetDestroyedPlayer);
    publishPreparedEngines();
    emit playerChanged();
    update();
}

QVariantList MpvVideoPlayerItem::preparedPlayers() const {
    QVariantList list;
    for (const QPointer<MpvVideoPlayer>& prepared : preparedPlayers_)
        if (prepared) list.append(QVariant::fromValue(static_cast<QObject*>(prepared.data())));
    return list;
}

void MpvVideoPlayerItem::setPreparedPlayers(const QVariantList& players) {
    QList<QPointer<MpvVideoPlayer>> wanted;
    for (const QVariant& value : players)
        if (auto* player = qobject_cast<MpvVideoPlayer*>(value.value<QObject*>())) wanted.append(player);
    if (wanted == preparedPlayers_) return;
    // A player that leaves the list (and is not shown) stops decoding before its context goes.
    for (const QPointer<MpvVideoPlayer>& old : std::as_const(preparedPlayers_)) {
        if (!old || wanted.contains(old) || old == player_) continue;
        if (std::erase(attachedWarmEngines_, old->engine().get()) > 0) old->setVideoOutputAttached(false);
    }
    preparedPlayers_ = wanted;
    publishPreparedEngines();
    emit preparedPlayersChanged();
    update();
}

bool MpvVideoPlayerItem::isPrepared(const MpvVideoPlayer* player) const {
    return std::any_of(preparedPlayers_.begin(), preparedPlayers_.end(),
                       [player](const QPointer<MpvVideoPlayer>& prepared) { return prepared == player; });
}

void MpvVideoPlayerItem::publishPreparedEngines() {
    preparedEngines_.clear();
    for (const QPointer<MpvVideoPlayer>& prepared : std::as_const(preparedPlayers_))
        if (prepared && prepared != player_) preparedEngines_.push_back(prepared->engine());
}

void MpvVideoPlayerItem::applyWarmEngines(const MpvRenderReport& report) {
    for (const QPointer<MpvVideoPlayer>& prepared : std::as_const(preparedPlayers_)) {
        if (!prepared || prepared == player_) continue;
        const MpvHandle* engine = prepared->engine().get();
        const bool warm = std::find(report.warmEngines.begin(), report.warmEngines.end(), engine) !=
                          report.warmEngines.end();
        const bool attached = std::find(attachedWarmEngines_.begin(), attachedWarmEngines_.end(), engine) !=
                              attachedWarmEngines_.end();
        if (warm == attached) continue;
        if (warm)
            attachedWarmEngines_.push_back(engine);
        else
            std::erase(attachedWarmEngines_, engine);
        prepared->setVideoOutputAttached(warm);
    }
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
    applyWarmEngines(report);
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
