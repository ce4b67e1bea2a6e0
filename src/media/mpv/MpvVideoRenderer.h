#pragma once

#include "media/mpv/MpvRenderReport.h"

#include <QQuickFramebufferObject>

#include <cstdint>
#include <memory>

namespace kestrum {

class MpvHandle;
class MpvRenderContext;
class MpvUpdateRelay;

// The render side of MpvVideoPlayerItem: draws the shown player's engine into the item's framebuffer
// object through mpv's render API, or black when no player is shown. It makes the render context when a
// player is first drawn and frees it when the item shows another one or goes, always on the render
// thread.
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
    MpvRenderReport report() const;

    std::shared_ptr<MpvUpdateRelay> relay_;
    // All render thread.
    std::shared_ptr<MpvHandle> wantedEngine_;  // the shown player's engine, as of the last synchronize
    std::unique_ptr<MpvRenderContext> context_;
    std::uint64_t contextGeneration_ = 0;
    std::uint64_t picturesDrawn_ = 0;
};

}  // namespace kestrum
