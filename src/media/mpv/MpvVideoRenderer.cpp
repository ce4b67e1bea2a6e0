#include "media/mpv/MpvVideoRenderer.h"

#include "media/mpv/MpvHandle.h"
#include "media/mpv/MpvRenderContext.h"
#include "media/mpv/MpvUpdateRelay.h"
#include "media/mpv/MpvVideoPlayerItem.h"

#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QQuickOpenGLUtils>

#include <atomic>
#include <utility>

namespace kestrum {

namespace {

// Render contexts are numbered across every renderer: a window that drops its scene graph makes a new
// renderer for the same item, whose first context must not look like the old one's.
std::uint64_t nextContextGeneration() {
    static std::atomic<std::uint64_t> generation{0};
    return ++generation;
}

}  // namespace

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
    // The context holds its engine: the address drawn cannot be a new engine's while it stands.
    const MpvHandle* drawn = context_ ? context_->engine() : nullptr;
    bool changed = false;
    if (context_ && drawn != wantedEngine_.get()) {
        context_.reset();
        contextGeneration_ = nextContextGeneration();
        changed = true;
    }
    // Tried at every drawing while refused: another item (say, this one in the window it left) may
    // still hold the engine's one render context, and frees it soon.
    if (wantedEngine_ && !context_) {
        context_ = MpvRenderContext::create(wantedEngine_, relay_);
        if (context_) {
            contextGeneration_ = nextContextGeneration();
            changed = true;
        }
    }
    if (!changed) return;
    picturesDrawn_ = 0;
    relay_->requestUpdate();
}

MpvRenderReport MpvVideoRenderer::report() const {
    return {context_ ? context_->engine() : nullptr, contextGeneration_, picturesDrawn_};
}

}  // namespace kestrum
