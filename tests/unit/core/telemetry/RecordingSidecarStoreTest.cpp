#include "core/telemetry/RecordingSidecarStore.h"
#include "core/telemetry/SessionDocumentBuilder.h"
#include "core/telemetry/SessionDocumentCodec.h"

#include "SessionDocumentFixtures.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <future>
#include <latch>
#include <limits>
#include <memory>
#include <thread>
#include <vector>

// The fixture bears the name of the class under test, so it lives apart from it and names it in full.
namespace kestrum::test {
namespace {

using Store = ::kestrum::RecordingSidecarStore;

QByteArray bytesOf(const std::string& text) {
    return QByteArray::fromStdString(text);
}

RecordingSessionData exampleSession() {
    return decodeSessionData(telemetryFixture("example-document.json")).value();
}

// Runs `work` on its own thread and reports whether it finished within a generous bound. A store whose
// lock was left held makes the work block forever; the test then fails instead of hanging (the blocked
// thread is abandoned, and later tests in the same process would block on the store as well).
bool finishesPromptly(std::function<void()> work) {
    auto done = std::make_shared<std::promise<void>>();
    std::future<void> finished = done->get_future();
    std::thread([work = std::move(work), done] {
        work();
        done->set_value();
    }).detach();
    return finished.wait_for(std::chrono::seconds(20)) == std::future_status::ready;
}

class RecordingSidecarStore : public testing::Test {
  protected:
    QString pathOf(const QString& name) const { return folder_.filePath(name); }
    // Everything in the folder but `except`: an atomic write must leave no temporary file behind.
    QStringList strayFiles(const QString& except) const {
        QStringList names = QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
        names.removeAll(except);
        return names;
    }

