// The review panels on the synthetic long game: one hit search of the timeline over its ~600 markers (the
// search alone, and the timeline object's whole hover with its card), and both panels recomputed for a new
// current time with 3,600 snapshots of ten players (seeks anywhere in the game, which change the snapshot
// every time, and the 20 Hz steps of playback). Prints `figure <name> <value> <unit>` lines, medians of
// repeated runs; asserts nothing.
#include "BenchTiming.h"
#include "SyntheticGame.h"
#include "SyntheticRecordingDetail.h"
#include "base/async/ManualClock.h"
#include "core/review/GameTimelineModel.h"
#include "core/review/RecordingScoreboardModel.h"
#include "core/review/TimelineMarkerLayout.h"
#include "platform/fake/FakeFileActions.h"
#include "platform/fake/FakeVideoPlayer.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <memory>
#include <numeric>
#include <optional>

namespace {

using namespace kestrum;
using bench::medianMilliseconds;

constexpr double kTrackWidth = 1600;
constexpr int kRuns = 15;
constexpr int kSearchesPerRun = 10'000;
constexpr int kUpdatesPerRun = 2'000;

void printFigure(const char* name, double value, const char* unit) {
    std::printf("figure %s %.3f %s\n", name, value, unit);
}

// Pointer positions swept along the track and the three rows, the same in every run.
double sweepX(int search) {
    return (search * 7919) % static_cast<int>(kTrackWidth);
}
double sweepY(int search) {
    return 14 + (search % 5) * 9;
}

void benchmarkHitSearch(const RecordingDetail& detail) {
    // Every event gets a marker here, whatever the filters, so that the search runs over all ~600.
    std::vector<std::size_t> all(detail.events.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    const std::vector<TimelineMarker> markers =
        layoutTimelineMarkers(detail.events, all, kTrackWidth, detail.duration);
    std::size_t hits = 0;
    const double runMs = medianMilliseconds(kRuns, [&] {
        for (int search = 0; search < kSearchesPerRun; ++search) {
            hits += hitTimelineMarker(markers, sweepX(search), sweepY(search)).has_value() ? 1 : 0;
        }
    });
    std::fprintf(stderr, "hit search over %zu markers (%zu hits)\n", markers.size(), hits);
    printFigure("timeline-hit-search", runMs * 1000 / kSearchesPerRun, "us");
}

void benchmarkTimelineHover(const std::shared_ptr<const RecordingDetail>& detail, UserDefaults& defaults,
                            Clock& clock) {
    GameTimelineModel timeline(defaults, clock);
    timeline.setRecording(detail);
    timeline.toggleFilter(4);  // "Blue Team"
    timeline.toggleFilter(5);  // "Red Team"
    timeline.markers(kTrackWidth);
    const double runMs = medianMilliseconds(kRuns, [&] {
        for (int search = 0; search < kSearchesPerRun; ++search)
            timeline.hover(sweepX(search), sweepY(search), kTrackWidth);
    });
    printFigure("timeline-hover", runMs * 1000 / kSearchesPerRun, "us");
}

void benchmarkPanels(UserDefaults& defaults, Clock& clock) {
    synthetic::SyntheticGameOptions options;
    options.gameSeconds = 3599;  // 3,600 snapshots, one a second
    const synthetic::SyntheticGame game = synthetic::makeSyntheticGame(options);
    const std::shared_ptr<const RecordingDetail> detail = synthetic::recordingDetailOf(game);
    std::fprintf(stderr, "panels over %zu snapshots and %zu events\n", detail->scoreboard.size(),
                 detail->events.size());

    FakeFileActions fileActions;
    FakeVideoPlayer player(QStringLiteral("/synthetic/game.mov"), detail->duration);
    GameTimelineModel timeline(defaults, clock);
    RecordingScoreboardModel scoreboard(fileActions, clock);
    timeline.setPlayer(&player);
    timeline.setRecording(detail);
    scoreboard.setRecording(detail);
    scoreboard.setLocalPlayer({game.localChampionIdentifier, game.localPosition});
    const auto update = [&](double time) {
        timeline.setCurrentTime(time);
        scoreboard.setCurrentTime(time);
    };

    int seek = 0;
    const double seeksMs = medianMilliseconds(kRuns, [&] {
        for (int step = 0; step < kUpdatesPerRun; ++step, ++seek) {
            update(std::fmod(seek * 977.31, detail->duration));  // a new snapshot every time
        }
    });
    printFigure("panels-update-seek-3600-snapshots", seeksMs / kUpdatesPerRun, "ms");

    double playhead = 60;
    const double playbackMs = medianMilliseconds(kRuns, [&] {
        for (int step = 0; step < kUpdatesPerRun; ++step) {
            playhead = playhead + 0.05 < detail->duration ? playhead + 0.05 : 60;
            update(playhead);
        }
    });
    printFigure("panels-update-playback-3600-snapshots", playbackMs / kUpdatesPerRun, "ms");
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QTemporaryDir profile;
    UserDefaults defaults(profile.filePath(QStringLiteral("defaults.json")));
    ManualClock clock;
    const std::shared_ptr<const RecordingDetail> detail =
        synthetic::recordingDetailOf(synthetic::makeSyntheticGame());
    benchmarkHitSearch(*detail);
    benchmarkTimelineHover(detail, defaults, clock);
    benchmarkPanels(defaults, clock);
    return 0;
}
