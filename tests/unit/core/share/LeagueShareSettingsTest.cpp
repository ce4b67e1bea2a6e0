#include "core/settings/SettingsKeys.h"
#include "core/share/LeagueShareSettings.h"
#include "core/share/LeagueShareStatus.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

namespace kestrum::test {
namespace {

struct StoredRow {
    const char* name;
    std::optional<UserDefaultsValue> resolution;
    std::optional<UserDefaultsValue> frameRate;
    std::optional<UserDefaultsValue> includesAudio;
    LeagueShareResolution expectedResolution;
    VideoFrameRate expectedFrameRate;
    bool expectedAudio;
};

TEST(LeagueShareSettings, readsDefaultsAndUnknownValues) {
    using R = LeagueShareResolution;
    using F = VideoFrameRate;
    const StoredRow rows[] = {
        {"missing", {}, {}, {}, R::p720, F::fps30, true},
        {"stored", UserDefaultsValue(QStringLiteral("p1440")), UserDefaultsValue(qint64{60}),
         UserDefaultsValue(false), R::p1440, F::fps60, false},
        {"unknown text and rate", UserDefaultsValue(QStringLiteral("1080p")), UserDefaultsValue(qint64{45}),
         UserDefaultsValue(true), R::p720, F::fps30, true},
        {"wrong types", UserDefaultsValue(qint64{1080}), UserDefaultsValue(QStringLiteral("sixty")),
         UserDefaultsValue(QStringLiteral("no")), R::p720, F::fps30, true},
        {"case matters", UserDefaultsValue(QStringLiteral("P1080")), UserDefaultsValue(qint64{30}),
         UserDefaultsValue(qint64{0}), R::p720, F::fps30, false},
    };
    for (const StoredRow& row : rows) {
        QTemporaryDir folder;
        UserDefaults defaults(folder.filePath(QStringLiteral("defaults.json")));
        if (row.resolution) defaults.setObject(*row.resolution, SettingsKeys::leagueShareResolution);
        if (row.frameRate) defaults.setObject(*row.frameRate, SettingsKeys::leagueShareFrameRate);
        if (row.includesAudio) defaults.setObject(*row.includesAudio, SettingsKeys::leagueShareIncludesAudio);
        const LeagueShareSettings settings(defaults);
        EXPECT_EQ(settings.resolution(), row.expectedResolution) << row.name;
        EXPECT_EQ(settings.frameRate(), row.expectedFrameRate) << row.name;
        EXPECT_EQ(settings.includesAudio(), row.expectedAudio) << row.name;
    }
}

TEST(LeagueShareSettings, writesEachChangeAtOnceUnderItsKey) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("defaults.json"));
    {
        UserDefaults defaults(path);
        LeagueShareSettings settings(defaults);
        settings.setResolution(LeagueShareResolution::p1080);
        settings.setFrameRate(VideoFrameRate::fps60);
        settings.setIncludesAudio(false);
        EXPECT_EQ(defaults.stringForKey(SettingsKeys::leagueShareResolution), QStringLiteral("p1080"));
        EXPECT_EQ(defaults.integerForKey(SettingsKeys::leagueShareFrameRate), 60);
    }
    UserDefaults reread(path);
    const LeagueShareSettings settings(reread);
    EXPECT_EQ(settings.resolution(), LeagueShareResolution::p1080);
    EXPECT_EQ(settings.frameRate(), VideoFrameRate::fps60);
    EXPECT_FALSE(settings.includesAudio());
}

TEST(LeagueShareStatus, titlesAndSymbols) {
    struct Row {
        LeagueShareStatus status;
        QString title;
        QString symbol;
    };
    const Row rows[] = {
        {LeagueShareStatus::stopped(), QStringLiteral("Sharing paused"), {}},
        {LeagueShareStatus::waiting(), QStringLiteral("Waiting for League"), {}},
        {LeagueShareStatus::sharingClient(), QStringLiteral("League Client"),
         QStringLiteral("rectangle.on.rectangle")},
        {LeagueShareStatus::sharingGame(), QStringLiteral("League of Legends"),
         QStringLiteral("dot.radiowaves.left.and.right")},
        {LeagueShareStatus::permissionRequired(), QStringLiteral("Screen Recording permission required"),
         QStringLiteral("lock.shield")},
        {LeagueShareStatus::failed(QStringLiteral("x")), QStringLiteral("Share unavailable"),
         QStringLiteral("exclamationmark.triangle")},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.status.title(), row.title);
        EXPECT_EQ(row.status.symbol(), row.symbol) << row.title.toStdString();
    }
    EXPECT_NE(LeagueShareStatus::failed(QStringLiteral("a")), LeagueShareStatus::failed(QStringLiteral("b")));
}

}  // namespace
}  // namespace kestrum::test
