// The FFmpeg movie writer end to end: movies written from synthetic frames and tones, read back by the
// real ffprobe and by decoding with libav.
#include "MediaTestSupport.h"
#include "media/ffmpeg/FfmpegError.h"
#include "media/ffmpeg/FfmpegMovieWriterFactory.h"
#include "media/ffmpeg/VideoEncoderSelection.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QJsonArray>
#include <QTemporaryDir>

#include <unistd.h>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <map>
#include <thread>

namespace kestrum::test {
namespace {

struct TrackCase {
    const char* name;
    OutputResolution resolution;
    OutputFrameRate frameRate;
    int width;
    int height;
    int audioTracks;
    const char* codecName;
    const char* codecTag;
    const char* profile;
};

TEST(MovieWriter, TracksHaveTheirOrderTypesCodecsAndDurations) {
    KESTRUM_REQUIRE_MEDIA(programAvailable(QStringLiteral("ffprobe")), "ffprobe");
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx265"), "libx265");
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx264"), "libx264");
    const std::vector<TrackCase> cases{
        {"720p30 with two audio tracks", OutputResolution::p720, OutputFrameRate::fps30, 320, 180, 2, "hevc",
         "hvc1", "Main"},
        {"1080p60 video only", OutputResolution::p1080, OutputFrameRate::fps60, 256, 144, 0, "hevc", "hvc1",
         "Main"},
        {"native 30 with one audio track", OutputResolution::native, OutputFrameRate::fps30, 322, 182, 1,
         "h264", "avc1", "High"},
    };
    for (const TrackCase& c : cases) {
        SCOPED_TRACE(c.name);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("movie.mov"));
        MovieScript script;
        script.video = videoOutputSettings(c.resolution, c.frameRate, c.width, c.height);
        script.audioTracks = c.audioTracks;
        script.frameSeconds = evenFrameTimes(0, 2.0, static_cast<int>(c.frameRate));
        script.audioToSeconds = 2.0;
        script.signal = beepEverySecond();
        const WrittenMovie written = writeMovie(path, script);
        ASSERT_EQ(written.status, MovieWriterStatus::completed)
            << (written.error ? written.error->description.toStdString() : std::string());

        const auto probe = probeJson(path);
        ASSERT_TRUE(probe);
        const QJsonArray streams = probe->value(QStringLiteral("streams")).toArray();
        ASSERT_EQ(streams.size(), 1 + c.audioTracks);
        const QJsonObject video = streams[0].toObject();
        EXPECT_EQ(video.value(QStringLiteral("codec_type")).toString(), QStringLiteral("video"));
        EXPECT_EQ(video.value(QStringLiteral("codec_name")).toString(), QLatin1String(c.codecName));
        EXPECT_EQ(video.value(QStringLiteral("codec_tag_string")).toString(), QLatin1String(c.codecTag));
        EXPECT_EQ(video.value(QStringLiteral("profile")).toString(), QLatin1String(c.profile));
        EXPECT_EQ(video.value(QStringLiteral("width")).toInt(), c.width);
        EXPECT_EQ(video.value(QStringLiteral("height")).toInt(), c.height);
        EXPECT_NEAR(video.value(QStringLiteral("duration")).toString().toDouble(), 2.0, 0.05);
        // The matrix the frames were converted with, so that players do not assume the HD one.
        EXPECT_EQ(video.value(QStringLiteral("color_space")).toString(), QStringLiteral("smpte170m"));
        EXPECT_EQ(video.value(QStringLiteral("color_range")).toString(), QStringLiteral("tv"));
        EXPECT_EQ(video.value(QStringLiteral("color_primaries")).toString(), QStringLiteral("bt709"));
        EXPECT_EQ(video.value(QStringLiteral("color_transfer")).toString(), QStringLiteral("iec61966-2-1"));
        for (int track = 1; track <= c.audioTracks; ++track) {
            SCOPED_TRACE(track);
            const QJsonObject audio = streams[track].toObject();
            EXPECT_EQ(audio.value(QStringLiteral("codec_type")).toString(), QStringLiteral("audio"));
            EXPECT_EQ(audio.value(QStringLiteral("codec_name")).toString(), QStringLiteral("aac"));
            EXPECT_EQ(audio.value(QStringLiteral("sample_rate")).toString(), QStringLiteral("48000"));
            EXPECT_EQ(audio.value(QStringLiteral("channels")).toInt(), 2);
            EXPECT_NEAR(audio.value(QStringLiteral("duration")).toString().toDouble(), 2.0, 0.05);
        }
    }
}

// The threads of this process: id, name and nice value, from /proc.
struct ThreadInfo {
    QString name;
    int nice = 0;
};
std::map<int, ThreadInfo> processThreads() {
    std::map<int, ThreadInfo> threads;
    for (const QString& task :
         QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QByteArray stat = readFileBytes(QStringLiteral("/proc/self/task/%1/stat").arg(task));
        const QByteArray name = readFileBytes(QStringLiteral("/proc/self/task/%1/comm").arg(task)).trimmed();
        // The fields after the parenthesised name: state is the 3rd of the line, nice the 19th.
        const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
        if (fields.size() > 16) threads[task.toInt()] = {QString::fromUtf8(name), fields[16].toInt()};
    }
    return threads;
}

struct PriorityCase {
    const char* name;
    const char* encoder;
    OutputResolution resolution;
    OutputFrameRate frameRate;
    int width;
    int height;
};

TEST(MovieWriter, EncoderThreadsRunBelowTheCallersPriority) {
    if (std::thread::hardware_concurrency() < 2) GTEST_SKIP() << "one core: the encoders start no threads";
    const auto self = static_cast<int>(gettid());
    const int ownNice = processThreads().at(self).nice;
    if (ownNice + ffmpeg::kEncoderNiceIncrement > 19)
        GTEST_SKIP() << "the test runs at nice " << ownNice << ": no room below it to tell a lowered thread";
    const std::vector<PriorityCase> cases{
        {"H.264 on a 1080p window at 60", "libx264", OutputResolution::native, OutputFrameRate::fps60, 1920,
         1080},
        {"HEVC at 720p30", "libx265", OutputResolution::p720, OutputFrameRate::fps30, 1280, 720},
    };
    for (const PriorityCase& c : cases) {
        SCOPED_TRACE(c.name);
        KESTRUM_REQUIRE_MEDIA(encoderAvailable(c.encoder), c.encoder);
        QTemporaryDir folder;
        auto writer =
            ffmpeg::FfmpegMovieWriterFactory()
                .createWriter(folder.filePath(QStringLiteral("nice.mov")), MovieFileType::quickTimeMovie)
                .toOptional();
        ASSERT_TRUE(writer);
        ASSERT_TRUE((*writer)->addInput(videoOutputSettings(c.resolution, c.frameRate, c.width, c.height)));
        const std::map<int, ThreadInfo> before = processThreads();
        ASSERT_TRUE((*writer)->startWriting());
        // Every thread the start created but the writer's own (which serve at the caller's value) is the
        // encoder's. The writer's threads name themselves once running, so the look waits for both names.
        // x265's pool workers lower themselves by more, and may do so only once running.
        const auto isWriterThread = [](const ThreadInfo& thread) {
            return thread.name.startsWith(QLatin1String("kestrum-video")) ||
                   thread.name.startsWith(QLatin1String("kestrum-mux"));
        };
        // The log's queue starts with the first line, the encoder choice, on the caller's thread.
        const auto isLogThread = [](const ThreadInfo& thread) {
            return thread.name.startsWith(QLatin1String("com.kestrum."));
        };
        std::map<int, ThreadInfo> after;
        for (int look = 0; look < 200; ++look) {
            after = processThreads();
            const auto named = std::count_if(after.begin(), after.end(), [&](const auto& entry) {
                return !before.contains(entry.first) && isWriterThread(entry.second);
            });
            if (named == 2) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        int encoderThreads = 0;
        for (const auto& [id, thread] : after) {
            if (before.contains(id) || isWriterThread(thread) || isLogThread(thread)) continue;
            ++encoderThreads;
            EXPECT_GE(thread.nice, ownNice + ffmpeg::kEncoderNiceIncrement)
                << id << " " << thread.name.toStdString();
        }
        EXPECT_GT(encoderThreads, 0);
        EXPECT_EQ(processThreads().at(self).nice, ownNice);
        (*writer)->cancelWriting();
    }
}

TEST(MovieWriter, AnEncoderThatCannotOpenGivesItsErrorThroughTheOpeningThread) {
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx264"), "libx264");
    // 4:2:0 needs even sizes: every candidate refuses an odd one, the software encoder last.
    VideoOutputSettings settings =
        videoOutputSettings(OutputResolution::native, OutputFrameRate::fps60, 1920, 1080);
    settings.width = 1921;
    const Result<ffmpeg::OpenedVideoEncoder> opened = ffmpeg::openVideoEncoder(settings, true);
    ASSERT_FALSE(opened.ok());
    EXPECT_EQ(opened.error().domain, QLatin1String(ffmpeg::kWriterErrorDomain));
    EXPECT_EQ(opened.error().code, static_cast<int>(ffmpeg::WriterErrorCode::noEncoder));
    ASSERT_TRUE(opened.error().underlying);
    EXPECT_EQ(opened.error().underlying->domain, QLatin1String(ffmpeg::kFfmpegErrorDomain));
    EXPECT_TRUE(opened.error().underlying->description.contains(QLatin1String("libx264")))
        << opened.error().underlying->description.toStdString();
}

TEST(MovieWriter, AverageBitRateFollowsTheTableAt720p30) {
    KESTRUM_REQUIRE_MEDIA(programAvailable(QStringLiteral("ffprobe")), "ffprobe");
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx265"), "libx265");
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("rate.mov"));
    MovieScript script;
    script.video = videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 1280, 720);
    script.frameSeconds = evenFrameTimes(0, 20.0, 30);
    ASSERT_EQ(writeMovie(path, script).status, MovieWriterStatus::completed);
    const auto probe = probeJson(path);
    ASSERT_TRUE(probe);
    const QJsonObject video = probe->value(QStringLiteral("streams")).toArray()[0].toObject();
    const double bitRate = video.value(QStringLiteral("bit_rate")).toString().toDouble();
    EXPECT_NEAR(bitRate, 1'800'000, 1'800'000 * 0.2);
}

