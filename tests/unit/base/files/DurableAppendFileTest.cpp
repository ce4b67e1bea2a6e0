// The append-only file of the journals: what it holds after appends, and how it fails.
#include "base/files/DurableAppendFile.h"

#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace kestrum {
namespace {

TEST(DurableAppendFile, HoldsExactlyWhatWasAppended) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("journal"));
    ASSERT_TRUE(test::writeFileBytes(path, "older content that must go"));
    DurableAppendFile file;
    ASSERT_TRUE(file.create(path).ok());
    for (const std::string_view chunk : {std::string_view("first "), std::string_view(""),
                                         std::string_view("second\n"), std::string_view("\0x", 2)}) {
        ASSERT_TRUE(file.append(chunk).ok());
        ASSERT_TRUE(file.sync().ok());
    }
    EXPECT_EQ(file.size(), 15);
    EXPECT_EQ(test::readFileBytes(path), QByteArray("first second\n\0x", 15))
        << "no reserve shows in the file";
    file.close();
    EXPECT_EQ(test::readFileBytes(path).size(), 15);
}

TEST(DurableAppendFile, ReportsWhereAndWhyItFailed) {
    QTemporaryDir folder;
    DurableAppendFile file;
    const QString path = folder.filePath(QStringLiteral("missing/journal"));
    const Status created = file.create(path);
    ASSERT_FALSE(created.ok());
    EXPECT_TRUE(created.error().description.startsWith(path + QStringLiteral(": ")));
    EXPECT_FALSE(file.isOpen());
    EXPECT_FALSE(file.append("x").ok());
    EXPECT_FALSE(file.sync().ok());
}

}  // namespace
}  // namespace kestrum
