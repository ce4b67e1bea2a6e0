#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QtQmlIntegration>

namespace kestrum::ui {

// `UpwardPanelPresenter`: a pop-up of the timeline strip, inside the window that holds it. Its children
// are the panel's content; it takes the size that its implicitWidth and implicitHeight give (bind them
// to the content's). While `presented`, it lies over everything else in the window, at the frame of
// upwardPanelFrame: centred on `anchorItem`, its bottom edge 8 points above the anchor's top, kept 4
// points inside the window; it follows the anchor and the window as they move.
//
// It emits `dismissed` for a press of any mouse button outside it (the press goes on to what lies under
// it; a press on the anchor is the anchor's own, which toggles the panel itself) and when the application
// stops being the active one. The owner of the presented state answers by clearing it.
//
// Threads: the main thread.
class UpwardPanelPresenter : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem* anchorItem READ anchorItem WRITE setAnchorItem NOTIFY anchorItemChanged)
    Q_PROPERTY(bool presented READ isPresented WRITE setPresented NOTIFY presentedChanged)

  public:
    // Over every item of the window's content.
    static constexpr qreal kPanelZ = 10000;

    explicit UpwardPanelPresenter(QQuickItem* parent = nullptr);
    ~UpwardPanelPresenter() override;

    QQuickItem* anchorItem() const { return anchor_; }
    void setAnchorItem(QQuickItem* anchor);
    bool isPresented() const { return presented_; }
    void setPresented(bool presented);

  signals:
    void anchorItemChanged();
    void presentedChanged();
    void dismissed();

  protected:
    void componentComplete() override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void apply();
    void place();
    void watchWindow(QQuickWindow* window);
    bool isOnAnchor(QPointF scenePoint) const;

    // All main thread.
    QPointer<QQuickItem> anchor_;
    bool presented_ = false;
    QPointer<QQuickWindow> watchedWindow_;
    QMetaObject::Connection frameConnection_;
};

}  // namespace kestrum::ui