struct TimingCase {
    const char* name;
    std::vector<double> appendedSeconds;
    std::vector<double> expectedSeconds;
    std::uint64_t discarded;
};

std::vector<double> concat(std::initializer_list<std::vector<double>> parts) {
    std::vector<double> all;
    for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

TEST(MovieWriter, FramesLandAtTheirOwnTimes) {
    KESTRUM_REQUIRE_MEDIA(programAvailable(QStringLiteral("ffprobe")), "ffprobe");
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx265"), "libx265");
    const auto variable =
        concat({evenFrameTimes(0, 1, 30), evenFrameTimes(1, 4, 2.5), evenFrameTimes(4, 5, 30)});
    const std::vector<TimingCase> cases{
        {"30 fps, then 2.5 fps for 3 s, then 30 fps", variable, variable, 0},
        {"frames before the session start are dropped", concat({{-0.5, -0.1}, evenFrameTimes(0, 1, 30)}),
         evenFrameTimes(0, 1, 30), 2},
        {"repeated and older stamps are dropped", {0.0, 0.1, 0.1, 0.05, 0.2, 1.7}, {0.0, 0.1, 0.2, 1.7}, 2},
    };
    for (const TimingCase& c : cases) {
        SCOPED_TRACE(c.name);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("timing.mov"));
        MovieScript script;
        script.video = videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 192, 108);
        script.frameSeconds = c.appendedSeconds;
        const WrittenMovie written = writeMovie(path, script);
        ASSERT_EQ(written.status, MovieWriterStatus::completed);
        EXPECT_EQ(written.discarded, std::vector<std::uint64_t>{c.discarded});
        const auto probe = probeJson(path, {QStringLiteral("-select_streams"), QStringLiteral("v:0"),
                                            QStringLiteral("-show_packets")});
        ASSERT_TRUE(probe);
        const QJsonArray packets = probe->value(QStringLiteral("packets")).toArray();
        ASSERT_EQ(packets.size(), static_cast<qsizetype>(c.expectedSeconds.size()));
        double lastKey = -10;
        for (qsizetype index = 0; index < packets.size(); ++index) {
            const QJsonObject packet = packets[index].toObject();
            const double pts = packet.value(QStringLiteral("pts_time")).toString().toDouble();
            EXPECT_NEAR(pts, c.expectedSeconds[static_cast<std::size_t>(index)], 1.0 / 90000)
                << "packet " << index;
            // A key frame at least every 2 seconds even where frames are sparse.
            if (packet.value(QStringLiteral("flags")).toString().startsWith(QLatin1Char('K'))) lastKey = pts;
            EXPECT_LE(pts - lastKey, 2.0 + 1e-6) << "packet " << index;
        }
    }
}

