// The review window's sidebar on a library of 1,000 recordings: the card list built again after a filter
// change, every role of the dozen cards a window shows, a move of the selection with the Down key (the
// selection's jobs included), and one frame of a swipe. Prints `figure <name> <value> <unit>` lines,
// medians of repeated runs; asserts nothing.
#include "BenchTiming.h"
#include "MadeUpLibrary.h"
#include "base/async/ManualClock.h"
#include "core/dashboard/DashboardController.h"
#include "platform/fake/FakeFileActions.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

namespace {

using namespace kestrum;
using bench::medianMilliseconds;

constexpr int kRecordings = 1000;
constexpr int kVisibleCards = 12;
constexpr int kRuns = 15;

void printFigure(const char* name, double value, const char* unit) {
    std::printf("figure %s %.3f %s\n", name, value, unit);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QTemporaryDir home;
    UserDefaults defaults(home.filePath(QStringLiteral("defaults.json")));
    ManualClock clock;
    bench::FakePlayerFactory players;
    FakeFileActions files;
    NotificationCenter notifications;
    const std::vector<MatchVideo> matches = bench::madeUpLibrary(kRecordings);
    RecordingLibraryModel model(defaults, std::nullopt, [&](const QString&) {
        return bench::readyFuture(Result<std::vector<MatchVideo>>(matches));
    });
    DashboardRecordingLoads loads = bench::instantRecordingLoads(0);
    DashboardController controller({defaults, clock, players, files, notifications}, model, loads,
                                   QStringLiteral("/recordings"));
    QCoro::waitFor(model.refresh(QStringLiteral("/recordings")));
    const auto settle = [] {
        for (int turn = 0; turn < 4; ++turn) QCoreApplication::processEvents();
    };
    settle();
    MatchCardListModel& cards = *controller.sidebar()->cards();

    bool filtered = false;
    printFigure("dashboard.cards.rebuild_1000",
                medianMilliseconds(kRuns,
                                   [&] {
                                       filtered = !filtered;
                                       model.setSelectedGameModeFilter(
                                           filtered ? std::optional<std::string>("CLASSIC") : std::nullopt);
                                   }),
                "ms");
    model.setSelectedGameModeFilter(std::nullopt);

    const QList<int> roles = cards.roleNames().keys();
    printFigure("dashboard.cards.visible_rows_all_roles",
                medianMilliseconds(kRuns,
                                   [&] {
                                       for (int row = 0; row < kVisibleCards; ++row) {
                                           for (const int role : roles)
                                               (void)cards.data(cards.index(row), role);
                                       }
                                   }) *
                    1000.0,
                "us");

    printFigure("dashboard.sidebar.move_down",
                medianMilliseconds(
                    kRuns, [&] { controller.handleKey(Qt::Key_Down, 0, {}, false, true, true); }, settle) *
                    1000.0,
                "us");

    const int row = cards.rowOf(model.selectedMatch()->url);
    controller.sidebar()->pressCard(row, 200, 20);
    double x = 200;
    printFigure("dashboard.swipe.drag_frame",
                medianMilliseconds(kRuns,
                                   [&] {
                                       x -= 1;
                                       controller.sidebar()->dragCard(row, x, 20);
                                   }) *
                    1000.0,
                "us");
    controller.sidebar()->cancelSwipe(row);
    return 0;
}
