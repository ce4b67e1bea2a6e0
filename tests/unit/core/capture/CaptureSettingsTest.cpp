#include "core/capture/CaptureLogText.h"
#include "core/capture/RecordingCaptureSettings.h"
#include "core/settings/SettingsKeys.h"
#include "platform/fake/FakeMicrophoneAccess.h"
#include "support/CapturedLog.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace kestrum::test {
namespace {

struct MicrophoneRow {
    bool wanted;
    int status;
    bool used;
    const char* line;  // empty: nothing logged
};

class MicrophoneDecision : public testing::TestWithParam<MicrophoneRow> {};

TEST_P(MicrophoneDecision, usesOnlyAnAuthorisedMicrophoneAndSaysWhyNot) {
    const MicrophoneRow row = GetParam();
    CapturedLog log;
    EXPECT_EQ(decideMicrophoneUse(row.wanted, static_cast<MicrophoneAccess::Status>(row.status)), row.used);
    waitForCaptureLogWrites();
    const QStringList expected =
        QString::fromUtf8(row.line).isEmpty() ? QStringList() : QStringList{row.line};
    EXPECT_EQ(log.lines(), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, MicrophoneDecision,
    testing::Values(
        MicrophoneRow{false, 3, false, ""}, MicrophoneRow{false, 2, false, ""},
        MicrophoneRow{true, 3, true, ""},
        MicrophoneRow{true, 1, false,
                      "Microphone access is unavailable; continuing without microphone audio."},
        MicrophoneRow{true, 2, false,
                      "Microphone access is unavailable; continuing without microphone audio."},
        MicrophoneRow{true, 0, false,
                      "Microphone access has not been requested; continuing without microphone audio."},
        MicrophoneRow{true, 7, false,
                      "Microphone authorization is unknown; continuing without microphone audio."}));

TEST(CaptureSettings, readsEachKeyWithItsDefaultAndBounds) {
    QTemporaryDir home;
    UserDefaults defaults(home.path() + QStringLiteral("/defaults.json"));
    FakeMicrophoneAccess microphone;
    microphone.setStatus(MicrophoneAccess::Status::authorized);
    EXPECT_EQ(readRecordingCaptureSettings(defaults, microphone), RecordingCaptureSettings{});

    defaults.setBool(false, SettingsKeys::recordSystemAudio);
    defaults.setBool(true, SettingsKeys::recordMicrophone);
    defaults.setString(QStringLiteral("p4k"), SettingsKeys::recordingVideoResolution);
    defaults.setInteger(45, SettingsKeys::recordingVideoFrameRate);
    defaults.setDouble(5, SettingsKeys::systemAudioVolume);
    defaults.setDouble(-1, SettingsKeys::microphoneVolume);
    const RecordingCaptureSettings read = readRecordingCaptureSettings(defaults, microphone);
    EXPECT_EQ(read, (RecordingCaptureSettings{false, true, RecordingVideoResolution::p720,
                                              VideoFrameRate::fps30, 2.0, 0.0}));
    EXPECT_EQ(displayText(read.resolution), QStringLiteral("720p"));
}

TEST(CaptureLogText, selectedWindowLineNamesWindowOwnerAndFrame) {
    const ShareableWindow titled{42, QStringLiteral("League of Legends (TM) Client"),
                                 QRectF(0, 24.5, 1280, 720), true,
                                 ShareableApplication{4242, {}, QStringLiteral("League of Legends.exe")}};
    EXPECT_EQ(selectedCaptureWindowLine(titled),
              QStringLiteral(
                  "Selected League capture window: id=42, title=League of Legends (TM) Client, "
                  "owner=League of Legends.exe, pid=4242, title=(0.0, 24.5, 1280.0, 720.0), onScreen=true."));
    const ShareableWindow bare{7, std::nullopt, QRectF(10, 20, 30, 40), false, std::nullopt};
    EXPECT_EQ(selectedCaptureWindowLine(bare),
              QStringLiteral(
                  "Selected League capture window: id=7, title=<untitled>, owner=<unknown>, pid=<unknown>, "
                  "title=(10.0, 20.0, 30.0, 40.0), onScreen=false."));
}

TEST(CaptureLogText, secondsKeepEveryDigitAndADecimalPoint) {
    EXPECT_EQ(secondsText(12.0), QStringLiteral("12.0"));
    EXPECT_EQ(secondsText(0.1), QStringLiteral("0.1"));
    EXPECT_EQ(secondsText(1234.567891234), QStringLiteral("1234.567891234"));
}

}  // namespace
}  // namespace kestrum::test