struct SyncCase {
    const char* name;
    AudioFormatDescription format;
    int bufferFrames;
    double jitterSeconds;
};

TEST(MovieWriter, FlashAndBeepStayInSync) {
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx265"), "libx265");
    using F = AudioFormatDescription;
    const std::vector<SyncCase> cases{
        {"float interleaved stereo 48 kHz", F{F::kFormatLinearPCM, F::kFlagIsFloat, 32, 2, 48000}, 480, 0},
        {"int16 interleaved stereo 48 kHz", F{F::kFormatLinearPCM, F::kFlagIsSignedInteger, 16, 2, 48000},
         1024, 0},
        {"float non-interleaved mono 44.1 kHz",
         F{F::kFormatLinearPCM, F::kFlagIsFloat | F::kFlagIsNonInterleaved, 32, 1, 44100}, 441, 0},
        {"int32 stamps jittering by 4 ms", F{F::kFormatLinearPCM, F::kFlagIsSignedInteger, 32, 2, 48000}, 480,
         0.004},
    };
    constexpr double kFrameSeconds = 1.0 / 30;
    for (const SyncCase& c : cases) {
        SCOPED_TRACE(c.name);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("sync.mov"));
        MovieScript script;
        script.video = videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 160, 90);
        script.frameSeconds = evenFrameTimes(0, 4.0, 30);
        script.isFlash = [](double seconds) { return seconds - std::floor(seconds) < 0.1; };
        script.audioTracks = 1;
        script.audioFormat = c.format;
        script.audioBufferFrames = c.bufferFrames;
        // Buffers are whole, so the last one may run past the end: stop short of the beep at 4 s.
        script.audioToSeconds = 3.9;
        script.signal = beepEverySecond(0.1);
        script.stampJitterSeconds = c.jitterSeconds;
        ASSERT_EQ(writeMovie(path, script).status, MovieWriterStatus::completed);

        std::vector<double> flashes;
        bool wasBright = false;
        for (const DecodedFrame& frame : decodeVideo(path)) {
            const bool bright = frame.meanLuma > 200;
            if (bright && !wasBright) flashes.push_back(frame.seconds);
            wasBright = bright;
        }
        const auto audio = decodeAudio(path, 0);
        ASSERT_TRUE(audio);
        const std::vector<double> beeps = soundOnsets(*audio, 0.2);
        const auto listed = [](const std::vector<double>& times) {
            std::string text;
            for (double t : times) text += std::to_string(t) + " ";
            return text;
        };
        ASSERT_EQ(flashes.size(), 4u) << listed(flashes);
        ASSERT_EQ(beeps.size(), 4u) << listed(beeps);
        for (std::size_t index = 0; index < flashes.size(); ++index) {
            EXPECT_NEAR(beeps[index], flashes[index], kFrameSeconds) << "second " << index;
            EXPECT_NEAR(flashes[index], static_cast<double>(index), kFrameSeconds) << "second " << index;
        }
    }
}

