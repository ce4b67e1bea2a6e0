// kestrum-bench-dashboard-selection: the review window's content (DashboardView) with the real mpv
// players, under a private Xvfb and PulseAudio, at 1280x800, on six 10-second 720p30 HEVC recordings
// like the recorder's (a key frame every 2 seconds) whose "GameStart" stands at 4.5 s, so that each
// opens at 3.5 s, in the middle of a key-frame interval. Details are answered at once (a cached detail),
// except in the last case, where a sixth such recording carries a long game's 25 MB session document and
// goes through a real RecordingDetailLoader with empty caches.
//   figure dashboard_select_prepared_first_frame_ms  a selection of the neighbour of a recording that has
//                                                    loaded (its player prepared) until its first frame is
//                                                    swapped onto the screen
//   figure dashboard_select_unprepared_first_frame_ms  the same for a recording with no player yet
//   figure dashboard_select_cold_25mb_first_frame_ms   the same for the 25 MB recording, nothing cached: a
//                                                    new loader on an empty disk cache folder for each
//                                                    run (the file itself is in the system's page cache
//                                                    after the first run, as a recording just saved is)
// Each is the median of several runs. The picture on screen is checked afterwards, untimed: a wrong
// frame is reported on stderr. Asserts nothing.
#include "ClockStripe.h"
#include "DashboardViewSetup.h"
#include "EventLoopWaits.h"
#include "LongGameDocument.h"
#include "MadeUpLibrary.h"
#include "StripeMovies.h"
#include "base/async/Detached.h"
#include "base/async/SystemClock.h"
#include "core/dashboard/DashboardController.h"
#include "core/library/RecordingLibraryModel.h"
#include "core/library/detail/RecordingDetailLoader.h"
#include "core/notifications/NotificationCenter.h"
#include "core/settings/UserDefaults.h"
#include "core/telemetry/RecordingSidecarStore.h"
#include "core/telemetry/SessionDocumentBuilder.h"
#include "media/mpv/MpvVideoPlayerFactory.h"
#include "media/mpv/MpvVideoPlayerItem.h"
#include "platform/fake/FakeFileActions.h"
#include "support/DisplayServers.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <optional>
#include <vector>

namespace {

using namespace kestrum;

// Five recordings with cached details, and the one with the large document, listed last.
constexpr int kRecordings = 6;
constexpr int kLargeRecording = kRecordings - 1;
constexpr std::size_t kLargeDocumentBytes = 25'000'000;
constexpr double kMovieSeconds = 10;
constexpr double kGameStartSeconds = 4.5;
constexpr double kOpensAtSeconds = kGameStartSeconds - 1;
constexpr qint64 kStripeOffsetStepMs = 100'000;  // tells the recordings apart on screen
constexpr int kRuns = 5;
constexpr int kTimeoutMs = 20000;
// Time for a loaded recording's neighbours to be prepared before the next selection.
constexpr int kPreparationMs = 1500;

void figure(const char* name, double value, const char* unit) {
    std::printf("figure %s %.1f %s\n", name, value, unit);
    std::fflush(stdout);
}

bool waitFor(const std::function<bool()>& predicate, int timeoutMs = kTimeoutMs) {
    return bench::waitFor(predicate, timeoutMs);
}

using bench::runEventLoopFor;

double median(std::vector<double> samples) {
    if (samples.empty()) return -1;
    std::sort(samples.begin(), samples.end());
    return samples[samples.size() / 2];
}

RecordingEvent gameStartEvent() {
    RecordingEvent start;
    start.id = 1;
    start.name = "GameStart";
    start.videoTime = kGameStartSeconds;
    return start;
}

// The long game's document, with its "GameStart" where the other recordings have theirs.
bool writeLargeDocument(const QString& moviePath) {
    RecordingSessionData session = bench::longGameDocument(kLargeDocumentBytes);
    const auto later = std::find_if(session.events.begin(), session.events.end(),
                                    [](const RecordingEvent& e) { return e.videoTime > kGameStartSeconds; });
    session.events.insert(later, gameStartEvent());
    return RecordingSidecarStore::shared().writeSessionData(session, sessionDocumentPath(moviePath)).ok();
}

std::vector<MatchVideo> writeRecordings(const QString& folder) {
    std::vector<MatchVideo> matches = bench::madeUpLibrary(kRecordings);
    for (int index = 0; index < kRecordings; ++index) {
        MatchVideo& match = matches[static_cast<std::size_t>(index)];
        match.url = folder + QStringLiteral("/game-%1.mov").arg(index);
        if (!test::writeStripeMovie(match.url, kMovieSeconds, index * kStripeOffsetStepMs)) return {};
    }
    if (!writeLargeDocument(matches[kLargeRecording].url)) return {};
    return matches;
}

// The loads of the window: details answered at once, as from the loader's memory; while a cold loader is
// set, the large recording goes through it instead (its detail read and its thumbnail made from scratch).
class BenchLoads {
  public:
    explicit BenchLoads(QString largeMoviePath) : largeMoviePath_(std::move(largeMoviePath)) {}

