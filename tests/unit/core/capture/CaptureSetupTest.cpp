#include "ScriptedMovieWriter.h"
#include "core/capture/RecordingCaptureSetup.h"
#include "platform/fake/FakeWindowStream.h"
#include "support/CapturedLog.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace kestrum::test {
namespace {

struct SizeRow {
    double sourceWidth;
    double sourceHeight;
    RecordingVideoResolution resolution;
    int width;
    int height;
};

class OutputSize : public testing::TestWithParam<SizeRow> {};

TEST_P(OutputSize, isFittedNeverEnlargedAndEven) {
    const SizeRow row = GetParam();
    const QSize size = evenPixelSize(fittedOutputSize({row.sourceWidth, row.sourceHeight}, row.resolution));
    EXPECT_EQ(size, QSize(row.width, row.height));
}

INSTANTIATE_TEST_SUITE_P(Rows, OutputSize,
                         testing::Values(SizeRow{2560, 1440, RecordingVideoResolution::p1080, 1920, 1080},
                                         SizeRow{1000, 500, RecordingVideoResolution::p720, 1000, 500},
                                         SizeRow{3440, 1440, RecordingVideoResolution::p720, 1280, 534},
                                         SizeRow{1281, 721, RecordingVideoResolution::native, 1280, 720},
                                         SizeRow{800, 1, RecordingVideoResolution::native, 800, 2},
                                         SizeRow{1, 1, RecordingVideoResolution::p720, 2, 2},
                                         SizeRow{1080, 1920, RecordingVideoResolution::p720, 404, 720},
                                         SizeRow{3840, 2160, RecordingVideoResolution::native, 3840, 2160}));

struct SetupRow {
    const char* name;
    VideoFrameRate frameRate;
    RecordingVideoResolution resolution;
    VideoCodec codec;
    int bitRate;
    int keyFrameInterval;
};

class Setup : public testing::TestWithParam<SetupRow> {
  public:
    Result<RecordingCaptureSetup> prepare(RecordingVideoResolution resolution, VideoFrameRate rate,
                                          bool systemAudio, bool microphone) {
        const CaptureSetupFactories factories{streams_, writers_,
                                              folder_.path() + QStringLiteral("/InProgress")};
        return prepareCaptureSetup(window_, resolution, rate, systemAudio, microphone, factories);
    }

    QTemporaryDir folder_;
    ShareableWindow window_{
        7, QStringLiteral("League of Legends (TM) Client"), QRectF(0, 0, 2560, 1440), true, {}};
    FakeWindowStreamFactory streams_;
    ScriptedMovieWriterFactory writers_;
};

TEST_P(Setup, choosesCodecBitRateAndKeyFrames) {
    const SetupRow row = GetParam();
    Result<RecordingCaptureSetup> setup = prepare(row.resolution, row.frameRate, true, true);
    ASSERT_TRUE(setup.ok());
    const auto& settings = writers_.last->addedSettings;
    ASSERT_EQ(settings.size(), 3u);  // video, system audio, microphone, in this order
    const auto& video = std::get<VideoOutputSettings>(settings[0]);
    EXPECT_EQ(video.codec, row.codec);
    EXPECT_EQ(video.averageBitRate, row.bitRate);
    EXPECT_EQ(video.maxKeyFrameInterval, row.keyFrameInterval);
    EXPECT_EQ(video.maxKeyFrameIntervalDurationSeconds, 2.0);
    EXPECT_EQ(video.h264HighAutoLevel, row.codec == VideoCodec::h264);
    EXPECT_TRUE(std::holds_alternative<AudioOutputSettings>(settings[1]));
    EXPECT_TRUE(std::holds_alternative<AudioOutputSettings>(settings[2]));
    EXPECT_EQ(setup.value().streamConfiguration.frameRate, rawValue(row.frameRate));
    EXPECT_TRUE(setup.value().streamConfiguration.showsCursor);
    EXPECT_TRUE(setup.value().videoInput->expectsMediaDataInRealTime());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Setup,
    testing::Values(SetupRow{"p720at30", VideoFrameRate::fps30, RecordingVideoResolution::p720,
                             VideoCodec::hevc, 1800000, 60},
                    SetupRow{"p720at60", VideoFrameRate::fps60, RecordingVideoResolution::p720,
                             VideoCodec::hevc, 3000000, 120},
                    SetupRow{"p1080at30", VideoFrameRate::fps30, RecordingVideoResolution::p1080,
                             VideoCodec::hevc, 3500000, 60},
                    SetupRow{"p1080at60", VideoFrameRate::fps60, RecordingVideoResolution::p1080,
                             VideoCodec::hevc, 6000000, 120},
                    SetupRow{"nativeAt30", VideoFrameRate::fps30, RecordingVideoResolution::native,
                             VideoCodec::h264, 7000000, 60},
                    SetupRow{"nativeAt60", VideoFrameRate::fps60, RecordingVideoResolution::native,
                             VideoCodec::h264, 10000000, 120}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(Setup, namesTheInProgressFileWithAnUpperCaseUuid) {
    Result<RecordingCaptureSetup> setup =
        prepare(RecordingVideoResolution::p720, VideoFrameRate::fps30, false, false);
    ASSERT_TRUE(setup.ok());
    const QString name = QFileInfo(setup.value().outputPath).fileName();
    EXPECT_TRUE(
        QRegularExpression(
            QStringLiteral("^kestrum_[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\.mov$"))
            .match(name)
            .hasMatch())
        << name.toStdString();
    EXPECT_TRUE(QDir(folder_.path() + QStringLiteral("/InProgress")).exists());
    EXPECT_EQ(setup.value().systemAudioInput, nullptr);
    EXPECT_EQ(setup.value().microphoneInput, nullptr);
}

TEST_F(Setup, refusedInputsAreLeftOutAndAudioRefusalsLogged) {
    CapturedLog log;
    writers_.configure = [](ScriptedMovieWriter& writer) {
        writer.refuseVideo = true;
        writer.refuseAudio = true;
    };
    Result<RecordingCaptureSetup> setup =
        prepare(RecordingVideoResolution::p720, VideoFrameRate::fps30, true, true);
    ASSERT_TRUE(setup.ok());
    EXPECT_EQ(setup.value().videoInput, nullptr);
    EXPECT_EQ(setup.value().systemAudioInput, nullptr);
    waitForCaptureLogWrites();
    EXPECT_EQ(log.countStartingWith(
                  QStringLiteral("An audio writer input is unavailable; continuing without that track.")),
              2);
}

TEST_F(Setup, writerCreationFailureIsReported) {
    writers_.creationFailure = Error::withDescription(QStringLiteral("no room"));
    Result<RecordingCaptureSetup> setup =
        prepare(RecordingVideoResolution::p720, VideoFrameRate::fps30, true, false);
    ASSERT_FALSE(setup.ok());
    EXPECT_EQ(setup.error().description, QStringLiteral("no room"));
}

}  // namespace
}  // namespace kestrum::test
