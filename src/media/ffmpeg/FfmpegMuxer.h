#pragma once

#include "base/common/Result.h"
#include "media/MovieJournalWriter.h"
#include "media/ffmpeg/BoundedWorkQueue.h"
#include "media/ffmpeg/FfmpegPointers.h"
#include "media/ffmpeg/MovieFileOutput.h"
#include "media/ffmpeg/PacketInterleaver.h"
#include "media/ffmpeg/WriterState.h"

extern "C" {
#include <libavformat/avformat.h>
}

#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace kestrum::ffmpeg {

// Whether a writer keeps its movie recoverable after a crash (the journal and the syncs every
// `FfmpegMuxer::kSyncInterval`). The product always does; `off` writes the movie as a writer without
// crash safety would, trailer and close only, so that a benchmark can weigh what the safety costs.
enum class CrashSafety { journaled, off };

// The container side of a writer: libavformat's "mov" muxer and the single thread that interleaves
// the encoders' packets into the file. Streams are added, then `open` writes the header once every
// stream is configured and starts the thread. Encoder threads hand packets over with `submit` and end
// their stream with `endStream`; once every stream has ended the thread writes the trailer, closes the
// file and calls the completion set by `whenFinished`. After a failure every later packet is discarded.
//
// Crash safety: the movie is written as a regular movie, whose index (the trailer) comes last. Beside
// it, a journal (MovieJournalWriter) records the streams and, for every packet, where its bytes lie.
// At least every `kSyncInterval` the thread makes what it wrote durable and then commits the packets
// to the journal, so that an unfinished movie can be rebuilt (MovieRecovery) up to the last commit. The
// packets are put in file order here (PacketInterleaver), each written as it leaves, so that its place
// in the file is known; a stalled stream holds the others back by at most `kInterleaveWindowUs`.
//
// Threads: creation, `addStream`, `open`, `whenFinished`, `cancel` and `join` run on the writer's
// owning thread; `submit` and `endStream` on the encoder threads; the AVFormatContext, the file output
// and the journal are touched only by the owning thread before `open` and by the muxer thread after it
// (and again after `join`).
class FfmpegMuxer {
  public:
    static constexpr std::chrono::milliseconds kSyncInterval{500};
    // What a kill loses is this window, up to one sync interval, the encoder's delay (a few frames) and
    // the packet each input holds back for its duration. At a second the total came to 2.3 s on a
    // loaded machine with the sound stalled; half a second keeps it near 1.2 s with room for load. A
    // narrower window only costs locality: sound that arrives later than this is written after the
    // video it plays with, which every reader takes since each packet is indexed where it lies.
    static constexpr std::int64_t kInterleaveWindowUs = 500'000;

    static Result<std::shared_ptr<FfmpegMuxer>> create(const QString& path,
                                                       std::shared_ptr<WriterState> state,
                                                       CrashSafety crashSafety = CrashSafety::journaled);
    ~FfmpegMuxer();
    FfmpegMuxer(const FfmpegMuxer&) = delete;
    FfmpegMuxer& operator=(const FfmpegMuxer&) = delete;

    // True when encoders must put their parameter sets in extradata (the "mov" muxer wants it).
    bool wantsGlobalHeader() const;
    // Adds a stream described by an opened encoder; gives its index.
    Result<int> addStream(const AVCodecContext& encoder, unsigned codecTag);
    // Creates the file, writes the header, starts the journal (a journal that cannot be written is
    // logged and the movie goes on without one) and starts the thread.
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

    FfmpegMuxer(QString path, std::shared_ptr<WriterState> state, AVFormatContext* context,
                CrashSafety crashSafety);
    void openJournal();
    void run();
    // Takes one entry into the interleaver and writes what may go; true once every stream has ended.
    bool accept(Entry entry);
    void writeReadyPackets();
    void write(Entry& entry);
    void fail(int averror, const QString& what);
    std::chrono::nanoseconds timeUntilSync() const;
    // Makes what was written durable, then commits it to the journal.
    void sync();
    void finalize();
    void closeFile();

    QString path_;
    std::shared_ptr<WriterState> state_;
    const bool journaled_;
    AVFormatContext* context_;  // owned; see the class comment for which thread may touch it
    BoundedWorkQueue<Entry> queue_;
    std::function<void()> done_;  // set on the owning thread before any stream ends

    // The muxer thread's, once open.
    std::unique_ptr<MovieFileOutput> output_;
    MovieJournalWriter journal_;
    std::optional<PacketInterleaver<Entry>> interleaver_;
    std::chrono::steady_clock::time_point lastSync_;
    bool hasUnsyncedWrites_ = false;
    bool journalFailureLogged_ = false;
    std::thread thread_;
};

}  // namespace kestrum::ffmpeg
