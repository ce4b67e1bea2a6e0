#include "base/log/CaptureLog.h"

#include "base/async/Detached.h"
#include "base/log/CaptureLogFile.h"
#include "platform/fake/FakeSystemLog.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using kestrum::FakeSystemLog;
using Level = kestrum::SystemLog::Level;

const QString kTimestamp = QStringLiteral(R"(\[(\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2}\.\d{3})\] )");

QString logFileText() {
    kestrum::waitForCaptureLogWrites();
    return QString::fromUtf8(kestrum::test::readFileBytes(kestrum::captureLogFilePath()));
}

// Each test starts with a fresh fake system log installed and no log folder on disk.
class writeCaptureLogEntry : public testing::Test {
  protected:
    void SetUp() override {
        kestrum::waitForCaptureLogWrites();
        QDir(kestrum::captureLogDirectoryPath()).removeRecursively();
        kestrum::installCaptureSystemLog(systemLog_);
    }
    void TearDown() override {
        kestrum::waitForCaptureLogWrites();
        kestrum::installCaptureSystemLog(nullptr);
    }

    std::shared_ptr<FakeSystemLog> systemLog_ = std::make_shared<FakeSystemLog>();
};

TEST_F(writeCaptureLogEntry, WritesTheLineToTheFileAndTheMessageToTheSystemLog) {
    struct Case {
        const char* name;
        Level level;
        QString message;
        QString systemLine;
        QString fileTail;  // the line after "[timestamp] "
    };
    const std::vector<Case> cases = {
        {"information", Level::Info, QStringLiteral("Live Game Client verified."),
         QStringLiteral("Live Game Client verified."),
         QStringLiteral("[INFO] [Capture] Live Game Client verified.\n")},
        {"error: the cross mark goes to the system log only", Level::Error,
         QStringLiteral("Finalization failed"), QStringLiteral("❌ Finalization failed"),
         QStringLiteral("[ERROR] [Capture] Finalization failed\n")},
        {"empty message", Level::Info, QString(), QString(), QStringLiteral("[INFO] [Capture] \n")},
        {"line feeds as they stand", Level::Error, QStringLiteral("first\nsecond"),
         QStringLiteral("❌ first\nsecond"), QStringLiteral("[ERROR] [Capture] first\nsecond\n")},
        {"non-ASCII text", Level::Info, QStringLiteral("⚠️ 🎥 Café naïve Ærø"),
         QStringLiteral("⚠️ 🎥 Café naïve Ærø"),
         QStringLiteral("[INFO] [Capture] ⚠️ 🎥 Café naïve Ærø\n")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        QFile::remove(kestrum::captureLogFilePath());
        systemLog_->clear();

        kestrum::writeCaptureLogEntry(c.message, c.level);

        const QString text = logFileText();
        EXPECT_TRUE(QRegularExpression(QLatin1Char('^') + kTimestamp +
                                       QRegularExpression::escape(c.fileTail) + QLatin1Char('$'))
                        .match(text)
                        .hasMatch())
            << text.toStdString();
        // UTF-8 as given with no byte-order mark, and only the first line of the entry has the prefix.
        EXPECT_TRUE(kestrum::test::readFileBytes(kestrum::captureLogFilePath()).startsWith('['));
        EXPECT_EQ(text.count(QRegularExpression(QStringLiteral(R"((^|\n)\[\d{4}-)"))), 1);
        EXPECT_EQ(systemLog_->lines(), (QList<FakeSystemLog::Line>{{c.level, c.systemLine}}));
    }
}

TEST_F(writeCaptureLogEntry, WithoutAnEnabledSystemLogOnlyTheFileGetsTheEntry) {
    // One at a time: two first appends racing for a missing file may lose a line, which is accepted.
    systemLog_->setEnabled(Level::Error, false);
    kestrum::logCaptureError(QStringLiteral("level off"));
    kestrum::waitForCaptureLogWrites();
    kestrum::logCaptureInfo(QStringLiteral("level on"));
    kestrum::installCaptureSystemLog(nullptr);
    kestrum::logCaptureInfo(QStringLiteral("none installed"));

    EXPECT_EQ(systemLog_->lines(), (QList<FakeSystemLog::Line>{{Level::Info, QStringLiteral("level on")}}));
    const QString text = logFileText();
    for (const char* line : {"[ERROR] [Capture] level off\n", "[INFO] [Capture] none installed\n"}) {
        EXPECT_TRUE(text.contains(QLatin1String(line))) << line;
    }
}

// Holds every thread of the utility pool until released, so that queued appends cannot run.
class UtilityPoolHold {
  public:
    UtilityPoolHold() {
        const int threads = kestrum::utilityPool().maxThreadCount();
        for (int i = 0; i < threads; ++i) {
            kestrum::utilityPool().start([this] {
                std::unique_lock lock(mutex_);
                ++running_;
                changed_.notify_all();
                changed_.wait(lock, [this] { return released_; });
            });
        }
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this, threads] { return running_ == threads; });
    }
    ~UtilityPoolHold() { release(); }

    void release() {
        const std::lock_guard lock(mutex_);
        released_ = true;
        changed_.notify_all();
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int running_ = 0;        // guarded by mutex_
    bool released_ = false;  // guarded by mutex_
};

