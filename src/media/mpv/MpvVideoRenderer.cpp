#include "media/mpv/MpvVideoRenderer.h"

#include "media/mpv/MpvHandle.h"
#include "media/mpv/MpvRenderContext.h"
#include "media/mpv/MpvUpdateRelay.h"
#include "media/mpv/MpvVideoPlayerItem.h"

#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QQuickOpenGLUtils>

#include <algorithm>
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

// Warm pictures are drawn only to keep mpv's decoder going: the smallest target will do.
constexpr QSize kWarmTargetSize(16, 16);

}  // namespace

MpvVideoRenderer::MpvVideoRenderer(std::shared_ptr<MpvUpdateRelay> relay) : relay_(std::move(relay)) {}

// The scene graph deletes its renderers on the render thread with its OpenGL context current, which is
// what freeing the render context needs.
MpvVideoRenderer::~MpvVideoRenderer() {
    retire(std::move(context_));
    for (std::unique_ptr<MpvRenderContext>& warm : warmContexts_) retire(std::move(warm));
    warmTarget_.reset();
    MpvHandle::releaseOnMainThread(std::move(wantedEngine_));
    for (std::shared_ptr<MpvHandle>& engine : wantedWarmEngines_)
        MpvHandle::releaseOnMainThread(std::move(engine));
}

QOpenGLFramebufferObject* MpvVideoRenderer::createFramebufferObject(const QSize& size) {
    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::NoAttachment);
    return new QOpenGLFramebufferObject(size, format);
}

void MpvVideoRenderer::synchronize(QQuickFramebufferObject* item) {
    auto& videoItem = static_cast<MpvVideoPlayerItem&>(*item);
    MpvHandle::releaseOnMainThread(std::exchange(wantedEngine_, videoItem.shownEngine_));
    for (std::shared_ptr<MpvHandle>& engine : std::exchange(wantedWarmEngines_, videoItem.preparedEngines_))
        MpvHandle::releaseOnMainThread(std::move(engine));
    const MpvRenderReport current = report();
    if (current == videoItem.renderReport_) return;
    videoItem.renderReport_ = current;
    // The item passes the news to its player on the GUI thread: no mpv call is made from here.
    QMetaObject::invokeMethod(
        &videoItem, [&videoItem] { videoItem.applyRenderReport(); }, Qt::QueuedConnection);
}

void MpvVideoRenderer::render() {
    followWantedEngine();
    renderWarmContexts();
    QOpenGLFramebufferObject* target = framebufferObject();
    target->bind();
    if (!context_) {
        QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
        gl->glClearColor(0, 0, 0, 1);
        gl->glClear(GL_COLOR_BUFFER_BIT);
        return;
    }
    const bool drewNew = context_->render(target->handle(), target->size());
    // A context taken warm draws its decoded picture at once, though mpv has no new frame to report.
    const bool drewWarm = std::exchange(showsWarmPicture_, false) && context_->hasPicture();
    if (drewNew || drewWarm) {
        ++picturesDrawn_;
        // One more synchronisation brings the news to the item.
        relay_->requestUpdate();
    }
    // mpv leaves some OpenGL state of its own; the scene graph expects its defaults back.
    QQuickOpenGLUtils::resetOpenGLState();
}

void MpvVideoRenderer::renderWarmContexts() {
    if (warmContexts_.empty()) return;
    makeWarmTarget();
    bool drew = false;
    for (const std::unique_ptr<MpvRenderContext>& warm : warmContexts_)
        drew = warm->renderIfDue(warmTarget_->handle(), kWarmTargetSize) || drew;
    if (drew) QQuickOpenGLUtils::resetOpenGLState();
}

void MpvVideoRenderer::makeWarmTarget() {
    if (warmTarget_) return;
    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::NoAttachment);
    warmTarget_ = std::make_unique<QOpenGLFramebufferObject>(kWarmTargetSize, format);
}

