// The per-frame cost of the capturer's video path on writeQueue (the sample routing, the timeline test,
// the append), with encoding left out: the writer's inputs take every frame and drop it. Prints
// `figure <name> <value> <unit>` lines.
#include "../tests/unit/core/capture/CapturerRig.h"
#include "../tests/unit/core/capture/ScriptedMovieWriter.h"

#include <QGuiApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

using namespace kestrum;

// Delivers one shared picture `frames` times with growing times, so that the figure holds no pixel work.
std::shared_ptr<const PixelBuffer> blankPicture(int width, int height) {
    return PixelBuffer::make(width, height, width * 4,
                             std::vector<std::uint8_t>(static_cast<std::size_t>(width) * height * 4));
}

void deliverFrames(FakeCaptureStreamCore& stream, int frames,
                   const std::shared_ptr<const PixelBuffer>& picture) {
    HostTimeNs timeNs = hostTimeNow();
    for (int i = 0; i < frames; ++i) {
        CaptureSample sample;
        sample.presentationTimeNs = timeNs += 16'666'667;
        sample.imageBuffer = picture;
        stream.deliver(std::move(sample), CaptureOutputType::screen);
    }
}

double microsecondsPerFrame(test::CapturerRig& rig, int frames, int width, int height) {
    const auto picture = blankPicture(width, height);
    const auto started = std::chrono::steady_clock::now();
    deliverFrames(rig.stream()->core, frames, picture);
    rig.drainWriteQueue();
    const auto elapsed = std::chrono::steady_clock::now() - started;
    return std::chrono::duration<double, std::micro>(elapsed).count() / frames;
}

// The same deliveries without the capturer: what the fake stream and the queue hop cost by themselves.
double microsecondsPerDeliveryAlone(int frames, int width, int height) {
    SerialQueue queue(QStringLiteral("bench.queue"));
    struct Sink final : CaptureStreamOutput {
        void didOutputSample(CaptureSample&, CaptureOutputType) override {}
    } sink;
    FakeWindowStream stream({}, WindowStreamConfiguration{width, height, 60, true});
    (void)stream.addStreamOutput(sink, CaptureOutputType::screen, queue);
    (void)stream.core.start();
    const auto picture = blankPicture(width, height);
    const auto started = std::chrono::steady_clock::now();
    deliverFrames(stream.core, frames, picture);
    queue.sync([] {});
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - started).count() /
           frames;
}

}  // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QGuiApplication application(argc, argv);
    constexpr int kFrames = 600;
    for (const auto& [width, height] : std::vector<std::pair<int, int>>{{1280, 720}, {1920, 1080}}) {
        test::ScriptedMovieWriterFactory writers;
        test::CapturerRig rig(writers, Clock::system());
        rig.setGameWindowSize(width, height);
        rig.defaults.setString(QStringLiteral("native"), QStringLiteral("recordingVideoResolution"));
        auto job = rig.start();
        rig.stream()->deliverFrame(hostTimeNow());
        rig.awaitStart(job);
        std::vector<double> withCapturer;
        std::vector<double> alone;
        for (int run = 0; run < 5; ++run) {
            withCapturer.push_back(microsecondsPerFrame(rig, kFrames, width, height));
            alone.push_back(microsecondsPerDeliveryAlone(kFrames, width, height));
        }
        std::sort(withCapturer.begin(), withCapturer.end());
        std::sort(alone.begin(), alone.end());
        const QByteArray size = QByteArray::number(height) + "p";
        std::printf("figure handle_screen_sample_%s_with_delivery %.2f us\n", size.constData(),
                    withCapturer[2]);
        std::printf("figure fake_delivery_alone_%s %.2f us\n", size.constData(), alone[2]);
        std::printf("figure handle_screen_sample_%s %.2f us\n", size.constData(),
                    std::max(0.0, withCapturer[2] - alone[2]));
        rig.finish();
    }
    return 0;
}
