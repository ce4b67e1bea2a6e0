#include "media/mpv/MpvRenderContext.h"

#include "media/mpv/MpvHandle.h"
#include "media/mpv/MpvUpdateRelay.h"

#include <mpv/render.h>
#include <mpv/render_gl.h>

#include <QOpenGLContext>

#include <cstdint>
#include <utility>

namespace kestrum {

namespace {

void* openGlProcAddress(void* /*context*/, const char* name) {
    QOpenGLContext* current = QOpenGLContext::currentContext();
    if (current == nullptr) return nullptr;
    return reinterpret_cast<void*>(current->getProcAddress(QByteArray(name)));
}

void requestItemUpdate(void* relay) {
    static_cast<MpvUpdateRelay*>(relay)->requestUpdate();
}

}  // namespace

std::unique_ptr<MpvRenderContext> MpvRenderContext::create(std::shared_ptr<MpvHandle> engine,
                                                           std::shared_ptr<MpvUpdateRelay> relay) {
    if (!engine || QOpenGLContext::currentContext() == nullptr) return nullptr;
    mpv_opengl_init_params openGl{&openGlProcAddress, nullptr};
    int advancedControl = 0;
    mpv_render_param params[] = {
        {MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_OPENGL)},
        {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &openGl},
        {MPV_RENDER_PARAM_ADVANCED_CONTROL, &advancedControl},
        {MPV_RENDER_PARAM_INVALID, nullptr},
    };
    mpv_render_context* context = nullptr;
    if (mpv_render_context_create(&context, engine->get(), params) < 0) return nullptr;
    mpv_render_context_set_update_callback(context, &requestItemUpdate, relay.get());
    return std::unique_ptr<MpvRenderContext>(
        new MpvRenderContext(std::move(engine), std::move(relay), context));
}

MpvRenderContext::MpvRenderContext(std::shared_ptr<MpvHandle> engine, std::shared_ptr<MpvUpdateRelay> relay,
                                   mpv_render_context* context)
    : engine_(std::move(engine)), relay_(std::move(relay)), context_(context) {}

MpvRenderContext::~MpvRenderContext() {
    // No update callback runs once this returns; then the context goes, and only then the engine's share.
    mpv_render_context_set_update_callback(context_, nullptr, nullptr);
    mpv_render_context_free(context_);
    MpvHandle::releaseOnMainThread(std::move(engine_));
    // The engine can have a context again: the item draws once more, wherever it now is.
    relay_->requestUpdate();
}

bool MpvRenderContext::render(unsigned framebufferID, QSize size) {
    const std::uint64_t updates = mpv_render_context_update(context_);
    mpv_render_frame_info next{};
    const bool known = mpv_render_context_get_info(context_, {MPV_RENDER_PARAM_NEXT_FRAME_INFO, &next}) >= 0;
    const bool newPicture = (updates & MPV_RENDER_UPDATE_FRAME) != 0 && known &&
                            (next.flags & MPV_RENDER_FRAME_INFO_PRESENT) != 0 &&
                            (next.flags & MPV_RENDER_FRAME_INFO_REDRAW) == 0;
    hasPicture_ = hasPicture_ || newPicture;
    draw(framebufferID, size);
    return newPicture;
}

bool MpvRenderContext::renderIfDue(unsigned framebufferID, QSize size) {
    if ((mpv_render_context_update(context_) & MPV_RENDER_UPDATE_FRAME) == 0) return false;
    mpv_render_frame_info next{};
    const bool known = mpv_render_context_get_info(context_, {MPV_RENDER_PARAM_NEXT_FRAME_INFO, &next}) >= 0;
    const bool newPicture = known && (next.flags & MPV_RENDER_FRAME_INFO_PRESENT) != 0;
    hasPicture_ = hasPicture_ || newPicture;
    draw(framebufferID, size);
    return newPicture;
}

void MpvRenderContext::draw(unsigned framebufferID, QSize size) {
    mpv_opengl_fbo target{static_cast<int>(framebufferID), size.width(), size.height(), 0};
    // Unflipped: OpenGL's bottom-up rows, as the scene graph samples a framebuffer object's texture.
    int flipY = 0;
    mpv_render_param params[] = {
        {MPV_RENDER_PARAM_OPENGL_FBO, &target},
        {MPV_RENDER_PARAM_FLIP_Y, &flipY},
        {MPV_RENDER_PARAM_INVALID, nullptr},
    };
    mpv_render_context_render(context_, params);
}

}  // namespace kestrum
