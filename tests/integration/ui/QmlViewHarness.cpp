#include "QmlViewHarness.h"

#include "support/TestEnvironment.h"
#include "ui/KestrumUi.h"
#include "ui/WindowScreenshot.h"

#include <QQmlComponent>
#include <QQuickItem>
#include <QTest>

namespace kestrum::test {

namespace {

QString& missingReason() {
    static QString reason;
    return reason;
}

}  // namespace

QString displayMissing() {
    return missingReason();
}

void setDisplayMissing(const QString& reason) {
    missingReason() = reason;
}

QmlViewHarness::QmlViewHarness() : window_(std::make_unique<QQuickWindow>()) {
    ui::registerQmlModules(engine_);
}

QmlViewHarness::~QmlViewHarness() {
    root_.reset();
    window_.reset();
}

QQuickItem* QmlViewHarness::show(const QUrl& url, const QVariantMap& properties, QSize size) {
    QQmlComponent component(&engine_, url);
    return showComponent(component, properties, size);
}

QQuickItem* QmlViewHarness::showText(const QByteArray& qml, const QVariantMap& properties, QSize size) {
    QQmlComponent component(&engine_);
    component.setData(qml, QUrl(QStringLiteral("qrc:/kestrum-test/View.qml")));
    return showComponent(component, properties, size);
}

QQuickItem* QmlViewHarness::showComponent(QQmlComponent& component, const QVariantMap& properties,
                                          QSize size) {
    if (!component.isReady()) {
        errors_ = component.errorString();
        return nullptr;
    }
    std::unique_ptr<QObject> created(component.createWithInitialProperties(properties));
    auto* item = qobject_cast<QQuickItem*>(created.get());
    if (!item) {
        errors_ = created ? QStringLiteral("the root is no Item") : component.errorString();
        return nullptr;
    }
    created.release();
    root_.reset(item);
    window_->resize(size);
    item->setParentItem(window_->contentItem());
    item->setSize(QSizeF(size));
    window_->show();
    if (!QTest::qWaitForWindowExposed(window_.get())) {
        errors_ = QStringLiteral("the window was never exposed");
        return nullptr;
    }
    return item;
}

QImage QmlViewHarness::screenshot(const std::function<bool()>& settled, int timeoutMs) {
    QImage picture;
    ui::WindowScreenshot grab(
        *window_, settled ? settled : [] { return true; }, timeoutMs);
    QObject::connect(&grab, &ui::WindowScreenshot::grabbed,
                     [&](const QImage& grabbed) { picture = grabbed; });
    waitUntil([&] { return !picture.isNull(); }, timeoutMs + 5000);
    return picture;
}

void QmlViewHarness::moveMouse(QPointF scenePoint) {
    QTest::mouseMove(window_.get(), scenePoint.toPoint());
    // Hover is delivered on the next frame's pointer update; let the window draw it.
    QTest::qWait(50);
}

void QmlViewHarness::click(QPointF scenePoint) {
    QTest::mouseClick(window_.get(), Qt::LeftButton, Qt::NoModifier, scenePoint.toPoint());
}

void QmlViewHarness::press(QPointF scenePoint) {
    QTest::mousePress(window_.get(), Qt::LeftButton, Qt::NoModifier, scenePoint.toPoint());
}

void QmlViewHarness::moveHeld(QPointF scenePoint) {
    QTest::mouseMove(window_.get(), scenePoint.toPoint());
}

void QmlViewHarness::release(QPointF scenePoint) {
    QTest::mouseRelease(window_.get(), Qt::LeftButton, Qt::NoModifier, scenePoint.toPoint());
}

namespace {

void collectItems(QQuickItem* item, const std::function<bool(QQuickItem*)>& wanted,
                  QList<QQuickItem*>& found) {
    if (wanted(item)) found.append(item);
    for (QQuickItem* child : item->childItems()) collectItems(child, wanted, found);
}

}  // namespace

QQuickItem* QmlViewHarness::findItem(const QString& objectName) const {
    QList<QQuickItem*> found;
    collectItems(
        window_->contentItem(), [&](QQuickItem* item) { return item->objectName() == objectName; }, found);
    return found.isEmpty() ? nullptr : found.front();
}

QList<QQuickItem*> QmlViewHarness::findItemsOfType(const char* typeNamePrefix) const {
    QList<QQuickItem*> found;
    collectItems(
        window_->contentItem(),
        [&](QQuickItem* item) {
            return qstrncmp(item->metaObject()->className(), typeNamePrefix, qstrlen(typeNamePrefix)) == 0;
        },
        found);
    return found;
}

QPointF QmlViewHarness::centreOf(const QQuickItem& item) {
    return item.mapToScene(QPointF(item.width() / 2, item.height() / 2));
}

}  // namespace kestrum::test