struct EarlyAudioCase {
    const char* name;
    double audioFromSeconds;
    int bufferFrames;
    std::uint64_t discarded;  // buffers wholly before the start
};

TEST(MovieWriter, AudioBeforeTheSessionStartIsAbsent) {
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx265"), "libx265");
    // A loud tone before the session start, silence after it, then one beep at 0.5 s.
    const Signal signal = [](double seconds) {
        if (seconds < 0) return 0.8;
        return seconds >= 0.5 && seconds < 0.6 ? 0.5 * std::sin(2 * 3.14159265358979 * 1000 * seconds) : 0.0;
    };
    const std::vector<EarlyAudioCase> cases{
        {"a second of buffers before the start", -1.0, 480, 100},
        {"one buffer straddling the start", -0.005, 960, 0},
    };
    for (const EarlyAudioCase& c : cases) {
        SCOPED_TRACE(c.name);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("early.mov"));
        MovieScript script;
        script.video = videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 160, 90);
        script.frameSeconds = evenFrameTimes(0, 1.0, 30);
        script.audioTracks = 1;
        script.audioFromSeconds = c.audioFromSeconds;
        script.audioToSeconds = 1.0;
        script.audioBufferFrames = c.bufferFrames;
        script.signal = signal;
        const WrittenMovie written = writeMovie(path, script);
        ASSERT_EQ(written.status, MovieWriterStatus::completed);
        EXPECT_EQ(written.discarded, (std::vector<std::uint64_t>{0, c.discarded}));
        const auto audio = decodeAudio(path, 0);
        ASSERT_TRUE(audio);
        EXPECT_NEAR(audio->startSeconds, 0.0, 1e-3);
        EXPECT_NEAR(static_cast<double>(audio->samples.size()) / audio->sampleRate, 1.0, 0.03);
        const std::vector<double> onsets = soundOnsets(*audio, 0.2);
        ASSERT_EQ(onsets.size(), 1u);
        EXPECT_NEAR(onsets[0], 0.5, 0.01);
    }
}

}  // namespace
}  // namespace kestrum::test
