// BGRA pictures into the encoders' frames: channel order, the BT.601 limited-range matrix, both layouts
// and the scaling fallback, checked against the matrix itself rather than against either library.
#include "media/ffmpeg/FfmpegPointers.h"
#include "media/ffmpeg/VideoFrameConverter.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestrum::ffmpeg {
namespace {

struct Rgb {
    int red, green, blue;
};

struct Yuv {
    int y, u, v;
};

Yuv bt601Limited(const Rgb& c) {
    const double y = 16 + (65.481 * c.red + 128.553 * c.green + 24.966 * c.blue) / 255.0;
    const double u = 128 + (-37.797 * c.red - 74.203 * c.green + 112.0 * c.blue) / 255.0;
    const double v = 128 + (112.0 * c.red - 93.786 * c.green - 18.214 * c.blue) / 255.0;
    return {static_cast<int>(std::lround(y)), static_cast<int>(std::lround(u)),
            static_cast<int>(std::lround(v))};
}

PixelBuffer solid(int width, int height, const Rgb& c, std::uint8_t alpha = 0xFF) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(width) * height * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 4) {
        bytes[at] = static_cast<std::uint8_t>(c.blue);
        bytes[at + 1] = static_cast<std::uint8_t>(c.green);
        bytes[at + 2] = static_cast<std::uint8_t>(c.red);
        bytes[at + 3] = alpha;
    }
    return PixelBuffer(width, height, width * 4, std::move(bytes));
}

FramePtr frameOf(AVPixelFormat format, int width, int height) {
    FramePtr frame(av_frame_alloc());
    frame->format = format;
    frame->width = width;
    frame->height = height;
    EXPECT_GE(av_frame_get_buffer(frame.get(), 0), 0);
    return frame;
}

// The samples at the frame's centre, wherever the layout keeps them.
Yuv centreOf(const AVFrame& frame) {
    const int x = frame.width / 2;
    const int y = frame.height / 2;
    const int luma = frame.data[0][y * frame.linesize[0] + x];
    if (frame.format == AV_PIX_FMT_NV12) {
        const std::uint8_t* pair = frame.data[1] + (y / 2) * frame.linesize[1] + (x / 2) * 2;
        return {luma, pair[0], pair[1]};
    }
    return {luma, frame.data[1][(y / 2) * frame.linesize[1] + x / 2],
            frame.data[2][(y / 2) * frame.linesize[2] + x / 2]};
}

TEST(VideoFrameConverter, SolidColoursFollowTheBt601LimitedMatrix) {
    struct Case {
        const char* name;
        Rgb colour;
    };
    const Case colours[] = {
        {"black", {0, 0, 0}},  {"white", {255, 255, 255}}, {"red", {255, 0, 0}},       {"green", {0, 255, 0}},
        {"blue", {0, 0, 255}}, {"grey", {128, 128, 128}},  {"orange", {240, 140, 30}},
    };
    struct Layout {
        const char* name;
        AVPixelFormat format;
        int sourceWidth, sourceHeight;  // the frame is 64x48: equal sizes convert, others scale
    };
    const Layout layouts[] = {
        {"YUV 4:2:0 planar", AV_PIX_FMT_YUV420P, 64, 48},
        {"NV12", AV_PIX_FMT_NV12, 64, 48},
        {"YUV 4:2:0 planar, scaled down", AV_PIX_FMT_YUV420P, 128, 96},
        {"NV12, scaled up", AV_PIX_FMT_NV12, 32, 24},
    };
    VideoFrameConverter converter;
    for (const Layout& layout : layouts) {
        for (const Case& c : colours) {
            SCOPED_TRACE(std::string(layout.name) + ", " + c.name);
            // The alpha byte is left at zero: a window's fourth byte carries nothing and must not count.
            const PixelBuffer source = solid(layout.sourceWidth, layout.sourceHeight, c.colour, 0);
            FramePtr frame = frameOf(layout.format, 64, 48);
            ASSERT_TRUE(converter.convert(source, *frame));
            const Yuv expected = bt601Limited(c.colour);
            const Yuv actual = centreOf(*frame);
            EXPECT_NEAR(actual.y, expected.y, 2);
            EXPECT_NEAR(actual.u, expected.u, 2);
            EXPECT_NEAR(actual.v, expected.v, 2);
        }
    }
}

TEST(VideoFrameConverter, RefusesAFrameLayoutItDoesNotKnow) {
    VideoFrameConverter converter;
    FramePtr frame = frameOf(AV_PIX_FMT_YUV444P, 64, 48);
    EXPECT_FALSE(converter.convert(solid(64, 48, {10, 20, 30}), *frame));
}

}  // namespace
}  // namespace kestrum::ffmpeg