TEST_F(writeCaptureLogEntry, TheTimestampIsTheMomentOfTheCallNotOfTheWrite) {
    UtilityPoolHold hold;
    const qint64 beforeMs = QDateTime::currentMSecsSinceEpoch();
    kestrum::logCaptureInfo(QStringLiteral("held back"));
    const qint64 afterMs = QDateTime::currentMSecsSinceEpoch();
    // The call returned with the append still queued: the caller never waits for the disk.
    EXPECT_FALSE(QFileInfo::exists(kestrum::captureLogFilePath()));
    // The clock moves past the call's window before the append may run.
    while (QDateTime::currentMSecsSinceEpoch() <= afterMs + 2) std::this_thread::yield();
    hold.release();

    const QRegularExpressionMatch match =
        QRegularExpression(QLatin1Char('^') + kTimestamp).match(logFileText());
    ASSERT_TRUE(match.hasMatch());
    const qint64 stampedMs = QLocale()
                                 .toDateTime(match.captured(1), QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"))
                                 .toMSecsSinceEpoch();
    EXPECT_GE(stampedMs, beforeMs);
    EXPECT_LE(stampedMs, afterMs);
}

TEST_F(writeCaptureLogEntry, AppendsToTheFileAndMakesADeletedFolderAgain) {
    kestrum::logCaptureInfo(QStringLiteral("one"));
    kestrum::waitForCaptureLogWrites();
    kestrum::logCaptureInfo(QStringLiteral("two"));
    EXPECT_TRUE(QRegularExpression(QLatin1Char('^') + kTimestamp +
                                   QStringLiteral(R"(\[INFO\] \[Capture\] one\n)") + kTimestamp +
                                   QStringLiteral(R"(\[INFO\] \[Capture\] two\n$)"))
                    .match(logFileText())
                    .hasMatch());

    ASSERT_TRUE(QDir(kestrum::captureLogDirectoryPath()).removeRecursively());
    kestrum::logCaptureInfo(QStringLiteral("three"));
    const QString after = logFileText();
    EXPECT_EQ(after.count(QLatin1Char('\n')), 1);
    EXPECT_TRUE(after.endsWith(QStringLiteral("[Capture] three\n")));
}

// The entry still reaches the system log and the caller returns; only the line is lost, and once the
// folder is usable again the next entry is written.
void expectOnlyTheLineLost(const std::function<void(const QString& folder)>& breakFolder,
                           const std::function<void(const QString& folder)>& repairFolder,
                           FakeSystemLog& systemLog) {
    const QString folder = kestrum::captureLogDirectoryPath();
    breakFolder(folder);
    QFile probe(folder + QStringLiteral("/probe"));
    if (probe.open(QIODevice::WriteOnly)) {
        probe.remove();
        repairFolder(folder);
        GTEST_SKIP() << "this process writes into read-only folders anyway (root without permission checks)";
    }
    kestrum::logCaptureError(QStringLiteral("lost"));
    kestrum::waitForCaptureLogWrites();
    EXPECT_FALSE(QFileInfo(kestrum::captureLogFilePath()).isFile());
    EXPECT_EQ(systemLog.lines(), (QList<FakeSystemLog::Line>{{Level::Error, QStringLiteral("❌ lost")}}));

    repairFolder(folder);
    kestrum::logCaptureInfo(QStringLiteral("written again"));
    EXPECT_TRUE(logFileText().endsWith(QStringLiteral("] [INFO] [Capture] written again\n")));
}

TEST_F(writeCaptureLogEntry, APlainFileWhereTheFolderShouldBeLosesTheLineOnly) {
    expectOnlyTheLineLost([](const QString& folder) { kestrum::test::writeFileBytes(folder, "in the way"); },
                          [](const QString& folder) { QFile::remove(folder); }, *systemLog_);
}

TEST_F(writeCaptureLogEntry, AReadOnlyFolderLosesTheLineOnly) {
    expectOnlyTheLineLost(
        [](const QString& folder) {
            QDir().mkpath(folder);
            QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        },
        [](const QString& folder) {
            QFile::setPermissions(folder,
                                  QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        },
        *systemLog_);
}

TEST_F(writeCaptureLogEntry, ManyThreadsLoggingAtOnceWriteWholeLinesOnly) {
    // The file exists first: two appends that both find it missing may lose a line, which is accepted.
    kestrum::logCaptureInfo(QStringLiteral("first"));
    kestrum::waitForCaptureLogWrites();
    constexpr int kThreads = 8;
    constexpr int kEntries = 250;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < kEntries; ++i) {
                kestrum::logCaptureInfo(QStringLiteral("%1/%2 ").arg(t).arg(i) +
                                        QString(60, QLatin1Char('x')));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();

    QStringList lines = logFileText().split(QLatin1Char('\n'));
    ASSERT_EQ(lines.takeLast(), QString());
    ASSERT_EQ(lines.size(), 1 + kThreads * kEntries);
    const QRegularExpression whole(QLatin1Char('^') + kTimestamp +
                                   QStringLiteral(R"(\[INFO\] \[Capture\] (\d+/\d+) x{60}$)"));
    QSet<QString> seen;
    for (const QString& line : lines.mid(1)) {
        const QRegularExpressionMatch match = whole.match(line);
        ASSERT_TRUE(match.hasMatch()) << line.toStdString();
        seen.insert(match.captured(2));
    }
    EXPECT_EQ(seen.size(), kThreads * kEntries);
}

}  // namespace