    void setColdLoader(RecordingDetailLoader* loader) { coldLoader_ = loader; }

    DashboardRecordingLoads loads() {
        return {[this](const MatchVideo& match) {
                    if (RecordingDetailLoader* cold = coldLoaderFor(match)) return cold->detail(match);
                    auto detail = std::make_shared<RecordingDetail>();
                    detail->duration = kMovieSeconds;
                    detail->events.push_back(gameStartEvent());
                    return bench::readyFuture(std::shared_ptr<const RecordingDetail>(std::move(detail)));
                },
                [this](const MatchVideo& match) {
                    if (RecordingDetailLoader* cold = coldLoaderFor(match))
                        return cold->thumbnail(match, std::nullopt);
                    return bench::readyFuture(std::optional<QImage>());
                }};
    }

  private:
    RecordingDetailLoader* coldLoaderFor(const MatchVideo& match) const {
        return match.url == largeMoviePath_ ? coldLoader_ : nullptr;
    }

    const QString largeMoviePath_;
    RecordingDetailLoader* coldLoader_ = nullptr;
};

class Stage {
  public:
    Stage(QQuickView& view, DashboardController& controller, RecordingLibraryModel& library)
        : view_(view), controller_(controller), library_(library) {
        QObject::connect(&view_, &QQuickWindow::frameSwapped, [this] { ++swaps_; });
        item_ = view_.rootObject()->findChild<MpvVideoPlayerItem*>(QStringLiteral("videoPlayerLayer"));
    }

    bool isReady() const { return item_ != nullptr; }

    // Selects `match` as a click would and waits for its first picture on screen; the milliseconds, or -1.
    double select(const MatchVideo& match, qint64 stripeOffsetMs) {
        QElapsedTimer since;
        since.start();
        library_.setSelectedMatches({match});
        library_.setSelectedMatch(match);
        const auto shows = [&] {
            const QObject* player = controller_.playback()->playerObject();
            return player && item_->player() == player &&
                   controller_.movieState() == DashboardMovieState::ready;
        };
        const std::uint64_t picturesBefore = item_->picturesShown();
        if (!waitFor([&] { return shows() && item_->picturesShown() > picturesBefore; })) {
            std::fprintf(
                stderr, "kestrum-bench-dashboard-selection: no picture of %s within %d ms (%s, %llu shown)\n",
                qPrintable(match.url), kTimeoutMs, qPrintable(controller_.movieStateName()),
                static_cast<unsigned long long>(item_->picturesShown()));
            return -1;
        }
        const int swapsAtPicture = swaps_;
        if (!waitFor([&] { return swaps_ > swapsAtPicture; })) return -1;
        const double milliseconds = static_cast<double>(since.nsecsElapsed()) / 1e6;
        const std::optional<qint64> shown = decodeClockStripe(view_.grabWindow().copy(playerRect()));
        if (shown != test::stripeMsOfFrameAt(kOpensAtSeconds, stripeOffsetMs)) {
            std::fprintf(stderr, "kestrum-bench-dashboard-selection: the screen shows %lld ms, not %lld\n",
                         static_cast<long long>(shown.value_or(-1)),
                         static_cast<long long>(test::stripeMsOfFrameAt(kOpensAtSeconds, stripeOffsetMs)));
        }
        return milliseconds;
    }

  private:
    QRect playerRect() const {
        const QPointF origin = item_->mapToScene(QPointF(0, 0));
        const qreal ratio = view_.devicePixelRatio();
        return QRectF(origin * ratio, QSizeF(item_->width(), item_->height()) * ratio).toAlignedRect();
    }

