#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

class QQuickWindow;

namespace kestrum::ui {

// A picture of a Qt Quick window as a person sees it: taken with `grabWindow()` once the window has
// shown a frame (its first `frameSwapped`) and `settled` holds (say, no art still loading), or when
// `timeoutMs` has passed since the start, whichever comes first. `grabbed` is emitted once.
//
// Threads: main thread; the window must outlive the object or the grab (the object then stops).
class WindowScreenshot : public QObject {
    Q_OBJECT

  public:
    static constexpr int kPollMs = 50;

    WindowScreenshot(QQuickWindow& window, std::function<bool()> settled, int timeoutMs,
                     QObject* parent = nullptr);

    // Whether the picture waited for `settled` or was taken at the time-out.
    bool timedOut() const { return timedOut_; }

  signals:
    void grabbed(const QImage& picture);

  private:
    void check();

    QPointer<QQuickWindow> window_;
    std::function<bool()> settled_;
    int timeoutMs_;
    QElapsedTimer sinceStart_;
    QTimer poll_;
    bool frameShown_ = false;
    bool done_ = false;
    bool timedOut_ = false;
};

// Writes `picture` to `path` as a PNG and says so on stdout ("screenshot written to PATH (WxH)"), for the
// programs whose --screenshot ends them; false, with nothing said, when there is no picture or it cannot
// be written.
bool savePicture(const QImage& picture, const QString& path);

}  // namespace kestrum::ui
