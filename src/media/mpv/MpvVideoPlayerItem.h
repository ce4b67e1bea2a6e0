#pragma once

#include "media/mpv/MpvRenderReport.h"

#include <QPointer>
#include <QQuickFramebufferObject>

#include <cstdint>
#include <memory>

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
// Needs the OpenGL scene graph (kestrum::ui::useOpenGlSceneGraph before the first window). Threads: the
// GUI thread; the renderer runs on the render thread.
class MpvVideoPlayerItem : public QQuickFramebufferObject {
    Q_OBJECT
    Q_PROPERTY(QObject* player READ player WRITE setPlayer NOTIFY playerChanged)

  public:
    explicit MpvVideoPlayerItem(QQuickItem* parent = nullptr);
    ~MpvVideoPlayerItem() override;
    MpvVideoPlayerItem(const MpvVideoPlayerItem&) = delete;
    MpvVideoPlayerItem& operator=(const MpvVideoPlayerItem&) = delete;

    QObject* player() const { return playerObject_.data(); }
    void setPlayer(QObject* player);

    // New pictures of the shown players drawn so far; for tests and benchmarks that wait for the screen.
    std::uint64_t picturesShown() const { return picturesShown_; }

    Renderer* createRenderer() const override;

  signals:
    void playerChanged();
    // A new picture of the shown player was drawn (reported one synchronisation after its frame).
    void pictureShown();

  private:
    friend class MpvVideoRenderer;

    // The renderer's news, on the GUI thread: attaches the player's video to the render context, and
    // tells it of new pictures.
    void applyRenderReport();
    void forgetDestroyedPlayer();

    // GUI thread.
    QPointer<QObject> playerObject_;
    QPointer<MpvVideoPlayer> player_;
    std::uint64_t picturesShown_ = 0;
    MpvRenderReport appliedReport_;
    std::shared_ptr<MpvUpdateRelay> relay_;
    // Written on the GUI thread, read by the renderer's synchronize (the GUI thread blocked meanwhile).
    std::shared_ptr<MpvHandle> shownEngine_;
    // Written by the renderer's synchronize, read on the GUI thread.
    MpvRenderReport renderReport_;
};

}  // namespace kestrum
