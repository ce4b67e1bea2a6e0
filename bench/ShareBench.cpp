// League Share's core costs on fakes: a frame's way through the sample path to three display surfaces,
// and one refresh of the monitoring loop among 300 windows. The window's own drawing and the window
// stream's reads are not in these figures. Prints `figure <name> <value> <unit>` lines.
#include "../tests/unit/core/share/ShareRig.h"
#include "BenchTiming.h"

#include <QCoreApplication>

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

double microsecondsPerSharedFrame(test::ShareRig& rig, int frames) {
    CountingSurface surfaces[3];
    for (CountingSurface& surface : surfaces) rig.coordinator->addDisplaySurface(surface);
    FakeWindowStream* stream = rig.streams.lastStream();
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
        rig.coordinator->outputQueue().sync([] {});
    });
    for (CountingSurface& surface : surfaces) rig.coordinator->removeDisplaySurface(surface);
    return milliseconds * 1000.0 / frames;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    test::ShareRig rig;
    ShareableContentSnapshot snapshot;
    for (std::uint32_t id = 1; id <= 298; ++id) {
        snapshot.windows.push_back(test::leagueWindow(id, static_cast<qint32>(id),
                                                      QStringLiteral("org.example.App"), QSizeF(800, 600)));
    }
    snapshot.windows.push_back(test::clientWindow());
    snapshot.windows.push_back(test::gameWindow());
    rig.content.setContent(snapshot);
    rig.settings->setResolution(LeagueShareResolution::p1080);
    rig.coordinator->start();
    if (rig.streams.lastStream() == nullptr) {
        std::fprintf(stderr, "the share did not start\n");
        return 1;
    }
    // One 1080p BGRA picture delivered again and again: the figure is the path's, not the pixels'.
    std::printf("figure share_frame_path_1080p_3_surfaces %.1f us_per_frame\n",
                microsecondsPerSharedFrame(rig, 60));
    const double refreshMs =
        bench::medianMilliseconds(21, [&] { rig.clock.advance(std::chrono::seconds(1)); });
    std::printf("figure share_refresh_300_windows %.3f ms\n", refreshMs);
    QCoro::waitFor(rig.coordinator->stopSharing());
    return 0;
}