    Store& store_ = Store::shared();
    QTemporaryDir folder_;
};

TEST_F(RecordingSidecarStore, WritesTheEncodingAndReadsItBack) {
    const RecordingSessionData session = decodeSessionData(telemetryFixture("full-document.json")).value();
    const QString path = pathOf("2026-03-14_21-07-55.json");
    ASSERT_TRUE(store_.writeSessionData(session, path).ok());
    EXPECT_EQ(readFileBytes(path), bytesOf(telemetryFixture("full-document.json")));
    EXPECT_EQ(store_.readSessionData(path), session);
    EXPECT_TRUE(strayFiles("2026-03-14_21-07-55.json").isEmpty());
    ASSERT_TRUE(store_.writeSessionData(exampleSession(), path).ok());
    EXPECT_EQ(readFileBytes(path), bytesOf(telemetryFixture("example-document.json")));
}

TEST_F(RecordingSidecarStore, UnreadableDocumentsGiveNothingAndStayOnDisk) {
    const std::vector<std::pair<const char*, QByteArray>> cases = {
        {"not JSON", "GameStart at 3.4"},
        {"no events", R"({"schemaVersion":4})"},
        {"bad team", R"({"events":[{"id":1,"name":"a","videoTime":0,"team":"green"}]})"},
        {"empty", ""},
    };
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        const QString path = pathOf(QStringLiteral("broken.json"));
        ASSERT_TRUE(writeFileBytes(path, bytes));
        EXPECT_EQ(store_.readSessionData(path), std::nullopt);
        EXPECT_EQ(readFileBytes(path), bytes);
    }
    EXPECT_EQ(store_.readSessionData(pathOf("missing.json")), std::nullopt);
    EXPECT_EQ(store_.readSessionData(folder_.path()), std::nullopt);
}

TEST_F(RecordingSidecarStore, RewriteTransformsTheCurrentContent) {
    const QString path = pathOf("doc.json");
    ASSERT_TRUE(
        writeFileBytes(path, R"({"events":[],"scoreboard":null,"unknown":{"a":1},"metadataRevision":5})"));
    const Status status = store_.rewriteSessionData(path, [](RecordingSessionData session) {
        EXPECT_EQ(session.metadataRevision, 5);
        return retitledSessionData(std::move(session), "Title");
    });
    ASSERT_TRUE(status.ok()) << status.error().description.toStdString();
    const auto written = store_.readSessionData(path);
    ASSERT_TRUE(written);
    EXPECT_EQ(written->metadataRevision, 6);
    EXPECT_FALSE(written->scoreboard);
    const QString expectedStart = QStringLiteral(R"({"events":[],"metadataRevision":6,"recordingID":")");
    const QString text = QString::fromUtf8(readFileBytes(path));
    EXPECT_TRUE(text.startsWith(expectedStart)) << text.toStdString();
    EXPECT_TRUE(text.endsWith(QStringLiteral(R"(","schemaVersion":4,"title":"Title"})")))
        << text.toStdString();
}

TEST_F(RecordingSidecarStore, RewriteNeverOverwritesWhatItCannotRead) {
    const std::vector<std::pair<const char*, QByteArray>> cases = {
        {"truncated", QByteArray::fromStdString(telemetryFixture("example-document.json")).left(40)},
        {"unknown enrichment", R"({"enrichment":{"attempts":0,"status":"stalled"},"events":[]})"},
        {"integer fraction", R"({"events":[],"metadataRevision":1.5})"},
    };
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        const QString path = pathOf("doc.json");
        ASSERT_TRUE(writeFileBytes(path, bytes));
        bool called = false;
        const Status status = store_.rewriteSessionData(path, [&](RecordingSessionData session) {
            called = true;
            return session;
        });
        EXPECT_FALSE(status.ok());
        EXPECT_FALSE(called);
        EXPECT_EQ(readFileBytes(path), bytes);
        EXPECT_TRUE(finishesPromptly([&] { store_.readSessionData(path); }));
    }
    EXPECT_FALSE(store_.rewriteSessionData(pathOf("missing.json"), [](auto s) { return s; }).ok());
    EXPECT_FALSE(QFile::exists(pathOf("missing.json")));
}

TEST_F(RecordingSidecarStore, NonFiniteValueFailsTheWriteAndKeepsTheFile) {
    const QString path = pathOf("doc.json");
    ASSERT_TRUE(store_.writeSessionData(exampleSession(), path).ok());
    const QByteArray before = readFileBytes(path);
    RecordingSessionData spoiled = exampleSession();
    spoiled.events.at(0).videoTime = std::numeric_limits<double>::quiet_NaN();
    const Status status = store_.writeSessionData(spoiled, path);
    ASSERT_FALSE(status.ok());
    EXPECT_TRUE(status.error().description.contains(QStringLiteral("events[0].videoTime")))
        << status.error().description.toStdString();
    EXPECT_EQ(readFileBytes(path), before);
    EXPECT_TRUE(strayFiles("doc.json").isEmpty());

    const Status rewrite = store_.rewriteSessionData(path, [](RecordingSessionData session) {
        session.scoreboard = {RecordingScoreboardSnapshot{std::numeric_limits<double>::infinity(), 0, {}}};
        return session;
    });
    EXPECT_FALSE(rewrite.ok());
    EXPECT_EQ(readFileBytes(path), before);
    EXPECT_TRUE(finishesPromptly([&] { EXPECT_TRUE(store_.readSessionData(path)); }));
}

TEST_F(RecordingSidecarStore, RacingRewritesEachApplyInTurn) {
    const QString path = pathOf("doc.json");
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE(round);
        RecordingSessionData session = exampleSession();
        session.metadataRevision = round;
        ASSERT_TRUE(store_.writeSessionData(session, path).ok());
        std::latch start(2);
        const auto rewrite = [&] {
            start.arrive_and_wait();
            return store_.rewriteSessionData(path, [](RecordingSessionData current) {
                // Widen the window between read and write that an unlocked store would lose an update in.
                std::this_thread::sleep_for(std::chrono::microseconds(200));
                return retitledSessionData(std::move(current), "Raced");
            });
        };
        auto first = std::async(std::launch::async, rewrite);
        auto second = std::async(std::launch::async, rewrite);
        EXPECT_TRUE(first.get().ok());
        EXPECT_TRUE(second.get().ok());
        EXPECT_EQ(store_.readSessionData(path)->metadataRevision, round + 2);
    }
}

