#pragma once

#include "media/VideoOutputSettings.h"
#include "media/ffmpeg/BoundedWorkQueue.h"
#include "media/ffmpeg/FfmpegTrackInput.h"
#include "media/ffmpeg/VideoEncoderSelection.h"
#include "media/ffmpeg/VideoFrameConverter.h"
#include "media/ffmpeg/WriterState.h"

#include <atomic>
#include <thread>

namespace kestrum::ffmpeg {

class FfmpegMuxer;

// How many frames may wait for the encoder. A real-time producer gets a fifth of a second of frames at
// its expected rate (at least four): enough to ride out the encoder's start without a refusal, at the
// cost of up to that many frames held in memory (12 BGRA 1080p frames, about 100 MB, at 60 fps) while the
// encoder lags. An offline producer, which waits instead of dropping, gets a fixed 16.
std::int64_t videoInputQueueFrames(bool expectsRealTime, int expectedFrameRate);

// The video track: BGRA frames are queued by the capture thread and converted (VideoFrameConverter) and
// encoded on the input's own thread, "kestrum-video". Variable frame rate: each frame keeps its own
// time, movie time = host time - session start in 1/90000 s; frames before the session start, or not
// later than the previous one, are dropped; nothing is duplicated. A key frame is forced whenever the
// last one is 2 seconds (the settings' interval duration) old, since at a low frame rate the encoder's
// frame-count interval alone would space them far apart.
class FfmpegVideoInput final : public FfmpegTrackInput {
  public:
    FfmpegVideoInput(VideoOutputSettings settings, std::shared_ptr<WriterState> state);
    ~FfmpegVideoInput() override;

    MovieMediaType mediaType() const override { return MovieMediaType::video; }
    bool isReadyForMoreMediaData() const override;
    void setExpectsMediaDataInRealTime(bool expectsRealTime) override;
    bool expectsMediaDataInRealTime() const override { return realTime_.load(); }
    bool append(std::shared_ptr<const PixelBuffer> frame, HostTimeNs presentationHostTimeNs) override;
    bool append(AudioSampleBuffer buffer) override;
    std::uint64_t refusedSampleCount() const override { return refused_.load(); }
    std::uint64_t discardedSampleCount() const override { return discarded_.load(); }

    Status open(std::shared_ptr<FfmpegMuxer> muxer) override;
    void start() override;
    void requestFinish() override;
    void stop() override;

  private:
    struct WorkItem {
        std::shared_ptr<const PixelBuffer> frame;  // null marks the end of the stream
        HostTimeNs hostTimeNs = 0;
    };

    void run();
    // False when nothing of the frame reached the encoder.
    bool encode(const WorkItem& item);
    bool convert(const PixelBuffer& source, std::int64_t pts);
    bool send(AVFrame* frame);
    void forward(PacketPtr packet);
    void finishStream();

    const VideoOutputSettings settings_;
    const std::shared_ptr<WriterState> state_;
    BoundedWorkQueue<WorkItem> queue_;
    std::atomic<bool> realTime_{true};
    std::atomic<std::uint64_t> refused_{0};
    std::atomic<std::uint64_t> discarded_{0};
    std::atomic<bool> started_{false};

    // Set in `open` on the owning thread, then used only by the encoder thread.
    std::shared_ptr<FfmpegMuxer> muxer_;
    OpenedVideoEncoder encoder_;
    int streamIndex_ = -1;
    VideoFrameConverter converter_;
    FramePtr softwareFrame_;
    FramePtr hardwareFrame_;
    PacketPtr pending_;  // held back until the next packet gives its duration
    std::int64_t lastPts_ = 0;
    std::int64_t lastKeyPts_ = 0;
    bool encodedAnyFrame_ = false;
    std::thread thread_;
};

}  // namespace kestrum::ffmpeg
