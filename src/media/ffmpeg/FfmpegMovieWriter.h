#pragma once

#include "media/MovieWriter.h"
#include "media/ffmpeg/FfmpegMuxer.h"
#include "media/ffmpeg/FfmpegTrackInput.h"
#include "media/ffmpeg/WriterState.h"

#include <QPromise>

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace kestrum::ffmpeg {

// The movie writer on FFmpeg: one encoder thread per input behind a bounded queue, one muxer thread
// interleaving into the "mov" muxer. See `MovieWriter` for the contract and the threads of each call.
class FfmpegMovieWriter final : public MovieWriter {
  public:
    static Result<std::unique_ptr<MovieWriter>> create(const QString& path,
                                                       CrashSafety crashSafety = CrashSafety::journaled);
    ~FfmpegMovieWriter() override;

    QString outputPath() const override { return path_; }
    MovieWriterStatus status() const override { return state_->status(); }
    std::optional<Error> error() const override { return state_->error(); }
    bool canAddInput(const MovieInputSettings& settings) const override;
    std::shared_ptr<MovieWriterInput> addInput(const MovieInputSettings& settings) override;
    bool startWriting() override;
    void startSession(HostTimeNs sourceTimeNs) override { state_->startSession(sourceTimeNs); }
    QFuture<void> finishWriting() override;
    void cancelWriting() override;

  private:
    FfmpegMovieWriter(QString path, std::shared_ptr<WriterState> state, std::shared_ptr<FfmpegMuxer> muxer);
    bool failStart(const Error& error);
    void completeFinish();
    void stopThreads();

    const QString path_;
    const std::shared_ptr<WriterState> state_;
    std::shared_ptr<FfmpegMuxer> muxer_;
    std::vector<std::shared_ptr<FfmpegTrackInput>> inputs_;  // owning thread; in track order
    bool hasVideoInput_ = false;

    // The pending finish, completed once from the muxer thread or by a cancel.
    std::mutex finishMutex_;
    std::optional<QPromise<void>> finishPromise_;  // guarded by finishMutex_
    bool finishRequested_ = false;                 // owning thread
    bool endMarkersSent_ = false;                  // owning thread; the threads then end by themselves
    QFuture<void> finishFuture_;                   // owning thread
};

}  // namespace kestrum::ffmpeg
