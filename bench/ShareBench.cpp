// League Share's core costs on fakes: a frame's way through the sample path to three display surfaces,
// and one refresh of the monitoring loop among 300 windows. The window's own drawing and the window
// stream's reads are not in these figures. Prints `figure <name> <value> <unit>` lines.
#include "BenchTiming.h"
#include "base/async/ManualClock.h"
#include "core/recording/RecordingBundleIdentifiers.h"
#include "core/share/LeagueShareCoordinator.h"
#include "platform/fake/FakeLeagueShareAudioRoute.h"
#include "platform/fake/FakeScreenCaptureAccess.h"
#include "platform/fake/FakeShareableContent.h"
#include "platform/fake/FakeWindowStream.h"
#include "platform/fake/FakeWorkspace.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

using namespace kestrum;

// Counts what it is given and keeps nothing, as a surface that only schedules a repaint would.
class CountingSurface final : public LeagueShareDisplaySurface {
  public:
    void enqueueFrame(std::shared_ptr<const PixelBuffer>) override { frames.fetch_add(1); }
    void flush(bool) override {}
    std::atomic<int> frames{0};
};

ShareableWindow window(std::uint32_t id, const QString& bundleIdentifier, QSizeF size) {
    ShareableWindow result;
    result.windowID = id;
    result.frame = QRectF(QPointF(0, 0), size);
    result.isOnScreen = true;
    result.owningApplication = ShareableApplication{static_cast<qint32>(id), bundleIdentifier, {}};
    return result;
}

struct Bench {
    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(QStringLiteral("defaults.json"))};
    ManualClock clock;
    FakeScreenCaptureAccess access{true};
    FakeShareableContent content;
    FakeWindowStreamFactory streams;
    FakeWorkspace workspace;
    FakeLeagueShareAudioRoute audioRoute;
    LeagueShareCoordinator coordinator{LeagueShareEnvironment{access, content, streams, workspace, audioRoute,
                                                              LeagueShareSettings(defaults), clock}};
};

double microsecondsPerSharedFrame(Bench& bench, int frames) {
    CountingSurface surfaces[3];
    for (CountingSurface& surface : surfaces) bench.coordinator.addDisplaySurface(surface);
    FakeWindowStream* stream = bench.streams.lastStream();
    const WindowStreamConfiguration configuration = stream->configuration();
    const std::shared_ptr<const PixelBuffer> picture = PixelBuffer::make(
        configuration.width, configuration.height, configuration.width * 4,
        std::vector<std::uint8_t>(static_cast<std::size_t>(configuration.width) * configuration.height * 4));
    const double milliseconds = bench::medianMilliseconds(5, [&] {
        for (int frame = 0; frame < frames; ++frame) {
            CaptureSample sample;
            sample.presentationTimeNs = frame;
            sample.imageBuffer = picture;
            stream->core.deliver(std::move(sample), CaptureOutputType::screen);
        }
        bench.coordinator.outputQueue().sync([] {});
    });
    for (CountingSurface& surface : surfaces) bench.coordinator.removeDisplaySurface(surface);
    return milliseconds * 1000.0 / frames;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    Bench bench;
    ShareableContentSnapshot snapshot;
    for (std::uint32_t id = 1; id <= 298; ++id) {
        snapshot.windows.push_back(window(id, QStringLiteral("org.example.App"), QSizeF(800, 600)));
    }
    snapshot.windows.push_back(window(900, RecordingBundleIdentifiers::leagueClientUx, QSizeF(1280, 720)));
    snapshot.windows.push_back(window(901, RecordingBundleIdentifiers::gameClient, QSizeF(1920, 1080)));
    bench.content.setContent(snapshot);
    LeagueShareSettings(bench.defaults).setResolution(LeagueShareResolution::p1080);
    bench.coordinator.start();
    if (bench.streams.lastStream() == nullptr) {
        std::fprintf(stderr, "the share did not start\n");
        return 1;
    }
    // One 1080p BGRA picture delivered again and again: the figure is the path's, not the pixels'.
    std::printf("figure share_frame_path_1080p_3_surfaces %.1f us_per_frame\n",
                microsecondsPerSharedFrame(bench, 60));
    const double refreshMs =
        bench::medianMilliseconds(21, [&] { bench.clock.advance(std::chrono::seconds(1)); });
    std::printf("figure share_refresh_300_windows %.3f ms\n", refreshMs);
    QCoro::waitFor(bench.coordinator.stopSharing());
    return 0;
}
