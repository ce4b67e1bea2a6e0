#pragma once

#include "media/AudioOutputSettings.h"
#include "media/ffmpeg/AudioTimeline.h"
#include "media/ffmpeg/BoundedWorkQueue.h"
#include "media/ffmpeg/FfmpegPointers.h"
#include "media/ffmpeg/FfmpegTrackInput.h"
#include "media/ffmpeg/WriterState.h"

#include <atomic>
#include <optional>
#include <thread>
#include <vector>

namespace kestrum::ffmpeg {

class FfmpegMuxer;

// An AAC track. PCM buffers are queued by the capture thread (about a second of audio at most) and
// handled on the input's own thread, "kestrum-audio": placed on the track's sample axis by
// `AudioTimeline` (the part before the session start cut away), converted by libswresample to the
// encoder's planar float at the track's rate, collected in a FIFO and encoded in frames of 1024
// samples whose pts is the count of samples since the session start.
class FfmpegAudioInput final : public FfmpegTrackInput {
  public:
    FfmpegAudioInput(AudioOutputSettings settings, std::shared_ptr<WriterState> state);
    ~FfmpegAudioInput() override;

    MovieMediaType mediaType() const override { return MovieMediaType::audio; }
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
        AudioSampleBuffer buffer;
        bool endOfStream = false;
    };

    void run();
    // False when nothing of the buffer reached the track.
    bool process(const AudioSampleBuffer& buffer);
    bool configureResampler(const AudioFormatDescription& format);
    std::int64_t nextOutputFrame() const;
    bool writeSilence(std::int64_t frames);
    bool convertInto(const AudioSampleBuffer& buffer, std::int64_t skipFrames);
    bool encodeQueued(bool includePartialFrame);
    bool send(AVFrame* frame);
    void finishStream();

    const AudioOutputSettings settings_;
    const std::shared_ptr<WriterState> state_;
    BoundedWorkQueue<WorkItem> queue_;
    std::atomic<bool> realTime_{true};
    std::atomic<std::uint64_t> refused_{0};
    std::atomic<std::uint64_t> discarded_{0};
    std::atomic<bool> started_{false};

    // Set in `open` on the owning thread, then used only by the encoder thread.
    std::shared_ptr<FfmpegMuxer> muxer_;
    CodecContextPtr encoder_;
    int streamIndex_ = -1;
    SwrContextPtr resampler_;
    std::optional<AudioFormatDescription> resamplerFormat_;
    AudioFifoPtr fifo_;
    std::int64_t fifoStartFrame_ = 0;  // track frame of the FIFO's first sample
    AudioTimeline timeline_;
    FramePtr frame_;
    std::vector<std::vector<float>> scratch_;  // converted planes before they enter the FIFO
    std::thread thread_;
};

}  // namespace kestrum::ffmpeg
