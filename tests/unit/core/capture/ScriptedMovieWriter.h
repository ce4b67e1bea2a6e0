#pragma once

#include "media/MovieWriterFactory.h"
#include "support/ScriptedMovieRecovery.h"

#include <QFile>

#include <atomic>
#include <mutex>
#include <vector>

namespace kestrum::test {

// An input that records what reaches it; ready while `ready` is set.
class RecordingInput final : public MovieWriterInput {
  public:
    explicit RecordingInput(MovieMediaType type) : type_(type) {}
    MovieMediaType mediaType() const override { return type_; }
    bool isReadyForMoreMediaData() const override { return ready; }
    void setExpectsMediaDataInRealTime(bool value) override { realTime_ = value; }
    bool expectsMediaDataInRealTime() const override { return realTime_; }
    bool append(std::shared_ptr<const PixelBuffer> frame, HostTimeNs timeNs) override {
        const std::lock_guard lock(mutex_);
        videoTimesNs.push_back(timeNs);
        lastFrame = std::move(frame);
        return acceptsAppends;
    }
    bool append(AudioSampleBuffer buffer) override {
        const std::lock_guard lock(mutex_);
        audioTimesNs.push_back(buffer.hostTimeNs());
        return acceptsAppends;
    }
    std::uint64_t refusedSampleCount() const override { return refused; }
    std::uint64_t discardedSampleCount() const override { return discarded; }

    std::atomic<bool> ready = true;
    std::atomic<bool> acceptsAppends = true;
    std::atomic<std::uint64_t> refused = 0;  // what the counts answer
    std::atomic<std::uint64_t> discarded = 0;
    std::vector<HostTimeNs> videoTimesNs;
    std::vector<HostTimeNs> audioTimesNs;
    std::shared_ptr<const PixelBuffer> lastFrame;

  private:
    MovieMediaType type_;
    bool realTime_ = false;
    std::mutex mutex_;
};

// A writer scripted by a test: which inputs it refuses, whether it starts and finishes. It writes an
// empty file at `startWriting` so that tests can see the in-progress file come and go.
class ScriptedMovieWriter final : public MovieWriter {
  public:
    explicit ScriptedMovieWriter(QString path) : path_(std::move(path)) {}
    QString outputPath() const override { return path_; }
    MovieWriterStatus status() const override { return status_; }
    std::optional<Error> error() const override { return error_; }
    bool canAddInput(const MovieInputSettings& settings) const override {
        return std::holds_alternative<VideoOutputSettings>(settings) ? !refuseVideo : !refuseAudio;
    }
    std::shared_ptr<MovieWriterInput> addInput(const MovieInputSettings& settings) override {
        if (!canAddInput(settings)) return nullptr;
        addedSettings.push_back(settings);
        auto input = std::make_shared<RecordingInput>(std::holds_alternative<VideoOutputSettings>(settings)
                                                          ? MovieMediaType::video
                                                          : MovieMediaType::audio);
        inputs.push_back(input);
        return input;
    }
    bool startWriting() override {
        if (startFailure) {
            status_ = MovieWriterStatus::failed;
            error_ = startFailure;
            return false;
        }
        QFile file(path_);
        (void)file.open(QIODevice::WriteOnly);
        status_ = MovieWriterStatus::writing;
        return true;
    }
    void startSession(HostTimeNs timeNs) override {
        if (!sessionStartNs) sessionStartNs = timeNs;
    }
    QFuture<void> finishWriting() override {
        status_ = finishFailure ? MovieWriterStatus::failed : MovieWriterStatus::completed;
        error_ = finishFailure;
        return QtFuture::makeReadyFuture();
    }
    void cancelWriting() override { status_ = MovieWriterStatus::cancelled; }

    bool refuseVideo = false;
    bool refuseAudio = false;
    std::optional<Error> startFailure;
    std::optional<Error> finishFailure;
    std::vector<MovieInputSettings> addedSettings;
    std::vector<std::shared_ptr<RecordingInput>> inputs;
    std::optional<HostTimeNs> sessionStartNs;

  private:
    QString path_;
    std::atomic<MovieWriterStatus> status_ = MovieWriterStatus::unknown;
    std::optional<Error> error_;
};

// Hands out ScriptedMovieWriters configured by `configure`, keeping a pointer to the last one.
class ScriptedMovieWriterFactory final : public MovieWriterFactory {
  public:
    Result<std::unique_ptr<MovieWriter>> createWriter(const QString& path, MovieFileType) const override {
        if (creationFailure) return *creationFailure;
        auto writer = std::make_unique<ScriptedMovieWriter>(path);
        if (configure) configure(*writer);
        last = writer.get();
        return std::unique_ptr<MovieWriter>(std::move(writer));
    }
    std::function<void(ScriptedMovieWriter&)> configure;
    std::optional<Error> creationFailure;
    mutable ScriptedMovieWriter* last = nullptr;
};

}  // namespace kestrum::test
