// The lock that tells a recording's living owner from none: held while its holder lives, however the
// holder ends.
#include "base/files/FileOwnershipLock.h"

#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace kestrum {
namespace {

TEST(FileOwnershipLock, OneHolderAtATime) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("movie.mov.lock"));
    auto first = FileOwnershipLock::tryAcquire(path);
    ASSERT_TRUE(first);
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_FALSE(FileOwnershipLock::tryAcquire(path)) << "a second open file of this process";
    first.reset();
    auto second = FileOwnershipLock::tryAcquire(path);
    ASSERT_TRUE(second) << "a lock let go";
    second->removeAndRelease();
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_FALSE(FileOwnershipLock::tryAcquire(folder.filePath(QStringLiteral("missing/x.lock"))));
}

TEST(FileOwnershipLock, AHolderThatIsKilledLeavesTheLockFree) {
    const QString flock = QStandardPaths::findExecutable(QStringLiteral("flock"));
    if (flock.isEmpty()) GTEST_SKIP() << "the flock program (util-linux) is not installed";
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("movie.mov.lock"));
    QProcess holder;
    // --close: the command it runs does not inherit the lock, which stays with flock itself.
    holder.start(flock, {QStringLiteral("--exclusive"), QStringLiteral("--close"), path,
                         QStringLiteral("sleep"), QStringLiteral("60")});
    ASSERT_TRUE(holder.waitForStarted());
    ASSERT_TRUE(test::waitUntil([&] { return !FileOwnershipLock::tryAcquire(path); }, 5000))
        << "the other process never held the lock";
    holder.kill();
    holder.waitForFinished();
    EXPECT_TRUE(test::waitUntil([&] { return FileOwnershipLock::tryAcquire(path) != nullptr; }, 5000));
}

}  // namespace
}  // namespace kestrum
