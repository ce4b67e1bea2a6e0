#include "ShellTestRig.h"
#include "core/shell/StorageStatusTexts.h"

#include <gtest/gtest.h>

namespace kestrum::test {
namespace {

TEST(StorageStatusTexts, ThePanelLineReadsThePercentageOrTheLimit) {
    struct Case {
        const char* name;
        RecordingStorageUsage usage;
        std::optional<QString> expected;
    };
    const std::vector<Case> cases = {
        {"half full: no warning", usageGB(50, 100), std::nullopt},
        {"just under the warning", usageGB(79.9, 100), std::nullopt},
        {"at the warning", usageGB(80, 100), QStringLiteral("Storage 80% full")},
        {"truncated", usageGB(99.99, 100), QStringLiteral("Storage 99% full")},
        {"used equal to the maximum is the limit, not 100%", usageGB(100, 100),
         QStringLiteral("Storage limit reached — clear space to record")},
        {"over the maximum", usageGB(130, 100),
         QStringLiteral("Storage limit reached — clear space to record")},
        {"no budget, a full drive", usageGB(500, 500, true),
         QStringLiteral("Drive full — clear space to record")},
        {"no budget, a drive 90% full", usageGB(450, 500, true), QStringLiteral("Storage 90% full")},
        {"a lower warning share", usageGB(55, 100, false, 0.5), QStringLiteral("Storage 55% full")},
        {"a zero budget and nothing used is reached", usageGB(0, 0),
         QStringLiteral("Storage limit reached — clear space to record")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(menuBarStorageWarning(c.usage), c.expected);
    }
    EXPECT_EQ(menuBarStorageLine(5, 0, false),
              QStringLiteral("Storage limit reached — clear space to record"));
    EXPECT_EQ(menuBarStorageLine(-1, 0, false), QStringLiteral("Storage 0% full")) << "no positive maximum";
}

TEST(StorageStatusTexts, TheSettingsLinesShowUseBarAndWarning) {
    struct Case {
        const char* name;
        RecordingStorageUsage usage;
        SettingsStorageLines expected;
    };
    const std::vector<Case> cases = {
        {"under budget",
         usageGB(12.345, 100),
         {QStringLiteral("12.35 GB of 100 GB used"), 0.12345, std::nullopt}},
        {"over the warning",
         usageGB(85, 100),
         {QStringLiteral("85 GB of 100 GB used"), 0.85, QStringLiteral("Storage is over 80%")}},
        {"a warning at 55%",
         usageGB(60, 100, false, 0.55),
         {QStringLiteral("60 GB of 100 GB used"), 0.6, QStringLiteral("Storage is over 55%")}},
        {"at the limit",
         usageGB(100, 100),
         {QStringLiteral("100 GB of 100 GB used"), 1.0, QStringLiteral("Storage limit reached")}},
        {"past the limit: the bar stops at full",
         usageGB(150, 100),
         {QStringLiteral("150 GB of 100 GB used"), 1.0, QStringLiteral("Storage limit reached")}},
        {"no budget",
         usageGB(40, 500, true),
         {QStringLiteral("40 GB used, 460 GB free"), 0.08, std::nullopt}},
        {"no budget, the drive full",
         usageGB(500, 500, true),
         {QStringLiteral("500 GB used, 0 bytes free"), 1.0, QStringLiteral("Drive full")}},
        {"an empty folder on an empty budget",
         usageGB(0, 0),
         {QStringLiteral("0 bytes of 0 bytes used"), 0.0, QStringLiteral("Storage limit reached")}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const SettingsStorageLines lines = settingsStorageLines(c.usage);
        EXPECT_EQ(lines.useLine, c.expected.useLine);
        EXPECT_NEAR(lines.usedFraction, c.expected.usedFraction, 1e-9);
        EXPECT_EQ(lines.warning, c.expected.warning);
    }
}

TEST(StorageStatusTexts, ByteCountsReadInDecimalUnits) {
    const std::vector<std::pair<qint64, QString>> cases = {
        {0, QStringLiteral("0 bytes")},
        {1, QStringLiteral("1 byte")},
        {999, QStringLiteral("999 bytes")},
        {1000, QStringLiteral("1 KB")},
        {1499, QStringLiteral("1 KB")},
        {999'999, QStringLiteral("1 MB")},  // rounds up into the next unit
        {1'560'000, QStringLiteral("1.6 MB")},
        {12'345'678'901, QStringLiteral("12.35 GB")},
        {100'000'000'000, QStringLiteral("100 GB")},
        {2'000'000'000'000, QStringLiteral("2 TB")},
        {3'500'000'000'000'000'000, QStringLiteral("3500 PB")},
    };
    for (const auto& [bytes, expected] : cases) EXPECT_EQ(byteCountText(bytes), expected) << bytes;
}

}  // namespace
}  // namespace kestrum::test
