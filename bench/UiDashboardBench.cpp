// kestrum-bench-ui-dashboard: the review window's content (DashboardView) on a library of 1,000 made-up
// recordings with fake players and loads, on the X server of DISPLAY (Xvfb under ./kestrum.sh bench), at
// 1280x800, after the library's refresh (run it as `DISPLAY=:N kestrum-bench-ui-dashboard` with an Xvfb
// of your own when there is no desktop):
//   figure ui_dashboard_scroll_frame_ms        median interval between frames while the sidebar scrolls
//                                              down at 40 points a frame for 360 frames, nothing playing
//   figure ui_dashboard_scroll_frame_p95_ms    the 95th percentile of those intervals
//   figure ui_dashboard_rss_1000_cards_mb      resident memory once the window has drawn, one recording
//                                              selected (its player a fake: no movie decodes here)
// The selection's time to a first movie frame is measured with the mpv players by
// kestrum-bench-dashboard-selection. Asserts nothing.
#include "DashboardViewSetup.h"
#include "MadeUpLibrary.h"
#include "base/async/SystemClock.h"
#include "core/dashboard/DashboardController.h"
#include "core/library/RecordingLibraryModel.h"
#include "core/notifications/NotificationCenter.h"
#include "core/settings/UserDefaults.h"
#include "platform/fake/FakeFileActions.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

using namespace kestrum;

constexpr int kRecordings = 1000;
constexpr double kScrollStep = 40;
// Six seconds of frames at 60 a second: some 300 cards go by.
constexpr std::size_t kScrollFrames = 360;

void figure(const char* name, double value, const char* unit) {
    std::printf("figure %s %.3f %s\n", name, value, unit);
}

double residentMegabytes() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:")) return line.mid(6).trimmed().split(' ').front().toDouble() / 1024.0;
    }
    return -1;
}

double percentile(std::vector<double> samples, double fraction) {
    if (samples.empty()) return -1;
    std::sort(samples.begin(), samples.end());
    return samples[static_cast<std::size_t>(fraction * static_cast<double>(samples.size() - 1))];
}

// Scrolls the list down one step per frame and keeps the interval between frames.
std::vector<double> scrollFrameIntervals(QQuickView& view, QQuickItem& list) {
    std::vector<double> intervals;
    QElapsedTimer sinceLast;
    QObject::connect(&view, &QQuickWindow::frameSwapped, &list, [&] {
        if (sinceLast.isValid()) intervals.push_back(static_cast<double>(sinceLast.nsecsElapsed()) / 1e6);
        sinceLast.start();
        if (intervals.size() >= kScrollFrames) {
            QCoreApplication::exit(0);
            return;
        }
        list.setProperty("contentY", list.property("contentY").toDouble() + kScrollStep);
    });
    view.update();
    QCoreApplication::exec();
    return intervals;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        std::fputs("kestrum-bench-ui-dashboard: needs an X server (DISPLAY)\n", stderr);
        return 2;
    }
    ui::useOpenGlSceneGraph();
    QGuiApplication application(argc, argv);
    QTemporaryDir profile;
    UserDefaults defaults(profile.filePath(QStringLiteral("defaults.json")));
    SystemClock clock;
    bench::FakePlayerFactory players;
    FakeFileActions files;
    NotificationCenter notifications;
    const std::vector<MatchVideo> matches = bench::madeUpLibrary(kRecordings);
    RecordingLibraryModel library(defaults, std::nullopt, [&matches](const QString&) {
        return bench::readyFuture(Result<std::vector<MatchVideo>>(matches));
    });
    DashboardRecordingLoads loads = bench::instantRecordingLoads(1800);
    DashboardController controller({defaults, clock, players, files, notifications}, library, loads,
                                   QStringLiteral("/recordings"));
    QQmlEngine engine;
    const std::unique_ptr<QQuickView> shown =
        bench::showDashboardView(engine, controller, "kestrum-bench-ui-dashboard");
    if (!shown) return 1;
    QQuickView& view = *shown;
    QElapsedTimer settling;
    settling.start();
    while (controller.sidebar()->cards()->count() < kRecordings && settling.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    auto* list = view.rootObject()->findChild<QQuickItem*>(QStringLiteral("matchCardList"));
    if (!list || controller.sidebar()->cards()->count() < kRecordings) {
        std::fputs("kestrum-bench-ui-dashboard: the library did not show\n", stderr);
        return 1;
    }
    const std::vector<double> intervals = scrollFrameIntervals(view, *list);
    figure("ui_dashboard_scroll_frame_ms", percentile(intervals, 0.5), "ms");
    figure("ui_dashboard_scroll_frame_p95_ms", percentile(intervals, 0.95), "ms");
    figure("ui_dashboard_rss_1000_cards_mb", residentMegabytes(), "MB");
    controller.disappear();
    return 0;
}
