#pragma once

#include <QSize>

#include <memory>

struct mpv_render_context;

namespace kestrum {

class MpvHandle;
class MpvUpdateRelay;

// mpv's OpenGL render context for one engine, the one picture source of an item's renderer. It is made
// and freed on the render thread with the scene graph's OpenGL context current (mpv draws through that
// context's functions), and freed before the engine goes: it holds a share of the engine, handed back to
// the main thread once the context is freed. mpv allows one render context per engine at a time.
//
// Threads: the render thread only. mpv's update callback, on mpv's threads, only asks `relay` for an
// update of the item.
class MpvRenderContext {
  public:
    // A context for `engine`; null when mpv refuses one (another item draws the engine already). Freed,
    // it asks for the item to be drawn again.
    static std::unique_ptr<MpvRenderContext> create(std::shared_ptr<MpvHandle> engine,
                                                    std::shared_ptr<MpvUpdateRelay> relay);
    ~MpvRenderContext();
    MpvRenderContext(const MpvRenderContext&) = delete;
    MpvRenderContext& operator=(const MpvRenderContext&) = delete;

    const MpvHandle* engine() const { return engine_.get(); }

    // Draws the engine's picture at the playhead into the framebuffer object `framebufferID` of `size`,
    // scaled to fit with black around it (black alone while there is no picture). True when it drew a
    // new picture rather than the last one again.
    bool render(unsigned framebufferID, QSize size);
    // Draws only when mpv has a new frame for it (so that its decoder, which waits for each frame to be
    // drawn, goes on); true when it drew one.
    bool renderIfDue(unsigned framebufferID, QSize size);
    // Whether a picture of the movie was ever drawn through this context.
    bool hasPicture() const { return hasPicture_; }

  private:
    MpvRenderContext(std::shared_ptr<MpvHandle> engine, std::shared_ptr<MpvUpdateRelay> relay,
                     mpv_render_context* context);

    std::shared_ptr<MpvHandle> engine_;
    std::shared_ptr<MpvUpdateRelay> relay_;  // the update callback's target lives as long as the context
    void draw(unsigned framebufferID, QSize size);

    mpv_render_context* context_;
    bool hasPicture_ = false;
};

}  // namespace kestrum
