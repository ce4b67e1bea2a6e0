// How the writer fails: statuses, errors, refusals. Every failure must leave the writer in status 3 (or 4
// for a cancel) with an error, and never crash or block the caller.
#include "MediaTestSupport.h"
#include "media/ffmpeg/FfmpegMovieWriterFactory.h"
#include "support/TestEnvironment.h"

extern "C" {
#include <libavutil/error.h>
}

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace kestrum::test {
namespace {

constexpr HostTimeNs kStartNs = 1'000'000'000'000;

std::unique_ptr<MovieWriter> makeWriter(const QString& path) {
    auto created = ffmpeg::FfmpegMovieWriterFactory().createWriter(path, MovieFileType::quickTimeMovie);
    return created.ok() ? std::move(created).value() : nullptr;
}

VideoOutputSettings smallVideo() {
    return videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 160, 90);
}

TEST(MovieWriter, CreationFailsWhereNoFolderCanHoldTheFile) {
    QTemporaryDir folder;
    ASSERT_TRUE(writeFileBytes(folder.filePath(QStringLiteral("plain-file")), "x"));
    const std::vector<std::pair<const char*, QString>> cases{
        {"missing folder", folder.filePath(QStringLiteral("missing/movie.mov"))},
        {"a file where the folder should be", folder.filePath(QStringLiteral("plain-file/movie.mov"))},
    };
    for (const auto& [name, path] : cases) {
        SCOPED_TRACE(name);
        auto created = ffmpeg::FfmpegMovieWriterFactory().createWriter(path, MovieFileType::quickTimeMovie);
        ASSERT_FALSE(created.ok());
        EXPECT_EQ(created.error().domain, QStringLiteral("Kestrum.MovieWriter"));
        EXPECT_FALSE(created.error().description.isEmpty());
    }
}

TEST(MovieWriter, StartWritingFailsWhenTheFolderIsGone) {
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx265"), "libx265");
    QTemporaryDir folder;
    const QString sub = folder.filePath(QStringLiteral("gone"));
    ASSERT_TRUE(QDir().mkpath(sub));
    auto writer = makeWriter(sub + QStringLiteral("/movie.mov"));
    ASSERT_TRUE(writer);
    ASSERT_TRUE(writer->addInput(smallVideo()));
    ASSERT_TRUE(QDir(sub).removeRecursively());
    EXPECT_FALSE(writer->startWriting());
    EXPECT_EQ(writer->status(), MovieWriterStatus::failed);
    ASSERT_TRUE(writer->error());
    EXPECT_EQ(writer->error()->domain, QStringLiteral("FFmpeg"));
    EXPECT_EQ(writer->error()->code, AVERROR(ENOENT));
}

TEST(MovieWriter, InputsFollowTheRulesOfAddition) {
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx265"), "libx265");
    QTemporaryDir folder;
    auto writer = makeWriter(folder.filePath(QStringLiteral("inputs.mov")));
    ASSERT_TRUE(writer);
    VideoOutputSettings odd = smallVideo();
    odd.width = 161;
    AudioOutputSettings sixChannels = audioOutputSettings();
    sixChannels.channelCount = 6;
    EXPECT_FALSE(writer->canAddInput(odd));
    EXPECT_FALSE(writer->canAddInput(sixChannels));
    auto video = writer->addInput(smallVideo());
    ASSERT_TRUE(video);
    EXPECT_EQ(video->mediaType(), MovieMediaType::video);
    EXPECT_FALSE(writer->addInput(smallVideo())) << "a second video track";
    auto audio = writer->addInput(audioOutputSettings());
    ASSERT_TRUE(audio);
    EXPECT_EQ(audio->mediaType(), MovieMediaType::audio);
    EXPECT_FALSE(video->isReadyForMoreMediaData()) << "not writing yet";
    ASSERT_TRUE(writer->startWriting());
    EXPECT_FALSE(writer->canAddInput(audioOutputSettings())) << "after startWriting";
    EXPECT_FALSE(video->isReadyForMoreMediaData()) << "no session yet";
    EXPECT_FALSE(video->append(makeFrame(160, 90, 0), kStartNs)) << "no session yet";
    writer->startSession(kStartNs);
    EXPECT_TRUE(video->isReadyForMoreMediaData());
    EXPECT_FALSE(audio->append(makeFrame(160, 90, 0), kStartNs)) << "a frame on an audio input";
    EXPECT_FALSE(video->append(AudioSampleBuffer(AudioFormatDescription{}, kStartNs, 0, {})))
        << "audio on video";
    writer->cancelWriting();
}

TEST(MovieWriter, EndsInTheStatusOfHowItStopped) {
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx265"), "libx265");
    struct Case {
        const char* name;
        int frames;
        bool cancel;
        MovieWriterStatus expected;
        std::optional<int> errorCode;
    };
    const std::vector<Case> cases{
        {"finished with frames", 10, false, MovieWriterStatus::completed, std::nullopt},
        {"finished without a video frame", 0, false, MovieWriterStatus::failed, 3},
        {"cancelled while writing", 10, true, MovieWriterStatus::cancelled, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("status.mov"));
        auto writer = makeWriter(path);
        ASSERT_TRUE(writer);
        auto video = writer->addInput(smallVideo());
        auto audio = writer->addInput(audioOutputSettings());
        ASSERT_TRUE(writer->startWriting());
        EXPECT_EQ(writer->status(), MovieWriterStatus::writing);
        writer->startSession(kStartNs);
        for (int index = 0; index < c.frames; ++index) {
            ASSERT_TRUE(appendWhenReady(*video, makeFrame(160, 90, index), kStartNs + index * 33'333'333LL));
        }
        if (c.cancel) {
            writer->cancelWriting();
        } else {
            ASSERT_TRUE(finishAndWait(*writer));
        }
        EXPECT_EQ(writer->status(), c.expected);
        EXPECT_EQ(writer->error().has_value(), c.errorCode.has_value());
        if (c.errorCode && writer->error()) {
            EXPECT_EQ(writer->error()->domain, QStringLiteral("Kestrum.MovieWriter"));
            EXPECT_EQ(writer->error()->code, *c.errorCode);
        }
        EXPECT_TRUE(QFile::exists(path)) << "the writer removes nothing itself";
        EXPECT_FALSE(video->append(makeFrame(160, 90, 99), kStartNs + 10'000'000'000))
            << "append after the end";
        EXPECT_FALSE(video->isReadyForMoreMediaData());
        EXPECT_FALSE(audio->isReadyForMoreMediaData());
    }
}

TEST(MovieWriter, FullDiskFailsWithTheErrorAndLaterWritesAreNoOps) {
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx265"), "libx265");
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("full.mov"));
    auto writer = makeWriter(path);
    ASSERT_TRUE(writer);
    auto video =
        writer->addInput(videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 640, 360));
    ASSERT_TRUE(writer->startWriting());
    writer->startSession(kStartNs);
    {
        const FileSizeLimit limit(48 * 1024);
        for (int index = 0; index < 300 && writer->status() == MovieWriterStatus::writing; ++index) {
            appendWhenReady(*video, makeFrame(640, 360, index), kStartNs + index * 33'333'333LL,
                            writer.get());
        }
        if (writer->status() == MovieWriterStatus::writing) {
            ASSERT_TRUE(finishAndWait(*writer));
        }
        EXPECT_EQ(writer->status(), MovieWriterStatus::failed);
    }
    ASSERT_TRUE(writer->error());
    EXPECT_EQ(writer->error()->domain, QStringLiteral("FFmpeg"));
    EXPECT_EQ(writer->error()->code, AVERROR(EFBIG));
    const Error first = *writer->error();
    EXPECT_FALSE(video->append(makeFrame(640, 360, 400), kStartNs + 20'000'000'000));
    EXPECT_FALSE(video->isReadyForMoreMediaData());
    ASSERT_TRUE(finishAndWait(*writer));
    EXPECT_EQ(writer->status(), MovieWriterStatus::failed);
    EXPECT_EQ(*writer->error(), first) << "the first failure is the one reported";
}

TEST(MovieWriter, FullQueueRefusesAndCounts) {
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx265"), "libx265");
    QTemporaryDir folder;
    auto writer = makeWriter(folder.filePath(QStringLiteral("queue.mov")));
    ASSERT_TRUE(writer);
    auto video =
        writer->addInput(videoOutputSettings(OutputResolution::p1080, OutputFrameRate::fps60, 1920, 1080));
    auto audio = writer->addInput(audioOutputSettings());
    ASSERT_TRUE(writer->startWriting());
    writer->startSession(kStartNs);
    struct Case {
        const char* name;
        MovieWriterInput* input;
        std::function<bool(int)> append;
    };
    // Everything is made beforehand so that the appends follow each other as fast as they can.
    const auto frame = makeFrame(1920, 1080, 0);
    std::vector<AudioSampleBuffer> buffers;
    for (int index = 0; index < 60; ++index) {
        buffers.push_back(makeAudio(AudioFormatDescription{}, kStartNs + index * 100'000'000LL, 4800,
                                    kStartNs, beepEverySecond()));
    }
    const std::vector<Case> cases{
        {"video frames", video.get(),
         [&](int index) { return video->append(frame, kStartNs + index * 16'666'667LL); }},
        {"audio buffers", audio.get(),
         [&](int index) { return audio->append(std::move(buffers[static_cast<std::size_t>(index)])); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::uint64_t refused = 0;
        for (int index = 0; index < 60; ++index) {
            if (!c.append(index)) ++refused;
        }
        EXPECT_GT(refused, 0u) << "60 appends at once overflow a queue of about a second or a few frames";
        EXPECT_EQ(c.input->refusedSampleCount(), refused);
    }
    writer->cancelWriting();
    EXPECT_EQ(writer->status(), MovieWriterStatus::cancelled);
}

}  // namespace
}  // namespace kestrum::test
