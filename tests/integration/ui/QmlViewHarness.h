#pragma once

#include <QFile>
#include <QImage>
#include <QPointF>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSize>
#include <QString>
#include <QUrl>
#include <QVariantMap>

#include <functional>
#include <memory>

class QQuickItem;

namespace kestrum::test {

// Why the view tests cannot run (no Xvfb), or empty when they can. Set once by the tests' main.
QString displayMissing();
void setDisplayMissing(const QString& reason);

// Skips the current test, saying why, when there is no display.
#define KESTRUM_REQUIRE_DISPLAY()                                                               \
    do {                                                                                        \
        if (!::kestrum::test::displayMissing().isEmpty()) {                                     \
            GTEST_SKIP() << "no X server: " << ::kestrum::test::displayMissing().toStdString(); \
        }                                                                                       \
    } while (false)

// Skips a player test when the build wrote no test movies (no HEVC encoder); in CI, where every encoder is
// installed, fails it instead.
#define KESTRUM_REQUIRE_PLAYER_TEST_MOVIES(movies)                                   \
    do {                                                                             \
        if (!QFile::exists((movies).clock())) {                                      \
            if (qEnvironmentVariable("KESTRUM_REQUIRE_MEDIA") == QLatin1String("1")) \
                FAIL() << "no test movies";                                          \
            GTEST_SKIP() << "the test movies were not written (no HEVC encoder?)";   \
        }                                                                            \
    } while (false)

// One view under test: a QML engine that imports the application's modules, a real window on the test's
// X server holding the view, screenshots as a person would see them, and pointer input through QTest.
//
// Main thread. The window is shown by `show` and closed with the harness.
class QmlViewHarness {
  public:
    QmlViewHarness();
    ~QmlViewHarness();

    QQmlEngine& engine() { return engine_; }
    QQuickWindow& window() { return *window_; }

    // Creates the QML document at `url` (a component whose root is an Item) with `properties`, fills the
    // window of `size` with it and shows the window; waits for its first frame. Null, with the errors in
    // `errors()`, when the document does not load or its root is no Item.
    QQuickItem* show(const QUrl& url, const QVariantMap& properties = {}, QSize size = {480, 320});
    // The same for QML text, written as a file of the test ("import Kestrum.Style\nKestrumCardModifier {}").
    QQuickItem* showText(const QByteArray& qml, const QVariantMap& properties = {}, QSize size = {480, 320});
    QString errors() const { return errors_; }

    // The window as drawn, grabbed after a frame was shown and once `settled` holds (default: at once),
    // at most `timeoutMs` later.
    QImage screenshot(const std::function<bool()>& settled = {}, int timeoutMs = 10000);

    // Pointer input at a point of the window's scene.
    void moveMouse(QPointF scenePoint);
    void click(QPointF scenePoint);
    // A press, moves with the button held (delivered at once, with no wait) and the release.
    void press(QPointF scenePoint);
    void moveHeld(QPointF scenePoint);
    void release(QPointF scenePoint);

    // The item named `objectName` in the window's visual tree (a Loader's or a Repeater's items are no
    // QObject children of the view); null when there is none.
    QQuickItem* findItem(const QString& objectName) const;
    // Every item of the visual tree whose type name (the QML type's, as the meta-object names it) starts
    // with `typeNamePrefix`.
    QList<QQuickItem*> findItemsOfType(const char* typeNamePrefix) const;
    // The centre of `item` in the window's scene.
    static QPointF centreOf(const QQuickItem& item);

  private:
    QQuickItem* showComponent(QQmlComponent& component, const QVariantMap& properties, QSize size);

    QQmlEngine engine_;
    std::unique_ptr<QQuickWindow> window_;
    std::unique_ptr<QQuickItem> root_;
    QString errors_;
};

}  // namespace kestrum::test
