// The kestrum program launched as a user would: twice, and ended by signals. It runs on the fake adapters
// and the offscreen platform, in the test's private profile.
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <memory>

namespace kestrum::test {
namespace {

class Launch {
  public:
    explicit Launch(const QByteArray& startupID = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("KESTRUM_PLATFORM"), QStringLiteral("fake"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        // One runtime folder for this program's launches (the instance's socket lies there), not the
        // machine's shared default, where another checkout's tests may run a Kestrum at the same time.
        static const QTemporaryDir runtime;
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime.path());
        if (!startupID.isEmpty())
            environment.insert(QStringLiteral("DESKTOP_STARTUP_ID"), QString::fromUtf8(startupID));
        process_.setProcessEnvironment(environment);
        process_.setProcessChannelMode(QProcess::MergedChannels);
        QObject::connect(&process_, &QProcess::readyReadStandardOutput,
                         [this] { output_ += QString::fromUtf8(process_.readAllStandardOutput()); });
        process_.start(QStringLiteral(KESTRUM_BINARY_PATH), {});
    }
    ~Launch() {
        if (process_.state() == QProcess::NotRunning) return;
        process_.kill();
        process_.waitForFinished(5000);
    }

    bool waitForLine(const QString& text, int timeoutMs = 20000) {
        return waitUntil([&] { return output_.contains(text); }, timeoutMs);
    }
    bool waitForEnd(int timeoutMs = 20000) {
        return waitUntil([&] { return process_.state() == QProcess::NotRunning; }, timeoutMs);
    }
    void signal(int number) { ::kill(static_cast<pid_t>(process_.processId()), number); }
    bool endedWithZero() const {
        return process_.exitStatus() == QProcess::NormalExit && process_.exitCode() == 0;
    }
    const QString& output() const { return output_; }
    QString exitDescription() const {
        return process_.exitStatus() == QProcess::CrashExit
                   ? QStringLiteral("crashed; ")
                   : QStringLiteral("exit status %1; ").arg(process_.exitCode());
    }

  private:
    QProcess process_;
    QString output_;
};

TEST(KestrumLaunch, ASecondLaunchHandsOverToTheFirstAndExitsZero) {
    Launch first;
    ASSERT_TRUE(first.waitForLine(QStringLiteral("Kestrum is running"))) << first.output().toStdString();
    for (const QByteArray& startupID : {QByteArray("launcher-1_TIME100"), QByteArray()}) {
        SCOPED_TRACE(startupID.isEmpty() ? "from a terminal" : "from a launcher");
        const int requestsBefore =
            first.output().count(QStringLiteral("another launch asked for the review window"));
        Launch second(startupID);
        ASSERT_TRUE(second.waitForEnd()) << second.output().toStdString();
        EXPECT_TRUE(second.endedWithZero());
        EXPECT_TRUE(second.output().contains(QStringLiteral("Kestrum is already running")));
        EXPECT_FALSE(second.output().contains(QStringLiteral("Kestrum is running"))) << "no second recorder";
        EXPECT_TRUE(waitUntil([&] {
            return first.output().count(QStringLiteral("another launch asked for the review window")) ==
                   requestsBefore + 1;
        }));
    }
}

TEST(KestrumLaunch, SignalsQuitOnceAndTheNextLaunchIsTheInstance) {
    for (const int signalNumber : {SIGTERM, SIGINT}) {
        SCOPED_TRACE(signalNumber == SIGTERM ? "SIGTERM" : "SIGINT");
        Launch first;
        ASSERT_TRUE(first.waitForLine(QStringLiteral("Kestrum is running"))) << first.output().toStdString();
        first.signal(signalNumber);
        first.signal(signalNumber);  // a second request while the first runs changes nothing
        ASSERT_TRUE(first.waitForEnd()) << first.output().toStdString();
        EXPECT_TRUE(first.endedWithZero())
            << first.exitDescription().toStdString() << first.output().toStdString();
        EXPECT_EQ(first.output().count(QStringLiteral("Kestrum is quitting")), 1)
            << first.output().toStdString();
    }
    Launch next;
    EXPECT_TRUE(next.waitForLine(QStringLiteral("Kestrum is running"))) << "the ended instance left no claim";
}

}  // namespace
}  // namespace kestrum::test
