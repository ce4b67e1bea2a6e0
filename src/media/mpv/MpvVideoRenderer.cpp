#include "media/mpv/MpvVideoRenderer.h"

#include "media/mpv/MpvHandle.h"
#include "media/mpv/MpvRenderContext.h"
#include "media/mpv/MpvUpdateRelay.h"
#include "media/mpv/MpvVideoPlayerItem.h"

#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QQuickOpenGLUtils>

#include <utility>

namespace kestrum {

MpvVideoRenderer::MpvVideoRenderer(std::shared_ptr<MpvUpdateRelay> relay) : relay_(std::move(relay)) {}

// The scene graph deletes its renderers on the render thread with its OpenGL context current, which is
// what freeing the render context needs.
MpvVideoRenderer::~MpvVideoRenderer() {
    context_.reset();
    MpvHandle::releaseOnMainThread(std::move(wantedEngine_));
}

QOpenGLFramebufferObject* MpvVideoRenderer::createFramebufferObject(const QSize& size) {
    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::NoAttachment);
    return new QOpenGLFramebufferObject(size, format);
}

void MpvVideoRenderer::synchronize(QQuickFramebufferObject* item) {
    auto& videoItem = static_cast<MpvVideoPlayerItem&>(*item);
    MpvHandle::releaseOnMainThread(std::exchange(wantedEngine_, videoItem.shownEngine_));
    const MpvRenderReport current = report();
    if (current == videoItem.renderReport_) return;
    videoItem.renderReport_ = current;
    // The item passes the news to its player on the GUI thread: no mpv call is made from here.
    QMetaObject::invokeMethod(
        &videoItem, [&videoItem] { videoItem.applyRenderReport(); }, Qt::QueuedConnection);
}

void MpvVideoRenderer::render() {
    followWantedEngine();
    QOpenGLFramebufferObject* target = framebufferObject();
    if (!context_) {
        QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
        gl->glClearColor(0, 0, 0, 1);
        gl->glClear(GL_COLOR_BUFFER_BIT);
        return;
    }
    if (context_->render(target->handle(), target->size())) {
        ++picturesDrawn_;
        // One more synchronisation brings the news to the item.
        relay_->requestUpdate();
    }
    // mpv leaves some OpenGL state of its own; the scene graph expects its defaults back.
    QQuickOpenGLUtils::resetOpenGLState();
}

void MpvVideoRenderer::followWantedEngine() {
    // The same control block: a weak share keeps it, so a new engine at a freed one's address differs.
    const bool followed =
        !followedEngine_.owner_before(wantedEngine_) && !wantedEngine_.owner_before(followedEngine_);
    if (followed) return;
    if (context_) {
        context_.reset();
        ++contextGeneration_;
    }
    picturesDrawn_ = 0;
    followedEngine_ = wantedEngine_;
    if (wantedEngine_) {
        context_ = MpvRenderContext::create(wantedEngine_, relay_);
        if (context_) ++contextGeneration_;
    }
    relay_->requestUpdate();
}

MpvRenderReport MpvVideoRenderer::report() const {
    return {context_ ? context_->engine() : nullptr, contextGeneration_, picturesDrawn_};
}

}  // namespace kestrum
