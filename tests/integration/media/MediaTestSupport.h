#pragma once

#include "SyntheticMedia.h"
#include "media/MovieWriter.h"
#include "support/MovieDecoding.h"

#include <gtest/gtest.h>

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <sys/resource.h>
#include <csignal>
#include <optional>
#include <vector>

// Skips the test when a media tool or encoder is missing on a developer's machine, and fails it instead
// when KESTRUM_REQUIRE_MEDIA=1 (CI), so that nothing is silently skipped there.
#define KESTRUM_REQUIRE_MEDIA(available, what)                                                      \
    do {                                                                                            \
        if (!(available)) {                                                                         \
            if (::kestrum::test::mediaIsRequired()) FAIL() << "required for media tests: " << what; \
            GTEST_SKIP() << "not available on this machine: " << what;                              \
        }                                                                                           \
    } while (false)

namespace kestrum::test {

bool mediaIsRequired();
bool programAvailable(const QString& program);
bool encoderAvailable(const char* name);

// Runs a program to completion; true when it exited with status 0.
bool runProgram(const QString& program, const QStringList& arguments, QByteArray* output = nullptr);
// ffprobe's JSON for the file with -show_format -show_streams plus `extra` arguments.
std::optional<QJsonObject> probeJson(const QString& path, const QStringList& extra = {});

// Makes `name` in `folder` with the ffmpeg program from `input` and `output` arguments; empty on failure.
// With a rotation, a second pass copies the streams and sets the "rotate" tag, which the "mov" muxer
// turns into the display matrix only when streams are copied.
QString makeMovieWithFfmpeg(const QString& folder, const QString& name, const QStringList& input,
                            const QStringList& output, std::optional<int> rotateDegrees = std::nullopt);

// Appends once the input is ready, waiting with short sleeps; false when it never became ready or when
// `writer`, if given, stopped writing meanwhile.
bool appendWhenReady(MovieWriterInput& input, std::shared_ptr<const PixelBuffer> frame, HostTimeNs hostTimeNs,
                     const MovieWriter* writer = nullptr);
bool appendWhenReady(MovieWriterInput& input, AudioSampleBuffer buffer);
// Awaits finishWriting with QCoro; false when the future never completed.
bool finishAndWait(MovieWriter& writer);

// What `writeMovie` feeds a writer: video frames and audio buffers stamped on one host-time axis whose
// zero is the session start. Audio buffers cover [audioFromSeconds, audioToSeconds) on every audio track.
struct MovieScript {
    VideoOutputSettings video;
    int audioTracks = 0;
    AudioFormatDescription audioFormat;
    std::vector<double> frameSeconds;
    std::function<bool(double)> isFlash = [](double) { return false; };
    // The picture of the frame at each time; when empty, the built-in moving pictures (and flashes).
    std::function<std::shared_ptr<const PixelBuffer>(double seconds)> picture;
    double audioFromSeconds = 0;
    double audioToSeconds = 0;
    int audioBufferFrames = 480;
    Signal signal = [](double) { return 0.0; };
    // Each buffer's stamp is moved by up to this much, alternately early and late.
    double stampJitterSeconds = 0;
};

struct WrittenMovie {
    MovieWriterStatus status = MovieWriterStatus::unknown;
    std::optional<Error> error;
    // What each input discarded, the video's first, then the audio tracks'.
    std::vector<std::uint64_t> discarded;
};

// Lowers the file size limit of this process and ignores SIGXFSZ, so that writes past it fail with
// EFBIG as on a full disk; restores both when it goes.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &saved_);
        previousHandler_ = std::signal(SIGXFSZ, SIG_IGN);
        rlimit lowered = saved_;
        lowered.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &lowered);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &saved_);
        std::signal(SIGXFSZ, previousHandler_);
    }

  private:
    rlimit saved_{};
    void (*previousHandler_)(int) = SIG_DFL;
};

std::vector<double> evenFrameTimes(double fromSeconds, double toSeconds, double framesPerSecond);
WrittenMovie writeMovie(const QString& path, const MovieScript& script);

}  // namespace kestrum::test
