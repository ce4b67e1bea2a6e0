// kestrum-bench-ui-review: drawing the timeline's track of the synthetic long game, every event on it (all
// actor filters on, some 600 markers), 1,400 points wide, into an image, as the track's painted item does
// for each frame of a moving playhead:
//   figure ui_review_track_paint_first_ms   the first paint, drawing every marker's sprite (cold)
//   figure ui_review_track_paint_ms         a paint with the sprites drawn (what every later frame costs)
//   figure ui_review_track_paint_2x_ms      the same on a screen of device pixel ratio 2
// Medians of repeated runs; asserts nothing.
#include "BenchTiming.h"
#include "SyntheticGame.h"
#include "SyntheticRecordingDetail.h"
#include "base/async/ManualClock.h"
#include "core/review/GameTimelineModel.h"
#include "ui/review/TimelineTrackPainter.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

using namespace kestrum;

constexpr double kTrackWidth = 1400;
constexpr int kRuns = 60;

void figure(const char* name, double value, const char* unit) {
    std::printf("figure %s %.3f %s\n", name, value, unit);
}

// One paint of `scene` into a cleared image of the track's size at the scene's ratio.
void paintOnce(ui::TimelineTrackPainter& painter, const ui::TimelineTrackScene& scene, QImage& target) {
    target.fill(Qt::transparent);
    QPainter onto(&target);
    painter.paint(onto, scene);
}

QImage targetFor(const ui::TimelineTrackScene& scene) {
    QImage image(static_cast<int>(scene.size.width() * scene.devicePixelRatio),
                 static_cast<int>(scene.size.height() * scene.devicePixelRatio),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scene.devicePixelRatio);
    return image;
}

}  // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QGuiApplication application(argc, argv);
    QTemporaryDir profile;
    UserDefaults defaults(profile.filePath(QStringLiteral("defaults.json")));
    ManualClock clock;
    GameTimelineModel timeline(defaults, clock);
    timeline.setRecording(synthetic::recordingDetailOf(synthetic::makeSyntheticGame()));
    timeline.toggleFilter(4);  // "Blue Team"
    timeline.toggleFilter(5);  // "Red Team"

    ui::TimelineTrackScene scene;
    scene.size = QSizeF(kTrackWidth, timeline.timelineControlHeight());
    scene.markers = timeline.markers(kTrackWidth);
    scene.progress = 0.4;
    scene.hoveredEventID = scene.markers[scene.markers.size() / 2].eventID;
    std::fprintf(stderr, "track of %zu markers, %.0f points wide\n", scene.markers.size(), kTrackWidth);

    QImage target = targetFor(scene);
    ui::TimelineTrackPainter cold;
    figure("ui_review_track_paint_first_ms",
           bench::medianMilliseconds(1, [&] { paintOnce(cold, scene, target); }), "ms");
    figure("ui_review_track_paint_ms",
           bench::medianMilliseconds(kRuns, [&] { paintOnce(cold, scene, target); }), "ms");
    std::fprintf(stderr, "%d sprites for the whole track\n", cold.sprites().count());

    scene.devicePixelRatio = 2;
    QImage sharp = targetFor(scene);
    ui::TimelineTrackPainter retina;
    paintOnce(retina, scene, sharp);
    figure("ui_review_track_paint_2x_ms",
           bench::medianMilliseconds(kRuns, [&] { paintOnce(retina, scene, sharp); }), "ms");
    return 0;
}
