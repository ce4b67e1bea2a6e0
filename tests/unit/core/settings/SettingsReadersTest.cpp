#include "core/settings/SettingsReaders.h"

#include "core/settings/SettingsKeys.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <functional>
#include <limits>
#include <optional>
#include <vector>

namespace {

using kestrum::UserDefaults;
using kestrum::UserDefaultsValue;
using kestrum::VideoFrameRate;
namespace Keys = kestrum::SettingsKeys;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

template <class T>
struct ReaderCase {
    const char* name;
    std::optional<UserDefaultsValue> stored;  // absent: the key is missing
    T expected;
};

// Stores each case's value alone under `key` in a fresh store and reads it back with `reader`.
template <class T>
void expectReads(const QString& key, const std::function<T(const UserDefaults&)>& reader,
                 const std::vector<ReaderCase<T>>& cases) {
    for (const ReaderCase<T>& c : cases) {
        SCOPED_TRACE(c.name);
        const QTemporaryDir folder;
        UserDefaults defaults(folder.filePath(QStringLiteral("defaults.json")));
        if (c.stored) defaults.setObject(*c.stored, key);
        EXPECT_EQ(reader(defaults), c.expected);
    }
}

UserDefaultsValue text(const char* s) {
    return UserDefaultsValue(QString::fromUtf8(s));
}
UserDefaultsValue integer(qint64 i) {
    return UserDefaultsValue(i);
}
UserDefaultsValue real(double d) {
    return UserDefaultsValue(d);
}
UserDefaultsValue boolean(bool b) {
    return UserDefaultsValue(b);
}

TEST(readKestrumAppearance, UnknownOrMissingReadsSystem) {
    using kestrum::KestrumAppearance;
    expectReads<KestrumAppearance>(Keys::kestrumAppearance, kestrum::readKestrumAppearance,
                                   {{"missing", std::nullopt, KestrumAppearance::system},
                                    {"dark", text("dark"), KestrumAppearance::dark},
                                    {"light", text("light"), KestrumAppearance::light},
                                    {"other case", text("Dark"), KestrumAppearance::system},
                                    {"unknown", text("sepia"), KestrumAppearance::system}});
}

TEST(readRecordingVideoResolution, UnknownOrMissingReadsP720) {
    using kestrum::RecordingVideoResolution;
    expectReads<RecordingVideoResolution>(
        Keys::recordingVideoResolution, kestrum::readRecordingVideoResolution,
        {{"missing", std::nullopt, RecordingVideoResolution::p720},
         {"p1080", text("p1080"), RecordingVideoResolution::p1080},
         {"native", text("native"), RecordingVideoResolution::native},
         {"display text", text("1080p"), RecordingVideoResolution::p720},
         {"share-only value", text("p1440"), RecordingVideoResolution::p720}});
}

TEST(readLeagueShareResolution, UnknownOrMissingReadsP720) {
    using kestrum::LeagueShareResolution;
    expectReads<LeagueShareResolution>(
        Keys::leagueShareResolution, kestrum::readLeagueShareResolution,
        {{"missing", std::nullopt, LeagueShareResolution::p720},
         {"p1440", text("p1440"), LeagueShareResolution::p1440},
         {"recording-only value", text("native"), LeagueShareResolution::p720}});
}

// Both frame rates share the rule: only an integer read of exactly 60 gives 60.
TEST(readRecordingVideoFrameRate, OnlySixtyReadsSixtyAsInReadLeagueShareFrameRate) {
    const std::vector<ReaderCase<VideoFrameRate>> cases = {
        {"missing", std::nullopt, VideoFrameRate::fps30},
        {"60", integer(60), VideoFrameRate::fps60},
        {"45", integer(45), VideoFrameRate::fps30},
        {"120", integer(120), VideoFrameRate::fps30},
        {"-60", integer(-60), VideoFrameRate::fps30},
        {"60.9 truncates", real(60.9), VideoFrameRate::fps60},
        {"text 60", text("60"), VideoFrameRate::fps60},
        {"Boolean", boolean(true), VideoFrameRate::fps30},
    };
    expectReads<VideoFrameRate>(Keys::recordingVideoFrameRate, kestrum::readRecordingVideoFrameRate, cases);
    SCOPED_TRACE("leagueShareFrameRate");
    expectReads<VideoFrameRate>(Keys::leagueShareFrameRate, kestrum::readLeagueShareFrameRate, cases);
}

TEST(readRecordSystemAudio, MissingReadsTrueOtherwiseThePlainBooleanRead) {
    expectReads<bool>(Keys::recordSystemAudio, kestrum::readRecordSystemAudio,
                      {{"missing", std::nullopt, true},
                       {"false", boolean(false), false},
                       {"integer 2", integer(2), true},
                       {"text NO", text("NO"), false},
                       {"text that is no word", text("maybe"), false}});
}

TEST(readRecordMicrophone, MissingReadsFalseAsInReadPlaybackMuted) {
    const std::vector<ReaderCase<bool>> cases = {
        {"missing", std::nullopt, false}, {"true", boolean(true), true}, {"integer 1", integer(1), true}};
    expectReads<bool>(Keys::recordMicrophone, kestrum::readRecordMicrophone, cases);
    SCOPED_TRACE("playbackMuted");
    expectReads<bool>(Keys::playbackMuted, kestrum::readPlaybackMuted, cases);
}

TEST(loadVolume, MissingReadsOneOtherwiseClampedToZeroAndTwo) {
    const std::vector<ReaderCase<double>> cases = {
        {"missing", std::nullopt, 1.0},
        {"-1", real(-1), 0.0},
        {"0", real(0), 0.0},
        {"1.5", real(1.5), 1.5},
        {"2", real(2), 2.0},
        {"3", real(3), 2.0},
        {"text 1.25", text("1.25"), 1.25},
        {"infinity", real(kInfinity), 2.0},
        {"NaN", real(kNaN), 1.0},
    };
    for (const QLatin1String key : {Keys::systemAudioVolume, Keys::microphoneVolume}) {
        SCOPED_TRACE(key.data());
        expectReads<double>(
            key, [key](const UserDefaults& d) { return kestrum::loadVolume(d, key); }, cases);
    }
}

// The numbers 0 and 1 bridge to Booleans; any other stored value is no Boolean and reads true.
TEST(readRecordingStorageLimitEnabled, TrueWhenMissingOrNoBooleanAsInReadLeagueShareIncludesAudio) {
    const std::vector<ReaderCase<bool>> cases = {
        {"missing", std::nullopt, true},
        {"false", boolean(false), false},
        {"integer 0 bridges to false", integer(0), false},
        {"double 0.0 bridges to false", real(0.0), false},
        {"integer 2 is no Boolean", integer(2), true},
        {"text false is no Boolean", text("false"), true},
        {"data is no Boolean", UserDefaultsValue(QByteArray()), true},
    };
    expectReads<bool>(Keys::recordingStorageLimitEnabled, kestrum::readRecordingStorageLimitEnabled, cases);
    SCOPED_TRACE("leagueShareIncludesAudio");
    expectReads<bool>(Keys::leagueShareIncludesAudio, kestrum::readLeagueShareIncludesAudio, cases);
}

TEST(readRecordingStorageMaximumGigabytes, NotPositiveReadsOneHundred) {
    expectReads<double>(Keys::recordingStorageMaximumGigabytes, kestrum::readRecordingStorageMaximumGigabytes,
                        {{"missing", std::nullopt, 100.0},
                         {"0", real(0), 100.0},
                         {"-5", real(-5), 100.0},
                         {"NaN", real(kNaN), 100.0},
                         {"250", real(250), 250.0},
                         {"integer 500", integer(500), 500.0}});
}

TEST(readRecordingStorageWarningPercentage, NotPositiveReadsEighty) {
    expectReads<double>(Keys::recordingStorageWarningPercentage,
                        kestrum::readRecordingStorageWarningPercentage,
                        {{"missing", std::nullopt, 80.0}, {"0", real(0), 80.0}, {"90", real(90), 90.0}});
}

TEST(readPlaybackVolume, MissingReadsOneOtherwiseClampedToThePlayersRange) {
    expectReads<double>(Keys::playbackVolume, kestrum::readPlaybackVolume,
                        {{"missing", std::nullopt, 1.0},
                         {"-1", real(-1), 0.0},
                         {"0.35", real(0.35), 0.35},
                         {"1.5", real(1.5), 1.0},
                         {"NaN", real(kNaN), 1.0}});
}

}  // namespace