TEST_F(RecordingSidecarStore, ReaderSeesOneWholeDocumentOrTheOther) {
    const QString path = pathOf("doc.json");
    const RecordingSessionData small = exampleSession();
    RecordingSessionData large = decodeSessionData(telemetryFixture("full-document.json")).value();
    for (int i = 0; i < 200; ++i) large.scoreboard->push_back(large.scoreboard->front());
    ASSERT_TRUE(store_.writeSessionData(small, path).ok());

    std::atomic<bool> writing = true;
    auto writer = std::async(std::launch::async, [&] {
        int failures = 0;
        for (int i = 0; i < 300; ++i)
            failures += store_.writeSessionData(i % 2 ? small : large, path).ok() ? 0 : 1;
        writing = false;
        return failures;
    });
    // A reader outside the store (another process, a file manager preview) takes no lock: only the
    // atomic replacement keeps it from seeing a partial file.
    auto outsideReader = std::async(std::launch::async, [&] {
        int partial = 0;
        while (writing) {
            const QByteArray bytes = readFileBytes(path);
            if (!decodeSessionData(
                    std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())))) {
                ++partial;
            }
        }
        return partial;
    });
    int reads = 0;
    int unexpected = 0;
    while (writing || reads == 0) {
        const auto read = store_.readSessionData(path);
        if (!read || (*read != small && *read != large)) ++unexpected;
        ++reads;
    }
    EXPECT_EQ(writer.get(), 0);
    EXPECT_EQ(unexpected, 0) << "of " << reads << " reads";
    EXPECT_EQ(outsideReader.get(), 0);
}

// One way a write can fail: prepares the folder (with an old file where the case allows one) and
// returns the target path.
struct FailedWriteCase {
    const char* name;
    std::function<QString(const QString& folder)> prepare;
    bool needsPermissionChecks = false;
};

void PrintTo(const FailedWriteCase& c, std::ostream* out) {
    *out << c.name;
}

class RecordingSidecarStoreFailedWrite : public testing::TestWithParam<FailedWriteCase> {};

TEST_P(RecordingSidecarStoreFailedWrite, ReportsReleasesAndKeepsTheOldFile) {
    if (GetParam().needsPermissionChecks && geteuid() == 0) {
        GTEST_SKIP() << "running as root: file permissions do not stop root's writes";
    }
    QTemporaryDir folder;
    rlimit sizeLimit{};
    getrlimit(RLIMIT_FSIZE, &sizeLimit);
    const QString target = GetParam().prepare(folder.path());
    const QByteArray before = readFileBytes(target);
    const Status status = Store::shared().writeSessionData(exampleSession(), target);
    // Undo the preparation's restrictions before any assertion can return early.
    setrlimit(RLIMIT_FSIZE, &sizeLimit);
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    ASSERT_FALSE(status.ok());
    EXPECT_FALSE(status.error().description.isEmpty());
    EXPECT_EQ(readFileBytes(target), before);
    const QStringList left = QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
    EXPECT_TRUE(left.isEmpty() || left == QStringList{QStringLiteral("old.json")})
        << left.join(u' ').toStdString();
    EXPECT_TRUE(finishesPromptly([&] { Store::shared().readSessionData(target); }));
}

QString writeOldDocument(const QString& folder) {
    const QString path = folder + QStringLiteral("/old.json");
    writeFileBytes(path, R"({"events":[],"title":"old"})");
    return path;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RecordingSidecarStoreFailedWrite,
    testing::Values(FailedWriteCase{"MissingFolder",
                                    [](const QString& folder) {
                                        return folder + QStringLiteral("/gone/doc.json");
                                    }},
                    FailedWriteCase{"TargetIsAFolder",
                                    [](const QString& folder) {
                                        const QString path = folder + QStringLiteral("/doc.json");
                                        QDir().mkpath(path);
                                        writeFileBytes(path + QStringLiteral("/inside"), "kept");
                                        return path;
                                    }},
                    // The disk filling up mid-write: the file size limit cuts the temporary file short.
                    FailedWriteCase{"WriteCutShort",
                                    [](const QString& folder) {
                                        const QString path = writeOldDocument(folder);
                                        std::signal(SIGXFSZ, SIG_IGN);
                                        rlimit limit{};
                                        getrlimit(RLIMIT_FSIZE, &limit);
                                        limit.rlim_cur = 64;
                                        setrlimit(RLIMIT_FSIZE, &limit);
                                        return path;
                                    }},
                    FailedWriteCase{"ReadOnlyFolder",
                                    [](const QString& folder) {
                                        const QString path = writeOldDocument(folder);
                                        QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
                                        return path;
                                    },
                                    true}),
    [](const testing::TestParamInfo<FailedWriteCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kestrum::test
