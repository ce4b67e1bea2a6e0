#pragma once

#include "media/mpv/MpvRenderReport.h"

#include <QOpenGLFramebufferObject>
#include <QQuickFramebufferObject>

#include <cstdint>
#include <memory>
#include <vector>

namespace kestrum {

class MpvHandle;
class MpvRenderContext;
class MpvUpdateRelay;

// The render side of MpvVideoPlayerItem: draws the shown player's engine into the item's framebuffer
// object through mpv's render API, or black when no player is shown. It makes the render context when a
// player is first drawn and frees it when the item shows another one or goes, always on the render
// thread.
//
// The item's prepared players are kept warm: each has a render context here too, through which its
// picture is decoded and drawn into a small framebuffer of its own that nobody sees, so that showing it
// later only swaps contexts: no video chain to start, no frame to decode. A shown player that becomes a
// prepared one keeps its context the same way.
//
// Threads: the render thread; synchronize runs there while the GUI thread is blocked, the one moment
// the item's fields may be read and written.
class MpvVideoRenderer final : public QQuickFramebufferObject::Renderer {
  public:
    explicit MpvVideoRenderer(std::shared_ptr<MpvUpdateRelay> relay);
    ~MpvVideoRenderer() override;
    MpvVideoRenderer(const MpvVideoRenderer&) = delete;
    MpvVideoRenderer& operator=(const MpvVideoRenderer&) = delete;

  protected:
    QOpenGLFramebufferObject* createFramebufferObject(const QSize& size) override;
    void synchronize(QQuickFramebufferObject* item) override;
    void render() override;

  private:
    void followWantedEngine();
    // Makes and frees the prepared players' contexts; true when the set changed.
    bool followWarmEngines();
    bool isWantedWarm(const MpvHandle* engine) const;
    void renderWarmContexts();
    void makeWarmTarget();
    // Frees a context that is no longer drawn, without waiting on its engine.
    void retire(std::unique_ptr<MpvRenderContext> context);
    MpvRenderReport report() const;

    std::shared_ptr<MpvUpdateRelay> relay_;
    // All render thread.
    std::shared_ptr<MpvHandle> wantedEngine_;  // the shown player's engine, as of the last synchronize
    std::unique_ptr<MpvRenderContext> context_;
    // The prepared players' engines as of the last synchronize, and their contexts.
    std::vector<std::shared_ptr<MpvHandle>> wantedWarmEngines_;
    std::vector<std::unique_ptr<MpvRenderContext>> warmContexts_;
    std::unique_ptr<QOpenGLFramebufferObject> warmTarget_;  // made with the first warm context
    // The context now shown was taken warm: its first drawing shows a picture decoded already.
    bool showsWarmPicture_ = false;
    std::uint64_t contextGeneration_ = 0;
    std::uint64_t picturesDrawn_ = 0;
};

}  // namespace kestrum
