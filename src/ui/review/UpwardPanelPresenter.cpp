#include "ui/review/UpwardPanelPresenter.h"

#include "core/review/UpwardPanelPlacement.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QQuickWindow>

namespace kestrum::ui {

UpwardPanelPresenter::UpwardPanelPresenter(QQuickItem* parent) : QQuickItem(parent) {
    setVisible(false);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (presented_ && state != Qt::ApplicationActive) emit dismissed();
    });
    connect(this, &QQuickItem::implicitWidthChanged, this, &UpwardPanelPresenter::place);
    connect(this, &QQuickItem::implicitHeightChanged, this, &UpwardPanelPresenter::place);
}

UpwardPanelPresenter::~UpwardPanelPresenter() {
    watchWindow(nullptr);
}

void UpwardPanelPresenter::setAnchorItem(QQuickItem* anchor) {
    if (anchor == anchor_) return;
    anchor_ = anchor;
    place();
    emit anchorItemChanged();
}

void UpwardPanelPresenter::setPresented(bool presented) {
    if (presented == presented_) return;
    presented_ = presented;
    apply();
    emit presentedChanged();
}

void UpwardPanelPresenter::componentComplete() {
    QQuickItem::componentComplete();
    apply();
}

void UpwardPanelPresenter::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change == ItemSceneChange && isComponentComplete()) apply();
}

void UpwardPanelPresenter::apply() {
    QQuickWindow* shownIn = presented_ && isComponentComplete() ? window() : nullptr;
    if (!shownIn) {
        setVisible(false);
        watchWindow(nullptr);
        return;
    }
    // Over the whole window: the strip's own bounds would clip the panel and hide it under the movie.
    if (parentItem() != shownIn->contentItem()) setParentItem(shownIn->contentItem());
    setZ(kPanelZ);
    watchWindow(shownIn);
    place();
    setVisible(true);
}

void UpwardPanelPresenter::place() {
    QQuickWindow* shownIn = window();
    if (!presented_ || !shownIn || !anchor_) return;
    const QRectF anchor = anchor_->mapRectToScene(QRectF(0, 0, anchor_->width(), anchor_->height()));
    const QQuickItem* content = shownIn->contentItem();
    const QRectF frame = upwardPanelFrame(anchor, QSizeF(implicitWidth(), implicitHeight()),
                                          QSizeF(content->width(), content->height()));
    setPosition(content->mapFromScene(frame.topLeft()));
    setSize(frame.size());
}

void UpwardPanelPresenter::watchWindow(QQuickWindow* window) {
    if (window == watchedWindow_) return;
    if (watchedWindow_) watchedWindow_->removeEventFilter(this);
    disconnect(frameConnection_);
    watchedWindow_ = window;
    if (!window) return;
    window->installEventFilter(this);
    // The anchor moves with whatever lays it out; checking once a frame follows it wherever it goes.
    frameConnection_ = connect(window, &QQuickWindow::afterAnimating, this, &UpwardPanelPresenter::place);
}

bool UpwardPanelPresenter::eventFilter(QObject* watched, QEvent* event) {
    if (watched == watchedWindow_ && event->type() == QEvent::MouseButtonPress && presented_) {
        const QPointF scenePoint = static_cast<QMouseEvent*>(event)->scenePosition();
        if (!contains(mapFromScene(scenePoint)) && !isOnAnchor(scenePoint)) emit dismissed();
    }
    return QQuickItem::eventFilter(watched, event);
}

bool UpwardPanelPresenter::isOnAnchor(QPointF scenePoint) const {
    return anchor_ && anchor_->contains(anchor_->mapFromScene(scenePoint));
}

}  // namespace kestrum::ui
