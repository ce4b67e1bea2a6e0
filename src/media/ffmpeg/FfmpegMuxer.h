#pragma once

#include "base/common/Result.h"
#include "media/ffmpeg/BoundedWorkQueue.h"
#include "media/ffmpeg/FfmpegPointers.h"
#include "media/ffmpeg/WriterState.h"

extern "C" {
#include <libavformat/avformat.h>
}

#include <QString>

#include <functional>
#include <memory>
#include <thread>

namespace kestrum::ffmpeg {

// The container side of a writer: libavformat's "mov" muxer and the single thread that interleaves
// the encoders' packets into the file. Streams are added, then `open` writes the header once every
// stream is configured and starts the thread. Encoder threads hand packets over with `submit` and end
// their stream with `endStream`; once every stream has ended the thread writes the trailer, closes the
// file and calls the completion set by `whenFinished`. After a failure every later packet is discarded.
//
// Threads: creation, `addStream`, `open`, `whenFinished`, `cancel` and `join` run on the writer's
// owning thread; `submit` and `endStream` on the encoder threads; the AVFormatContext is touched only
// by the owning thread before `open` and by the muxer thread after it (and again after `join`).
class FfmpegMuxer {
  public:
    static Result<std::shared_ptr<FfmpegMuxer>> create(const QString& path,
                                                       std::shared_ptr<WriterState> state);
    ~FfmpegMuxer();
    FfmpegMuxer(const FfmpegMuxer&) = delete;
    FfmpegMuxer& operator=(const FfmpegMuxer&) = delete;

    // True when encoders must put their parameter sets in extradata (the "mov" muxer wants it).
    bool wantsGlobalHeader() const;
    // Adds a stream described by an opened encoder; gives its index.
    Result<int> addStream(const AVCodecContext& encoder, unsigned codecTag);
    Status open();

    // Takes the packet; its timestamps are in `encoderTimeBase` and are rescaled to the stream's.
    void submit(PacketPtr packet, int streamIndex, AVRational encoderTimeBase);
    void endStream(int streamIndex);

    // Called on the muxer thread once the file is finalised or has failed (set before streams end).
    void whenFinished(std::function<void()> done);
    // Stops the thread at once, drops queued packets and closes the file without a trailer.
    void cancel();
    // Waits for the thread to end after it finished by itself.
    void join();

  private:
    struct Entry {
        PacketPtr packet;  // null for the end of a stream
        int streamIndex = 0;
        AVRational encoderTimeBase{1, 1};
    };

    FfmpegMuxer(QString path, std::shared_ptr<WriterState> state, AVFormatContext* context);
    void run();
    void write(Entry& entry);
    void finalize();
    void closeFile();

    QString path_;
    std::shared_ptr<WriterState> state_;
    AVFormatContext* context_;  // owned; see the class comment for which thread may touch it
    BoundedWorkQueue<Entry> queue_;
    std::function<void()> done_;  // set on the owning thread before any stream ends
    int endedStreams_ = 0;        // muxer thread
    std::thread thread_;
};

}  // namespace kestrum::ffmpeg
