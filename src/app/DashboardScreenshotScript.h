#pragma once

#include "app/DashboardLaunchOptions.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointF>
#include <QTimer>

#include <optional>

namespace kestrum {

class DashboardWindow;

// Sets the shown review window up as the launch options ask, the way a person would (a click on a card,
// O, a swipe's action, the pointer over a card, the filters' button, a right click on a card, the speed
// button, the guide's button), and with --screenshot writes a PNG
// of it once the movie has loaded and the game art has arrived, then quits the program (status 0, or 1
// when the picture could not be written).
//
// The steps run once the library has been read (or after kLibraryWaitMs with nothing to read); the
// picture waits kSettleMs more so that the movie has drawn a picture and the hover has settled.
//
// Threads: the main thread. The window must outlive the script.
class DashboardScreenshotScript final : public QObject {
    Q_OBJECT

  public:
    static constexpr int kPollMs = 100;
    static constexpr int kLibraryWaitMs = 15000;
    static constexpr int kSettleMs = 1500;
    static constexpr int kScreenshotTimeoutMs = 20000;

    DashboardScreenshotScript(DashboardWindow& window, DashboardLaunchOptions options,
                              QObject* parent = nullptr);

    void start();

  private:
    void waitForLibrary();
    void runSteps();
    void afterLoad();
    // The centre of the body of the card at `row` in the window's scene; absent when it is not drawn.
    std::optional<QPointF> cardCentre(int row) const;
    void hoverCard(int row);
    void clickCard(int row, Qt::MouseButton button);
    void takeScreenshot();
    bool isSettled() const;

    DashboardWindow& window_;
    DashboardLaunchOptions options_;
    QTimer poll_;
    QElapsedTimer sinceStart_;
    QElapsedTimer sinceSteps_;  // main thread; started once the steps have run
};

}  // namespace kestrum
