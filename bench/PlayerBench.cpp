// kestrum-bench-player: the review window's player on a 720p30 HEVC movie like the recorder's (key frames
// 2 seconds apart), under a private Xvfb and PulseAudio, with the player's item in a window.
//   figure player_prepared_first_frame_ms  a prepared player (loaded, paused, not shown) given to the item
//                                          and sought exactly to 9.0 s, mid key-frame interval, until that
//                                          frame is on screen: what selecting a neighbour costs
//   figure player_open_first_frame_ms      the same from nothing: the player made, the movie opened
//   figure player_rss_baseline_mb          resident memory with the window shown and no player
//   figure player_rss_3_prepared_1_playing_mb  resident memory with three prepared players and one playing
// Each time is the median of several runs, fresh players each time.
#include "ClockStripe.h"
#include "EventLoopWaits.h"
#include "StripeMovies.h"
#include "media/mpv/MpvVideoPlayerFactory.h"
#include "media/mpv/MpvVideoPlayerItem.h"
#include "support/DisplayServers.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace {

using namespace kestrum;

constexpr double kMovieSeconds = 20;
constexpr double kGameStartSeconds = 9.0;  // a second before a game start in the middle of an interval
constexpr int kRuns = 7;
constexpr int kTimeoutMs = 20000;

void figure(const char* name, double value, const char* unit) {
    std::printf("figure %s %.1f %s\n", name, value, unit);
    std::fflush(stdout);
}

bool waitFor(const std::function<bool()>& predicate, int timeoutMs = kTimeoutMs) {
    return bench::waitFor(predicate, timeoutMs);
}

using bench::runEventLoopFor;

double residentMegabytes() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:")) return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    }
    return 0;
}

// Loaded and positioned at its start, as a prepared player stands before it is selected.
bool settle(MpvVideoPlayer& player) {
    std::optional<bool> finished;
    player.seek(0, VideoSeekTolerance::exact(), [&](bool done) { finished = done; });
    return waitFor([&] { return finished.has_value(); }) && *finished;
}

class Stage {
  public:
    Stage() {
        item_ = new MpvVideoPlayerItem(window_.contentItem());
        item_->setSize(QSizeF(1280, 720));
        window_.resize(1280, 720);
        window_.show();
        QObject::connect(&window_, &QQuickWindow::frameSwapped, [this] { ++swaps_; });
        waitFor([this] { return swaps_ > 0; });
    }

    // Shows `player` sought to the game start; the milliseconds until that frame has been swapped onto
    // the screen, or -1. The stripe on screen is checked afterwards, untimed.
    double showAtGameStart(MpvVideoPlayer& player, const QElapsedTimer& since) {
        std::optional<bool> finished;
        item_->setPlayer(&player);
        player.seek(kGameStartSeconds, VideoSeekTolerance::exact(), [&](bool done) { finished = done; });
        if (!waitFor([&] { return finished.has_value() && player.isReadyForDisplay(); })) return -1;
        const int swapsAtLanding = swaps_;
        window_.update();
        if (!waitFor([&] { return swaps_ > swapsAtLanding; })) return -1;
        const double milliseconds = since.nsecsElapsed() / 1e6;
        const std::optional<qint64> shown = decodeClockStripe(window_.grabWindow());
        if (shown != test::stripeMsOfFrameAt(kGameStartSeconds)) {
            std::fprintf(stderr, "kestrum-bench-player: the screen shows %lld ms, not the game start\n",
                         static_cast<long long>(shown.value_or(-1)));
        }
        return milliseconds;
    }

    void clear() { item_->setPlayer(nullptr); }

  private:
    QQuickWindow window_;
    MpvVideoPlayerItem* item_ = nullptr;
    int swaps_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    test::XvfbServer display;
    test::PulseAudioServer sound;
    if (!display.start(1920, 1080) || !sound.start()) {
        std::fprintf(stderr, "kestrum-bench-player: needs Xvfb and PulseAudio: %s%s\n",
                     qPrintable(display.failure()), qPrintable(sound.failure()));
        return 1;
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication application(argc, argv);
    QTemporaryDir folder;
    const QString movie = folder.path() + QStringLiteral("/game.mov");
    if (!test::writeStripeMovie(movie, kMovieSeconds, 0)) {
        std::fprintf(stderr, "kestrum-bench-player: could not write the movie (no HEVC encoder?)\n");
        return 1;
    }
    MpvVideoPlayerFactory factory;
    Stage stage;
    const double baselineMb = residentMegabytes();

    std::vector<double> prepared;
    std::vector<double> opened;
    for (int run = 0; run < kRuns; ++run) {
        {
            const std::unique_ptr<MpvVideoPlayer> player = factory.makeMpvPlayer(movie);
            if (!settle(*player)) return 1;
            runEventLoopFor(200);
            QElapsedTimer since;
            since.start();
            prepared.push_back(stage.showAtGameStart(*player, since));
            stage.clear();
        }
        runEventLoopFor(200);
        {
            QElapsedTimer since;
            since.start();
            const std::unique_ptr<MpvVideoPlayer> player = factory.makeMpvPlayer(movie);
            opened.push_back(stage.showAtGameStart(*player, since));
            stage.clear();
        }
        runEventLoopFor(200);
    }
    std::sort(prepared.begin(), prepared.end());
    std::sort(opened.begin(), opened.end());
    figure("player_prepared_first_frame_ms", prepared[prepared.size() / 2], "ms");
    figure("player_open_first_frame_ms", opened[opened.size() / 2], "ms");

    std::vector<std::unique_ptr<MpvVideoPlayer>> neighbours;
    for (int index = 0; index < 3; ++index) {
        neighbours.push_back(factory.makeMpvPlayer(movie));
        if (!settle(*neighbours.back())) return 1;
    }
    const std::unique_ptr<MpvVideoPlayer> playing = factory.makeMpvPlayer(movie);
    QElapsedTimer since;
    since.start();
    stage.showAtGameStart(*playing, since);
    playing->play();
    runEventLoopFor(3000);
    figure("player_rss_baseline_mb", baselineMb, "MB");
    figure("player_rss_3_prepared_1_playing_mb", residentMegabytes(), "MB");
    stage.clear();
    return 0;
}
