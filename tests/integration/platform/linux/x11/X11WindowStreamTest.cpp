// The X11 window stream against a real X server (Xvfb): windows of the test's own, drawn in known
// colours, read back through the samples the stream delivers on a SerialQueue.
#include "StreamTestWindow.h"
#include "platform/linux/x11/X11WindowStream.h"
#include "platform/linux/x11/X11WindowStreamFactory.h"
#include "support/DisplayServers.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoroTask>
#include <QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <mutex>

namespace kestrum::test {
namespace {

constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::uint32_t kBlue = 0x0000FF;
constexpr std::uint32_t kGreen = 0x00FF00;
// BGRA bytes of an opaque pixel, as a little-endian word.
constexpr std::uint32_t kRedBgra = 0xFFFF0000;
constexpr std::uint32_t kBlueBgra = 0xFF0000FF;
constexpr std::uint32_t kGreenBgra = 0xFF00FF00;

struct RecordedSample {
    HostTimeNs timeNs = 0;       // the sample's stamp
    HostTimeNs deliveredNs = 0;  // when the recorder received it
    CaptureFrameStatus status = CaptureFrameStatus::complete;
    std::shared_ptr<const PixelBuffer> image;
    bool onQueue = false;  // delivered on the queue it was registered with, as a screen sample
};

// Keeps every sample the stream delivers; read from the test's main thread.
class SampleRecorder final : public CaptureStreamOutput {
  public:
    explicit SampleRecorder(SerialQueue& queue) : queue_(queue) {}
    void didOutputSample(CaptureSample& sample, CaptureOutputType type) override {
        const std::lock_guard lock(mutex_);
        samples_.push_back({sample.presentationTimeNs, hostTimeNow(), sample.frameStatus, sample.imageBuffer,
                            queue_.isCurrent() && type == CaptureOutputType::screen});
    }
    std::vector<RecordedSample> samples() const {
        const std::lock_guard lock(mutex_);
        return samples_;
    }
    // The samples delivered at or after `sinceNs`. By delivery, not by stamp: a read that ran late carries
    // the earlier stamp of its deadline, yet shows the window as it stood when read.
    std::vector<RecordedSample> samplesSince(HostTimeNs sinceNs) const {
        std::vector<RecordedSample> later = samples();
        std::erase_if(later, [&](const RecordedSample& sample) { return sample.deliveredNs < sinceNs; });
        return later;
    }
    // Waits until a sample delivered at or after `sinceNs` satisfies `condition`; the first such sample, or
    // none.
    template <class Condition>
    std::optional<RecordedSample> waitForSample(HostTimeNs sinceNs, Condition condition,
                                                int timeoutMs = 3000) {
        std::optional<RecordedSample> found;
        waitUntil(
            [&] {
                const std::vector<RecordedSample> later = samplesSince(sinceNs);
                const auto first = std::find_if(later.begin(), later.end(), condition);
                if (first != later.end()) found = *first;
                return found.has_value();
            },
            timeoutMs);
        return found;
    }

  private:
    SerialQueue& queue_;
    mutable std::mutex mutex_;
    std::vector<RecordedSample> samples_;
};

std::uint32_t pixelAt(const PixelBuffer& image, int x, int y) {
    const std::uint8_t* pixel = image.data() + static_cast<std::size_t>(y) * image.bytesPerRow() + x * 4;
    return static_cast<std::uint32_t>(pixel[0]) | static_cast<std::uint32_t>(pixel[1]) << 8 |
           static_cast<std::uint32_t>(pixel[2]) << 16 | static_cast<std::uint32_t>(pixel[3]) << 24;
}

// A picture of the configured size whose left quarter is `leftBgra` and right quarter `rightBgra`
// (the middle is blended by the scaling).
bool showsHalves(const RecordedSample& sample, int width, int height, std::uint32_t leftBgra,
                 std::uint32_t rightBgra) {
    if (!sample.image || sample.image->width() != width || sample.image->height() != height) return false;
    return pixelAt(*sample.image, width / 4, height / 2) == leftBgra &&
           pixelAt(*sample.image, 3 * width / 4, height / 2) == rightBgra;
}

bool isPicture(const RecordedSample& sample) {
    return sample.image != nullptr;
}

// A window of the test's own, red on its left half and blue on its right, and one stream of it with its
// queue and recorder, on the display of the suite.
struct StreamRig {
    StreamRig(int windowWidth, int windowHeight, WindowStreamConfiguration configuration)
        : window(windowWidth, windowHeight),
          stream(ShareableWindow{window.id(), QStringLiteral("Game"), {}, true, std::nullopt},
                 configuration) {
        window.fillHalves(kRed, kBlue);
        EXPECT_TRUE(stream.addStreamOutput(recorder, CaptureOutputType::screen, queue).ok());
    }
    // The recorder must outlive what the queue still holds for it, also when a test ends early.
    ~StreamRig() {
        (void)stop();
        queue.sync([] {});
    }
    // True once the stream started and delivered its first picture; the reason in the message otherwise.
    testing::AssertionResult startAndWaitForPicture() {
        const Status started = QCoro::waitFor(stream.startCapture());
        if (!started.ok()) return testing::AssertionFailure() << started.error().description.toStdString();
        if (recorder.waitForSample(0, isPicture)) return testing::AssertionSuccess();
        return testing::AssertionFailure() << "no picture";
    }
    Status stop() { return QCoro::waitFor(stream.stopCapture()); }

