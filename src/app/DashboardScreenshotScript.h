#pragma once

#include "app/DashboardLaunchOptions.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace kestrum {

class DashboardWindow;

// Sets the shown review window up as the launch options ask, the way a person would (a click on a card,
// O, a swipe's action, the pointer over a card, the filters' button), and with --screenshot writes a PNG
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
    void hoverCard(int row);
    void takeScreenshot();
    bool isSettled() const;

    DashboardWindow& window_;
    DashboardLaunchOptions options_;
    QTimer poll_;
    QElapsedTimer sinceStart_;
    QElapsedTimer sinceSteps_;  // main thread; started once the steps have run
};

}  // namespace kestrum
