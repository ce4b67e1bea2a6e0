#pragma once

#include "media/mpv/MpvRenderReport.h"

#include <QList>
#include <QPointer>
#include <QQuickFramebufferObject>
#include <QVariantList>

#include <cstdint>
#include <memory>
#include <vector>

namespace kestrum {

class MpvHandle;
class MpvUpdateRelay;
class MpvVideoPlayer;

// The Qt Quick item that shows an MpvVideoPlayer: the movie's picture scaled to fit, aspect preserved,
// black around it, and black alone with no player. (In QML it is `VideoPlayerLayer` of Kestrum.Player.)
//
// `player` takes any QObject: an MpvVideoPlayer is drawn; anything else (a fake of the view tests, or
// null) draws black. A core object that holds a `VideoPlayer*` hands it over as
// `dynamic_cast<QObject*>(player)`, with no mpv header. Setting the player shown already changes nothing.
// While the item shows a player, the player's engine has a render context and decodes its picture; the
// player becomes ready for display once a picture of its movie is drawn. A player is drawn by one item
// at a time (mpv allows one render context per engine): a second item showing it stays black. A
// destroyed player leaves the item black.
//
// `preparedPlayers` (a list of player objects, like `player`) are the players that may be shown next:
// each gets a render context of this item's too, through which mpv decodes its picture where it stands
// (paused at its start, say) without drawing it on screen, so that showing it later draws that picture
// at once. The shown player is never among them; a player leaving the list stops decoding.
//
// Needs the OpenGL scene graph (kestrum::ui::useOpenGlSceneGraph before the first window). Threads: the
// GUI thread; the renderer runs on the render thread.
class MpvVideoPlayerItem : public QQuickFramebufferObject {
    Q_OBJECT
    Q_PROPERTY(QObject* player READ player WRITE setPlayer NOTIFY playerChanged)
    Q_PROPERTY(QVariantList preparedPlayers READ preparedPlayers WRITE setPreparedPlayers NOTIFY
                   preparedPlayersChanged)

  public:
    explicit MpvVideoPlayerItem(QQuickItem* parent = nullptr);
    ~MpvVideoPlayerItem() override;
    MpvVideoPlayerItem(const MpvVideoPlayerItem&) = delete;
    MpvVideoPlayerItem& operator=(const MpvVideoPlayerItem&) = delete;

    QObject* player() const { return playerObject_.data(); }
    void setPlayer(QObject* player);
    QVariantList preparedPlayers() const;
    void setPreparedPlayers(const QVariantList& players);

    // New pictures of the shown players drawn so far; for tests and benchmarks that wait for the screen.
    std::uint64_t picturesShown() const { return picturesShown_; }

    Renderer* createRenderer() const override;

  signals:
    void playerChanged();
    void preparedPlayersChanged();
    // A new picture of the shown player was drawn (reported one synchronisation after its frame).
    void pictureShown();

  private:
    friend class MpvVideoRenderer;

    // The renderer's news, on the GUI thread: attaches the player's video to the render context, and
    // tells it of new pictures.
    void applyRenderReport();
    void forgetDestroyedPlayer();
    bool isPrepared(const MpvVideoPlayer* player) const;
    // The prepared players' engines for the renderer, the shown player's left out.
    void publishPreparedEngines();
    // Tells each prepared player whether a render context decodes its picture now.
    void applyWarmEngines(const MpvRenderReport& report);

    // GUI thread.
    QPointer<QObject> playerObject_;
    QPointer<MpvVideoPlayer> player_;
    QList<QPointer<MpvVideoPlayer>> preparedPlayers_;
    // The prepared players whose video is attached to a warm context, by engine.
    std::vector<const MpvHandle*> attachedWarmEngines_;
    std::uint64_t picturesShown_ = 0;
    MpvRenderReport appliedReport_;
    std::shared_ptr<MpvUpdateRelay> relay_;
    // Written on the GUI thread, read by the renderer's synchronize (the GUI thread blocked meanwhile).
    std::shared_ptr<MpvHandle> shownEngine_;
    std::vector<std::shared_ptr<MpvHandle>> preparedEngines_;
    // Written by the renderer's synchronize, read on the GUI thread.
    MpvRenderReport renderReport_;
};

}  // namespace kestrum