    StreamTestWindow window;
    SerialQueue queue{QStringLiteral("com.kestrum.capture.queue")};
    SampleRecorder recorder{queue};
    X11WindowStream stream;
};

WindowStreamConfiguration configuration(int width, int height, int frameRate = 30, bool showsCursor = false) {
    return {width, height, frameRate, showsCursor};
}

class WindowStream : public testing::Test {
  public:
    static void SetUpTestSuite() {
        display_ = std::make_unique<XvfbServer>();
        if (!display_->start()) failure_ = display_->failure();
        // Xvfb resets itself whenever its last client leaves, and refuses connections while it does; a
        // client that stays for the whole suite keeps each test's connections from meeting a reset.
        if (failure_.isEmpty()) keeper_ = xcb_connect(nullptr, nullptr);
    }
    static void TearDownTestSuite() {
        if (keeper_) xcb_disconnect(keeper_);
        display_.reset();
    }
    void SetUp() override {
        if (!failure_.isEmpty()) GTEST_SKIP() << "no X server: " << failure_.toStdString();
    }

  private:
    static inline std::unique_ptr<XvfbServer> display_;
    static inline QString failure_;
    static inline xcb_connection_t* keeper_ = nullptr;
};

TEST_F(WindowStream, DeliversScaledStampedPicturesAtTheRateOnTheQueue) {
    StreamRig rig(320, 240, configuration(160, 120, 30));
    ASSERT_TRUE(rig.startAndWaitForPicture());
    processEventsFor(2200);
    EXPECT_TRUE(rig.stop().ok());
    rig.queue.sync([] {});

    const std::vector<RecordedSample> samples = rig.recorder.samples();
    const HostTimeNs endNs = samples.front().timeNs + secondsToHostTime(2.0);
    const auto inTwoSeconds = std::count_if(
        samples.begin(), samples.end(), [&](const RecordedSample& sample) { return sample.timeNs < endNs; });
    EXPECT_GE(inTwoSeconds, 55);
    EXPECT_LE(inTwoSeconds, 62);
    for (std::size_t index = 0; index < samples.size(); ++index) {
        SCOPED_TRACE(index);
        EXPECT_TRUE(samples[index].onQueue);
        EXPECT_TRUE(showsHalves(samples[index], 160, 120, kRedBgra, kBlueBgra));
        if (index > 0) {
            // On the grid of frame times, whenever each read ended: a whole number of periods apart.
            const double periods =
                static_cast<double>(samples[index].timeNs - samples[index - 1].timeNs) / (1e9 / 30);
            EXPECT_GE(periods, 0.5);
            EXPECT_NEAR(periods, std::round(periods), 1e-4);
        }
    }
    EXPECT_EQ(rig.stream.counters().framesRead, static_cast<std::int64_t>(samples.size()));
}

struct ScalingRow {
    int windowWidth;
    int windowHeight;
    int width;  // configured
    int height;
    bool enlargesSmallerSource;
    int pictureWidth;  // delivered
    int pictureHeight;
};

void PrintTo(const ScalingRow& row, std::ostream* out) {
    *out << row.windowWidth << "x" << row.windowHeight << " to " << row.width << "x" << row.height
         << (row.enlargesSmallerSource ? " enlarging" : " not enlarging");
}

class WindowStreamScaling : public WindowStream, public testing::WithParamInterface<ScalingRow> {};

TEST_P(WindowStreamScaling, KeepsTheColoursWhereTheyWereDrawn) {
    const ScalingRow& row = GetParam();
    WindowStreamConfiguration wanted = configuration(row.width, row.height);
    wanted.enlargesSmallerSource = row.enlargesSmallerSource;
    StreamRig rig(row.windowWidth, row.windowHeight, wanted);
    ASSERT_TRUE(QCoro::waitFor(rig.stream.startCapture()).ok());
    // Drawn again once redirected: a window larger than the screen kept only its visible part.
    rig.window.fillHalves(kRed, kBlue);
    const auto picture = rig.recorder.waitForSample(0, [&](const RecordedSample& sample) {
        return showsHalves(sample, row.pictureWidth, row.pictureHeight, kRedBgra, kBlueBgra);
    });
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->image->bytesPerRow(), row.pictureWidth * 4);
    for (const RecordedSample& sample : rig.recorder.samples()) {
        ASSERT_TRUE(sample.image);
        EXPECT_EQ(QSize(sample.image->width(), sample.image->height()),
                  QSize(row.pictureWidth, row.pictureHeight));
    }
}

// Halved, enlarged, the same size, odd sizes of another aspect; without enlarging, a smaller window comes
// at its own size (odd sides too) and a larger one is still brought down to the configured size.
INSTANTIATE_TEST_SUITE_P(Rows, WindowStreamScaling,
                         testing::Values(ScalingRow{2560, 1440, 1280, 720, true, 1280, 720},
                                         ScalingRow{200, 100, 400, 200, true, 400, 200},
                                         ScalingRow{640, 360, 640, 360, true, 640, 360},
                                         ScalingRow{333, 201, 128, 72, true, 128, 72},
                                         ScalingRow{200, 100, 400, 200, false, 200, 100},
                                         ScalingRow{333, 201, 1920, 1080, false, 333, 201},
                                         ScalingRow{2560, 1440, 1280, 720, false, 1280, 720},
                                         ScalingRow{640, 360, 640, 300, false, 640, 300}));

TEST_F(WindowStream, DamageMakesCompleteFramesAndStillnessIdleOnes) {
    StreamRig rig(200, 100, configuration(100, 50));
    ASSERT_TRUE(rig.startAndWaitForPicture());
    EXPECT_EQ(rig.recorder.samples().front().status, CaptureFrameStatus::complete);

    const HostTimeNs stillNs = hostTimeNow() + secondsToHostTime(0.1);
    processEventsFor(600);
    const std::vector<RecordedSample> still = rig.recorder.samplesSince(stillNs);
    EXPECT_GE(still.size(), 10u);
    for (const RecordedSample& sample : still) EXPECT_EQ(sample.status, CaptureFrameStatus::idle);

    // The first frame showing the drawing is complete, the next one idle again.
    const HostTimeNs drawnNs = hostTimeNow();
    rig.window.fill(kGreen);
    const auto green = rig.recorder.waitForSample(drawnNs, [](const RecordedSample& sample) {
        return sample.image && pixelAt(*sample.image, 50, 25) == kGreenBgra;
    });
    ASSERT_TRUE(green);
    EXPECT_EQ(green->status, CaptureFrameStatus::complete);
    const auto next = rig.recorder.waitForSample(green->deliveredNs + 1, isPicture);
    ASSERT_TRUE(next);
    EXPECT_EQ(next->status, CaptureFrameStatus::idle);
}

TEST_F(WindowStream, FollowsAResizedWindowAtTheConfiguredSize) {
    StreamRig rig(320, 240, configuration(160, 120));
    ASSERT_TRUE(rig.startAndWaitForPicture());
    const HostTimeNs resizedNs = hostTimeNow();
    rig.window.resize(480, 200);
    rig.window.fillHalves(kBlue, kGreen);
    const auto resized = rig.recorder.waitForSample(resizedNs, [](const RecordedSample& sample) {
        return showsHalves(sample, 160, 120, kBlueBgra, kGreenBgra);
    });
    ASSERT_TRUE(resized);
    EXPECT_EQ(resized->status, CaptureFrameStatus::complete);
    for (const RecordedSample& sample : rig.recorder.samplesSince(resizedNs)) {
        ASSERT_TRUE(sample.image);
        EXPECT_EQ(sample.image->width(), 160);
        EXPECT_EQ(sample.image->height(), 120);
    }
}

TEST_F(WindowStream, IsBlankWhileUnmappedAndEndsWithTheWindow) {
    StreamRig rig(200, 100, configuration(100, 50));
    ASSERT_TRUE(rig.startAndWaitForPicture());
    rig.window.unmap();
    const HostTimeNs unmappedNs = hostTimeNow() + secondsToHostTime(0.05);
    processEventsFor(400);
    const std::vector<RecordedSample> hidden = rig.recorder.samplesSince(unmappedNs);
    EXPECT_GE(hidden.size(), 5u);
    for (const RecordedSample& sample : hidden) {
        EXPECT_EQ(sample.status, CaptureFrameStatus::blank);
        EXPECT_FALSE(sample.image);
    }

    const HostTimeNs mappedNs = hostTimeNow();
    rig.window.map();
    rig.window.fill(kGreen);
    EXPECT_TRUE(rig.recorder.waitForSample(mappedNs, [](const RecordedSample& sample) {
        return sample.image && pixelAt(*sample.image, 50, 25) == kGreenBgra;
    }));

    rig.window.destroy();
    processEventsFor(200);
    const std::size_t delivered = rig.recorder.samples().size();
    processEventsFor(300);
    EXPECT_EQ(rig.recorder.samples().size(), delivered);
    const Status stopped = rig.stop();
    ASSERT_FALSE(stopped.ok());
    EXPECT_EQ(stopped.error().description, QStringLiteral("The window is gone"));
    EXPECT_TRUE(rig.stop().ok());
}

// Counts the end notices of a stream, with the moment of the first, on the main thread.
struct EndNotices {
    explicit EndNotices(X11WindowStream& stream) {
        stream.setEndHandler([this](const Error& reason) {
            if (reasons.empty()) firstNs = hostTimeNow();
            reasons.push_back(reason.description);
        });
    }
    QStringList reasons;
    HostTimeNs firstNs = 0;
};

struct EndRow {
    const char* name;
    int frameRate;
    bool unmappedFirst;   // destroyed while unmapped, when the stream only sends blank samples
    double boundSeconds;  // one frame interval, plus a loaded machine's event delivery and scheduling
};

void PrintTo(const EndRow& row, std::ostream* out) {
    *out << row.name;
}

class WindowStreamEnd : public WindowStream, public testing::WithParamInterface<EndRow> {};

TEST_P(WindowStreamEnd, TellsOnceWithinItsBoundWhenTheWindowIsDestroyed) {
    const EndRow& row = GetParam();
    StreamRig rig(200, 100, configuration(100, 50, row.frameRate));
    EndNotices notices(rig.stream);
    ASSERT_TRUE(rig.startAndWaitForPicture());
    if (row.unmappedFirst) {
        rig.window.unmap();
        processEventsFor(200);
    }
    const HostTimeNs destroyedNs = hostTimeNow();
    rig.window.destroy();
    EXPECT_TRUE(waitUntil([&] { return !notices.reasons.isEmpty(); }, 3000));
    processEventsFor(300);
    ASSERT_EQ(notices.reasons, QStringList{QStringLiteral("The window is gone")});
    EXPECT_LT(hostTimeToSeconds(notices.firstNs - destroyedNs), row.boundSeconds);
    const Status stopped = rig.stop();
    EXPECT_FALSE(stopped.ok());
    processEventsFor(100);
    EXPECT_EQ(notices.reasons.size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Rows, WindowStreamEnd,
                         testing::Values(EndRow{"at60fps", 60, false, 0.5}, EndRow{"at5fps", 5, false, 0.7},
                                         EndRow{"whileUnmapped", 30, true, 0.5}),
                         [](const testing::TestParamInfo<EndRow>& info) {
                             return std::string(info.param.name);
                         });

TEST_F(WindowStream, TellsNoEndAfterAStopNorToAHandlerRemoved) {
    for (const bool removeHandler : {false, true}) {
        SCOPED_TRACE(removeHandler);
        StreamRig rig(200, 100, configuration(100, 50, 30));
        EndNotices notices(rig.stream);
        ASSERT_TRUE(rig.startAndWaitForPicture());
        if (removeHandler) {
            rig.stream.setEndHandler({});
        } else {
            EXPECT_TRUE(rig.stop().ok());
        }
        rig.window.destroy();
        processEventsFor(400);
        EXPECT_TRUE(notices.reasons.isEmpty());
    }
}

TEST_F(WindowStream, StopReturnsWithoutWaitingForTheNextDeadlineAndEndsDelivery) {
    StreamRig rig(200, 100, configuration(100, 50, 1));
    ASSERT_TRUE(rig.startAndWaitForPicture());
    QElapsedTimer stopping;
    stopping.start();
    EXPECT_TRUE(rig.stop().ok());
    // A 1 FPS stream whose stop waited for its next deadline would take most of a second.
    EXPECT_LT(stopping.elapsed(), 500);
    rig.queue.sync([] {});
    const std::size_t delivered = rig.recorder.samples().size();
    rig.window.fill(kGreen);
    processEventsFor(1200);
    EXPECT_EQ(rig.recorder.samples().size(), delivered);
}

TEST_F(WindowStream, AppliesANewConfigurationFromTheNextFrameAndRefusesAnInvalidOne) {
    StreamRig rig(320, 240, configuration(160, 120, 5));
    ASSERT_TRUE(rig.startAndWaitForPicture());
    ASSERT_TRUE(QCoro::waitFor(rig.stream.updateConfiguration(configuration(64, 48, 30))).ok());
    const HostTimeNs updatedNs = hostTimeNow();
    EXPECT_FALSE(QCoro::waitFor(rig.stream.updateConfiguration(configuration(0, 48, 30))).ok());
    processEventsFor(1000);
    EXPECT_TRUE(rig.stop().ok());

    // The frame already waited for has the old size and rate; from the next one on, 64x48 at 30 a second.
    const auto first = rig.recorder.waitForSample(updatedNs, [](const RecordedSample& sample) {
        return showsHalves(sample, 64, 48, kRedBgra, kBlueBgra);
    });
    ASSERT_TRUE(first);
    const std::vector<RecordedSample> updated = rig.recorder.samplesSince(first->deliveredNs);
    const HostTimeNs halfASecondNs = first->timeNs + secondsToHostTime(0.5);
    const auto inHalfASecond =
        std::count_if(updated.begin(), updated.end(),
                      [&](const RecordedSample& sample) { return sample.timeNs < halfASecondNs; });
    EXPECT_GE(inHalfASecond, 10);  // 5 a second would give 3; a loaded machine may skip a few deadlines
    EXPECT_LE(inHalfASecond, 17);
    for (const RecordedSample& sample : updated)
        EXPECT_TRUE(showsHalves(sample, 64, 48, kRedBgra, kBlueBgra));
}

TEST_F(WindowStream, RefusesWhatItCannotDo) {
    StreamTestWindow window(200, 100);
    struct Row {
        std::uint32_t windowID;
        WindowStreamConfiguration configuration;
        QString error;
    };
    const Row rows[] = {
        {window.id() + 0x1000, {100, 50, 30, false}, QStringLiteral("The window is gone")},
        {window.id(), {0, 50, 30, false}, QStringLiteral("cannot deliver 0x50 pixels at 30 FPS")},
        {window.id(), {100, 50, 0, false}, QStringLiteral("cannot deliver 100x50 pixels at 0 FPS")},
    };
    SerialQueue queue(QStringLiteral("refusals"));
    for (const Row& row : rows) {
        SCOPED_TRACE(row.error.toStdString());
        SampleRecorder recorder(queue);
        X11WindowStream stream(ShareableWindow{row.windowID, std::nullopt, {}, true, std::nullopt},
                               row.configuration);
        EXPECT_FALSE(stream.addStreamOutput(recorder, CaptureOutputType::audio, queue).ok());
        ASSERT_TRUE(stream.addStreamOutput(recorder, CaptureOutputType::screen, queue).ok());
        const Status started = QCoro::waitFor(stream.startCapture());
        ASSERT_FALSE(started.ok());
        EXPECT_TRUE(started.error().description.contains(row.error))
            << started.error().description.toStdString();
        EXPECT_TRUE(QCoro::waitFor(stream.stopCapture()).ok());
        queue.sync([] {});
        EXPECT_TRUE(recorder.samples().empty());
    }
}

TEST_F(WindowStream, DrawsThePointerOnlyWhenAsked) {
    for (const bool showsCursor : {false, true}) {
        SCOPED_TRACE(showsCursor);
        StreamRig rig(200, 200, configuration(200, 200, 30, showsCursor));
        rig.window.fill(kRed);
        rig.window.warpPointer(100, 100);
        ASSERT_TRUE(rig.startAndWaitForPicture());
        const PixelBuffer& picture = *rig.recorder.samples().front().image;
        int notRed = 0;
        for (int y = 90; y < 130; ++y) {
            for (int x = 90; x < 130; ++x) notRed += pixelAt(picture, x, y) != kRedBgra;
        }
        EXPECT_EQ(notRed > 20, showsCursor) << notRed;
        EXPECT_EQ(notRed == 0, !showsCursor) << notRed;
    }
}

TEST_F(WindowStream, FactoryMeasuresTheWindowItselfAndFallsBackOnTheListedFrame) {
    StreamTestWindow window(321, 123);
    X11WindowStreamFactory factory;
    const QRectF listed(0, 0, 50, 40);
    EXPECT_EQ(factory.sourcePixelSize({window.id(), std::nullopt, listed, true, std::nullopt}),
              QSizeF(321, 123));
    EXPECT_EQ(factory.sourcePixelSize({window.id() + 0x1000, std::nullopt, listed, true, std::nullopt}),
              QSizeF(50, 40));
}

}  // namespace
}  // namespace kestrum::test