    QQuickView& view_;
    DashboardController& controller_;
    RecordingLibraryModel& library_;
    MpvVideoPlayerItem* item_ = nullptr;
    int swaps_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    test::XvfbServer display;
    test::PulseAudioServer sound;
    if (!display.start(1920, 1080) || !sound.start()) {
        std::fprintf(stderr, "kestrum-bench-dashboard-selection: needs Xvfb and PulseAudio: %s%s\n",
                     qPrintable(display.failure()), qPrintable(sound.failure()));
        return 1;
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    ui::useOpenGlSceneGraph();
    QGuiApplication application(argc, argv);
    QTemporaryDir folder;
    const std::vector<MatchVideo> matches = writeRecordings(folder.path());
    if (matches.empty()) {
        std::fputs("kestrum-bench-dashboard-selection: could not write the movies (no HEVC encoder?)\n",
                   stderr);
        return 1;
    }
    UserDefaults defaults(folder.filePath(QStringLiteral("defaults.json")));
    SystemClock clock;
    MpvVideoPlayerFactory players;
    FakeFileActions files;
    NotificationCenter notifications;
    RecordingLibraryModel library(defaults, std::nullopt, [&matches](const QString&) {
        return bench::readyFuture(Result<std::vector<MatchVideo>>(matches));
    });
    BenchLoads loads(matches[kLargeRecording].url);
    DashboardController controller({defaults, clock, players, files, notifications}, library, loads.loads(),
                                   folder.path());
    QQmlEngine engine;
    const std::unique_ptr<QQuickView> shown =
        bench::showDashboardView(engine, controller, "kestrum-bench-dashboard-selection");
    if (!shown) return 1;
    QQuickView& view = *shown;
    if (!waitFor([&] { return controller.sidebar()->cards()->count() == kRecordings; })) {
        std::fputs("kestrum-bench-dashboard-selection: the library did not show\n", stderr);
        return 1;
    }
    Stage stage(view, controller, library);
    if (!stage.isReady()) {
        std::fputs("kestrum-bench-dashboard-selection: no mpv player item in the view\n", stderr);
        return 1;
    }
    // The list shows the newest first: rows 0 and 1 are neighbours; row 4 is nobody's neighbour of 1.
    const std::vector<MatchVideo> displayed = library.visibleMatches();
    const auto offsetOf = [&](const MatchVideo& match) {
        const auto written = std::find_if(matches.begin(), matches.end(),
                                          [&](const MatchVideo& m) { return m.url == match.url; });
        return static_cast<qint64>(written - matches.begin()) * kStripeOffsetStepMs;
    };
    // The library selects the newest at its first list: start each run from another selection.
    if (library.selectedMatch() == displayed[0] && stage.select(displayed[2], offsetOf(displayed[2])) < 0)
        return 1;
    std::vector<double> prepared;
    std::vector<double> unprepared;
    for (int run = 0; run < kRuns; ++run) {
        if (stage.select(displayed[0], offsetOf(displayed[0])) < 0) return 1;
        runEventLoopFor(kPreparationMs);
        prepared.push_back(stage.select(displayed[1], offsetOf(displayed[1])));
        runEventLoopFor(kPreparationMs);
        unprepared.push_back(stage.select(displayed[4], offsetOf(displayed[4])));
        runEventLoopFor(kPreparationMs);
    }
    // The large recording is listed last, nobody's neighbour of row 0; a new loader with an empty disk
    // cache for each run, and the cache files it writes afterwards finished before the next run.
    const MatchVideo& large = displayed.back();
    std::vector<double> cold;
    if (stage.select(displayed[0], offsetOf(displayed[0])) < 0) return 1;
    for (int run = 0; run < kRuns; ++run) {
        runEventLoopFor(kPreparationMs);
        RecordingDetailLoader loader(folder.filePath(QStringLiteral("detail-cache-%1").arg(run)));
        loads.setColdLoader(&loader);
        cold.push_back(stage.select(large, offsetOf(large)));
        runEventLoopFor(kPreparationMs);
        if (stage.select(displayed[0], offsetOf(displayed[0])) < 0) return 1;
        loads.setColdLoader(nullptr);
        utilityPool().waitForDone();
    }
    figure("dashboard_select_prepared_first_frame_ms", median(prepared), "ms");
    figure("dashboard_select_unprepared_first_frame_ms", median(unprepared), "ms");
    figure("dashboard_select_cold_25mb_first_frame_ms", median(cold), "ms");
    controller.disappear();
    return 0;
}
