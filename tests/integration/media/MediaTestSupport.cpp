#include "MediaTestSupport.h"

#include "media/ffmpeg/FfmpegMovieWriterFactory.h"
#include "support/TestEnvironment.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <QCoroFuture>
#include <QCoroTask>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

namespace kestrum::test {

namespace {

constexpr HostTimeNs kSessionStartNs = 5'000'000'000'000;  // any host time; the axis is what matters
constexpr int kReadyTimeoutMs = 60'000;

template <class Append>
bool whenReady(MovieWriterInput& input, Append append, const MovieWriter* writer = nullptr) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kReadyTimeoutMs);
    while (!input.isReadyForMoreMediaData()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        if (writer && writer->status() != MovieWriterStatus::writing) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return append();
}

// Pictures are made once and repeated every second of 30 frames: cheap even in a debug build, and
// still moving from frame to frame.
class FrameCycle {
  public:
    FrameCycle(int width, int height) : width_(width), height_(height) {}
    std::shared_ptr<const PixelBuffer> frame(int index, bool flash) {
        if (flash) {
            if (!flash_) flash_ = makeFrame(width_, height_, 0, true);
            return flash_;
        }
        const auto slot = static_cast<std::size_t>(index % 30);
        if (cycle_.size() <= slot) cycle_.resize(slot + 1);
        if (!cycle_[slot]) cycle_[slot] = makeFrame(width_, height_, index % 30);
        return cycle_[slot];
    }

  private:
    int width_;
    int height_;
    std::shared_ptr<const PixelBuffer> flash_;
    std::vector<std::shared_ptr<const PixelBuffer>> cycle_;
};

QCoro::Task<> awaitFinish(QFuture<void> future) {
    co_await future;
}

}  // namespace

bool mediaIsRequired() {
    return qEnvironmentVariable("KESTRUM_REQUIRE_MEDIA") == QStringLiteral("1");
}

bool programAvailable(const QString& program) {
    return !QStandardPaths::findExecutable(program).isEmpty();
}

bool encoderAvailable(const char* name) {
    return avcodec_find_encoder_by_name(name) != nullptr;
}

bool runProgram(const QString& program, const QStringList& arguments, QByteArray* output) {
    QProcess process;
    process.setProcessChannelMode(output ? QProcess::SeparateChannels : QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(120'000)) return false;
    if (output) *output = process.readAllStandardOutput();
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

std::optional<QJsonObject> probeJson(const QString& path, const QStringList& extra) {
    QByteArray output;
    QStringList arguments{
        QStringLiteral("-v"),   QStringLiteral("error"),        QStringLiteral("-print_format"),
        QStringLiteral("json"), QStringLiteral("-show_format"), QStringLiteral("-show_streams")};
    arguments << extra << path;
    if (!runProgram(QStringLiteral("ffprobe"), arguments, &output)) return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(output);
    if (!document.isObject()) return std::nullopt;
    return document.object();
}

QString makeMovieWithFfmpeg(const QString& folder, const QString& name, const QStringList& input,
                            const QStringList& output, std::optional<int> rotateDegrees) {
    const QString path = folder + QLatin1Char('/') + name;
    const QString encoded = rotateDegrees ? folder + QStringLiteral("/unrotated-") + name : path;
    QStringList arguments{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y")};
    arguments << input << output << encoded;
    if (!runProgram(QStringLiteral("ffmpeg"), arguments)) return {};
    if (!rotateDegrees) return path;
    const QStringList copy{QStringLiteral("-v"),
                           QStringLiteral("error"),
                           QStringLiteral("-y"),
                           QStringLiteral("-i"),
                           encoded,
                           QStringLiteral("-c"),
                           QStringLiteral("copy"),
                           QStringLiteral("-metadata:s:v:0"),
                           QStringLiteral("rotate=%1").arg(*rotateDegrees),
                           path};
    return runProgram(QStringLiteral("ffmpeg"), copy) ? path : QString();
}

bool appendWhenReady(MovieWriterInput& input, std::shared_ptr<const PixelBuffer> frame, HostTimeNs hostTimeNs,
                     const MovieWriter* writer) {
    return whenReady(
        input, [&] { return input.append(std::move(frame), hostTimeNs); }, writer);
}

bool appendWhenReady(MovieWriterInput& input, AudioSampleBuffer buffer) {
    return whenReady(input, [&] { return input.append(std::move(buffer)); });
}

bool finishAndWait(MovieWriter& writer) {
    QFuture<void> future = writer.finishWriting();
    QCoro::waitFor(awaitFinish(future));
    return future.isFinished();
}

std::vector<double> evenFrameTimes(double fromSeconds, double toSeconds, double framesPerSecond) {
    std::vector<double> times;
    for (int index = 0;; ++index) {
        const double seconds = fromSeconds + index / framesPerSecond;
        if (seconds >= toSeconds - 1e-9) break;
        times.push_back(seconds);
    }
    return times;
}

WrittenMovie writeMovie(const QString& path, const MovieScript& script) {
    auto created = ffmpeg::FfmpegMovieWriterFactory().createWriter(path, MovieFileType::quickTimeMovie);
    if (!created.ok()) return {MovieWriterStatus::failed, created.error(), {}};
    std::unique_ptr<MovieWriter> writer = std::move(created).value();
    auto video = writer->addInput(script.video);
    std::vector<std::shared_ptr<MovieWriterInput>> audio;
    for (int track = 0; track < script.audioTracks; ++track)
        audio.push_back(writer->addInput(audioOutputSettings()));
    if (!video || !writer->startWriting()) return {writer->status(), writer->error(), {}};
    writer->startSession(kSessionStartNs);
    const auto hostTime = [](double seconds) { return kSessionStartNs + secondsToHostTime(seconds); };
    const double bufferSeconds = script.audioBufferFrames / script.audioFormat.sampleRate;
    FrameCycle pictures(script.video.width, script.video.height);
    std::size_t nextFrame = 0;
    int bufferIndex = 0;
    double audioAt = script.audioFromSeconds;
    while (nextFrame < script.frameSeconds.size() || audioAt < script.audioToSeconds - 1e-9) {
        const bool videoFirst =
            nextFrame < script.frameSeconds.size() &&
            (audioAt >= script.audioToSeconds - 1e-9 || script.frameSeconds[nextFrame] <= audioAt);
        if (videoFirst) {
            const double seconds = script.frameSeconds[nextFrame++];
            appendWhenReady(*video,
                            script.picture
                                ? script.picture(seconds)
                                : pictures.frame(static_cast<int>(nextFrame), script.isFlash(seconds)),
                            hostTime(seconds));
            continue;
        }
        const double jitter = (bufferIndex++ % 2 == 0 ? 1 : -1) * script.stampJitterSeconds;
        for (const auto& input : audio) {
            AudioSampleBuffer buffer = makeAudio(script.audioFormat, hostTime(audioAt),
                                                 script.audioBufferFrames, kSessionStartNs, script.signal);
            buffer = AudioSampleBuffer(buffer.format(), hostTime(audioAt + jitter), buffer.frameCount(),
                                       std::move(buffer.buffers()));
            appendWhenReady(*input, std::move(buffer));
        }
        audioAt += bufferSeconds;
    }
    finishAndWait(*writer);
    WrittenMovie written{writer->status(), writer->error(), {video->discardedSampleCount()}};
    for (const auto& input : audio) written.discarded.push_back(input->discardedSampleCount());
    return written;
}

}  // namespace kestrum::test