void MpvVideoRenderer::retire(std::unique_ptr<MpvRenderContext> context) {
    if (!context) return;
    // Freeing waits for the engine to take its video output down, and the output may itself be waiting
    // (up to 200 ms) for its last frame to be drawn, which nobody would do while this thread waits: the
    // frame is drawn first, unseen. With no OpenGL context to draw in, it is only freed (on return).
    if (QOpenGLContext::currentContext() == nullptr) return;
    makeWarmTarget();
    context->render(warmTarget_->handle(), kWarmTargetSize);
    context.reset();
    QQuickOpenGLUtils::resetOpenGLState();
}

bool MpvVideoRenderer::isWantedWarm(const MpvHandle* engine) const {
    return std::any_of(wantedWarmEngines_.begin(), wantedWarmEngines_.end(),
                       [engine](const std::shared_ptr<MpvHandle>& wanted) { return wanted.get() == engine; });
}

bool MpvVideoRenderer::followWarmEngines() {
    const std::size_t before = warmContexts_.size();
    const auto dropped =
        std::stable_partition(warmContexts_.begin(), warmContexts_.end(), [this](const auto& warm) {
            return isWantedWarm(warm->engine()) && warm->engine() != wantedEngine_.get();
        });
    bool changed = dropped != warmContexts_.end();
    for (auto leaving = dropped; leaving != warmContexts_.end(); ++leaving) retire(std::move(*leaving));
    warmContexts_.erase(dropped, warmContexts_.end());
    for (const std::shared_ptr<MpvHandle>& engine : wantedWarmEngines_) {
        if (!engine || engine == wantedEngine_) continue;
        const bool hasContext =
            std::any_of(warmContexts_.begin(), warmContexts_.end(),
                        [&engine](const auto& warm) { return warm->engine() == engine.get(); });
        if (hasContext) continue;
        // Refused while another item still holds the engine's one context: tried again next drawing.
        if (std::unique_ptr<MpvRenderContext> made = MpvRenderContext::create(engine, relay_)) {
            warmContexts_.push_back(std::move(made));
            changed = true;
        }
    }
    return changed || warmContexts_.size() != before;
}

void MpvVideoRenderer::followWantedEngine() {
    // The context holds its engine: the address drawn cannot be a new engine's while it stands.
    const MpvHandle* drawn = context_ ? context_->engine() : nullptr;
    bool changed = false;
    if (context_ && drawn != wantedEngine_.get()) {
        // The player no longer shown but still prepared keeps its context, and with it its picture.
        if (isWantedWarm(drawn))
            warmContexts_.push_back(std::move(context_));
        else
            retire(std::move(context_));
        contextGeneration_ = nextContextGeneration();
        changed = true;
    }
    // Tried at every drawing while refused: another item (say, this one in the window it left) may
    // still hold the engine's one render context, and frees it soon.
    if (wantedEngine_ && !context_) {
        const auto warm =
            std::find_if(warmContexts_.begin(), warmContexts_.end(),
                         [this](const auto& context) { return context->engine() == wantedEngine_.get(); });
        if (warm != warmContexts_.end()) {
            context_ = std::move(*warm);
            warmContexts_.erase(warm);
            showsWarmPicture_ = true;
        } else {
            context_ = MpvRenderContext::create(wantedEngine_, relay_);
        }
        if (context_) {
            contextGeneration_ = nextContextGeneration();
            changed = true;
        }
    }
    changed = followWarmEngines() || changed;
    if (!changed) return;
    picturesDrawn_ = 0;
    relay_->requestUpdate();
}

MpvRenderReport MpvVideoRenderer::report() const {
    std::vector<const MpvHandle*> warm;
    warm.reserve(warmContexts_.size());
    for (const std::unique_ptr<MpvRenderContext>& context : warmContexts_) warm.push_back(context->engine());
    return {context_ ? context_->engine() : nullptr, contextGeneration_, picturesDrawn_, std::move(warm)};
}

}  // namespace kestrum
