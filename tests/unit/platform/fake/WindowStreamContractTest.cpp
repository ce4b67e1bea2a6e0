// The window stream's picture size rule, and the fake stream's end notice that the core's tests rely on.
#include "platform/fake/FakeWindowStream.h"

#include <gtest/gtest.h>

#include <QCoroTask>

#include <mutex>

namespace kestrum {
namespace {

struct PictureSizeRow {
    QSize source;
    WindowStreamConfiguration configuration;
    QSize picture;
};

TEST(WindowStreamPictureSize, table) {
    const PictureSizeRow rows[] = {
        // Enlarging (the recording's default): always the configured size.
        {{1280, 720}, {1920, 1080, 30, false, true}, {1920, 1080}},
        {{2560, 1440}, {1920, 1080, 30, false, true}, {1920, 1080}},
        // Without enlarging, a window that fits comes at its own size, odd sides too.
        {{1280, 720}, {1920, 1080, 30, false, false}, {1280, 720}},
        {{1281, 721}, {1920, 1080, 30, false, false}, {1281, 721}},
        {{1920, 1080}, {1920, 1080, 60, false, false}, {1920, 1080}},
        // One side larger than the configuration: scaled to it, as before.
        {{2560, 1440}, {1920, 1080, 30, false, false}, {1920, 1080}},
        {{1920, 800}, {1280, 1080, 30, false, false}, {1280, 1080}},
        {{800, 1200}, {1280, 1080, 30, false, false}, {1280, 1080}},
        // A window with nothing to read yet gets the configured size.
        {{0, 0}, {1280, 720, 30, false, false}, {1280, 720}},
    };
    for (const PictureSizeRow& row : rows) {
        SCOPED_TRACE(testing::Message() << row.source.width() << "x" << row.source.height() << " enlarges "
                                        << row.configuration.enlargesSmallerSource);
        EXPECT_EQ(windowStreamPictureSize(row.source, row.configuration), row.picture);
    }
}

class FrameSizes final : public CaptureStreamOutput {
  public:
    void didOutputSample(CaptureSample& sample, CaptureOutputType) override {
        const std::lock_guard lock(mutex_);
        sizes_.emplace_back(sample.imageBuffer->width(), sample.imageBuffer->height());
    }
    std::vector<QSize> sizes() const {
        const std::lock_guard lock(mutex_);
        return sizes_;
    }

  private:
    mutable std::mutex mutex_;
    std::vector<QSize> sizes_;
};

ShareableWindow windowOf(QSizeF size) {
    return {7, QStringLiteral("League of Legends"), QRectF(QPointF(0, 0), size), true, std::nullopt};
}

TEST(FakeWindowStream, deliversFramesOfTheSizeARealStreamWould) {
    SerialQueue queue(QStringLiteral("fake-window-stream"));
    FrameSizes sizes;
    FakeWindowStream enlarging(windowOf({640, 360}), {1280, 720, 30, false, true});
    FakeWindowStream keeping(windowOf({640, 360}), {1280, 720, 30, false, false});
    for (FakeWindowStream* stream : {&enlarging, &keeping}) {
        ASSERT_TRUE(stream->addStreamOutput(sizes, CaptureOutputType::screen, queue).ok());
        ASSERT_TRUE(QCoro::waitFor(stream->startCapture()).ok());
        ASSERT_TRUE(stream->deliverFrame(1000));
    }
    queue.sync([] {});
    EXPECT_EQ(sizes.sizes(), (std::vector<QSize>{{1280, 720}, {640, 360}}));
}

TEST(FakeWindowStream, endsByItselfOnlyWhileStartedAndTellsTheHandlerOnce) {
    SerialQueue queue(QStringLiteral("fake-window-stream"));
    FrameSizes sizes;
    FakeWindowStream stream(windowOf({640, 360}), {640, 360, 30, false, false});
    QStringList reasons;
    stream.setEndHandler([&](const Error& reason) { reasons.push_back(reason.description); });
    const Error gone = Error::withDescription(QStringLiteral("The window is gone"));
    EXPECT_FALSE(stream.endByItself(gone)) << "not started";
    ASSERT_TRUE(stream.addStreamOutput(sizes, CaptureOutputType::screen, queue).ok());
    ASSERT_TRUE(QCoro::waitFor(stream.startCapture()).ok());
    EXPECT_TRUE(stream.endByItself(gone));
    EXPECT_FALSE(stream.endByItself(gone)) << "already ended";
    EXPECT_FALSE(stream.deliverFrame(1000)) << "an ended stream delivers nothing";
    EXPECT_EQ(reasons, QStringList{QStringLiteral("The window is gone")});

    ASSERT_TRUE(QCoro::waitFor(stream.startCapture()).ok());
    static_cast<void>(QCoro::waitFor(stream.stopCapture()));
    EXPECT_FALSE(stream.endByItself(gone)) << "no end after a stop";
    EXPECT_EQ(reasons.size(), 1);
}

}  // namespace
}  // namespace kestrum
