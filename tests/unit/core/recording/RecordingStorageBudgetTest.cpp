#include "RecordingTestSupport.h"
#include "core/recording/RecordingStorageBudget.h"
#include "core/settings/SettingsKeys.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <sys/statvfs.h>

namespace kestrum::test {
namespace {

qint64 allocatedBytesOf(const QString& path) {
    struct stat status {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0) return -1;
    const qint64 allocated = static_cast<qint64>(status.st_blocks) * 512;
    return allocated == 0 && status.st_size > 0 ? static_cast<qint64>(status.st_size) : allocated;
}

TEST(storageLimitBytes, ReadsTheBudgetSettings) {
    struct Case {
        const char* name;
        std::optional<UserDefaultsValue> enabled;
        std::optional<double> gigabytes;
        RecordingStorageLimit expected;
    };
    const std::vector<Case> cases = {
        {"nothing stored: a budget of 100 GB applies", std::nullopt, std::nullopt, {100'000'000'000, false}},
        {"a maximum of 0", std::nullopt, 0.0, {100'000'000'000, false}},
        {"a maximum of -5", std::nullopt, -5.0, {100'000'000'000, false}},
        {"decimal gigabytes, truncated", std::nullopt, 1.5000000005, {1'500'000'000, false}},
        {"turned off", UserDefaultsValue(false), 250.0, {0, true}},
        {"turned on", UserDefaultsValue(true), 2.0, {2'000'000'000, false}},
        {"a text is no Boolean", UserDefaultsValue(QStringLiteral("no")), 2.0, {2'000'000'000, false}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        QTemporaryDir dir;
        UserDefaults defaults(dir.path() + QStringLiteral("/defaults.json"));
        if (c.enabled) defaults.setObject(*c.enabled, SettingsKeys::recordingStorageLimitEnabled);
        if (c.gigabytes) defaults.setDouble(*c.gigabytes, SettingsKeys::recordingStorageMaximumGigabytes);
        EXPECT_EQ(storageLimitBytes(defaults), c.expected);
    }
}

TEST(storageWarningFraction, IsTheStoredPercentageOrEightyPerCent) {
    const std::vector<std::pair<std::optional<double>, double>> cases = {
        {std::nullopt, 0.8}, {0.0, 0.8}, {-10.0, 0.8}, {50.0, 0.5}, {95.5, 0.955}};
    for (const auto& [stored, expected] : cases) {
        SCOPED_TRACE(stored ? std::to_string(*stored) : "nothing stored");
        QTemporaryDir dir;
        UserDefaults defaults(dir.path() + QStringLiteral("/defaults.json"));
        if (stored) defaults.setDouble(*stored, SettingsKeys::recordingStorageWarningPercentage);
        EXPECT_DOUBLE_EQ(storageWarningFraction(defaults), expected);
    }
}

TEST(measureStorageUsage, CountsVisibleRegularFilesOfNestedFolders) {
    QTemporaryDir dir;
    const QString root = dir.path() + QStringLiteral("/Kestrum");
    const QStringList counted = {root + QStringLiteral("/a.mov"), root + QStringLiteral("/a.json"),
                                 root + QStringLiteral("/2026/March/b.mov"),
                                 root + QStringLiteral("/notes.txt")};
    const QStringList skipped = {root + QStringLiteral("/.hidden.mov"),
                                 root + QStringLiteral("/.cache/big.bin"),
                                 root + QStringLiteral("/2026/.trash/c.mov")};
    qint64 expected = 0;
    for (const QString& path : counted) {
        ASSERT_TRUE(writeFileBytes(path, QByteArray(10'000, 'x')));
        expected += allocatedBytesOf(path);
    }
    for (const QString& path : skipped) ASSERT_TRUE(writeFileBytes(path, QByteArray(50'000, 'h')));
    ASSERT_TRUE(QFile::link(root + QStringLiteral("/a.mov"), root + QStringLiteral("/link.mov")));
    ASSERT_TRUE(QFile::link(dir.path(), root + QStringLiteral("/loop")));  // never followed

    const RecordingStorageUsage limited = measureStorageUsage(root, 123'456, false, 0.7);
    EXPECT_EQ(limited, (RecordingStorageUsage{expected, 123'456, 0.7, false}));
    EXPECT_EQ(recordingsFolderAllocatedBytes(root), expected);
}

TEST(measureStorageUsage, WithoutABudgetTheMaximumIsUsedPlusFreeSpace) {
    QTemporaryDir dir;
    ASSERT_TRUE(writeFileBytes(dir.path() + QStringLiteral("/a.mov"), QByteArray(4096, 'x')));
    struct statvfs volume {};
    ASSERT_EQ(statvfs(QFile::encodeName(dir.path()).constData(), &volume), 0);
    const qint64 freeBytes = static_cast<qint64>(volume.f_bavail) * static_cast<qint64>(volume.f_frsize);
    const RecordingStorageUsage usage = measureStorageUsage(dir.path(), 999, true, 0.8);
    EXPECT_TRUE(usage.isUnlimited);
    EXPECT_GT(usage.usedBytes, 0);
    // Free space moves with other writers on the machine; allow a margin for them.
    EXPECT_NEAR(static_cast<double>(usage.maximumBytes - usage.usedBytes), static_cast<double>(freeBytes),
                64e6);
    EXPECT_FALSE(usage.isLimitReached());
}

TEST(measureStorageUsage, FolderThatIsGoneCountsNothingAndTakesFreeSpaceFromItsParent) {
    QTemporaryDir dir;
    const QString gone = dir.path() + QStringLiteral("/Unplugged/Volume/Kestrum");
    const RecordingStorageUsage usage = measureStorageUsage(gone, 0, true, 0.8);
    EXPECT_EQ(usage.usedBytes, 0);
    EXPECT_GT(usage.maximumBytes, 0) << "free space of the nearest existing parent";
}

TEST(nearestExistingPath, WalksUpToSomethingThatExists) {
    QTemporaryDir dir;
    ASSERT_TRUE(writeFileBytes(dir.path() + QStringLiteral("/file"), "x"));
    const std::vector<std::pair<QString, QString>> cases = {
        {dir.path(), dir.path()},
        {dir.path() + QStringLiteral("/a/b/c"), dir.path()},
        {dir.path() + QStringLiteral("//a/./b/"), dir.path()},
        {dir.path() + QStringLiteral("/file"), dir.path() + QStringLiteral("/file")},
        {QStringLiteral("/kestrum-no-such-root/x"), QStringLiteral("/")},
        {QStringLiteral("/"), QStringLiteral("/")},
    };
    for (const auto& [path, expected] : cases) {
        SCOPED_TRACE(path.toStdString());
        EXPECT_EQ(nearestExistingPath(path), expected);
    }
}

}  // namespace
}  // namespace kestrum::test
