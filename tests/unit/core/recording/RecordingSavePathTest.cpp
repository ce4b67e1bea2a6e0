#include "RecordingTestSupport.h"
#include "core/notifications/RecordingNotifications.h"
#include "core/recording/RecordingFileName.h"
#include "core/recording/RecordingSavePath.h"
#include "core/telemetry/RecordingSidecarStore.h"
#include "core/telemetry/SessionDocumentBuilder.h"
#include "platform/fake/FakeFolderPicker.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoroTask>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrl>

namespace kestrum::test {
namespace {

const ReferenceDate kDate =
    ReferenceDate::fromDateTime(QDateTime(QDate(2026, 3, 14), QTime(21, 7, 55), Qt::LocalTime));
const RecordingMetadata kMetadata{std::nullopt, "CLASSIC", "Miss Fortune", "NONE"};

// A recordings folder in a private home, a fresh capture log, a notification centre of its own.
class saveRecording : public testing::Test {
  public:
    void SetUp() override {
        resetCaptureLogFile();
        folderPath_ = home_.path() + QStringLiteral("/Recordings");
        QDir().mkpath(folderPath_);
        folderStore_.takeFolder(folderPath_);
        QDir().mkpath(RecordingSavePath::inProgressFolderPath());
        token_ = center_.observe(RecordingNotifications::recordingSaved, nullptr,
                                 [this](const QVariantMap& userInfo) { notifications_.append(userInfo); });
    }

    QString writeTemporaryMovie(const QByteArray& bytes) {
        const QString path = RecordingSavePath::inProgressFolderPath() + QStringLiteral("/capture.mov");
        EXPECT_TRUE(writeFileBytes(path, bytes));
        return path;
    }

    void save(const QString& temporaryPath, std::vector<RecordingEvent> events = {}) {
        QCoro::waitFor(savePath_.saveRecording(temporaryPath, kDate, kMetadata, std::move(events), {}));
    }

    QString expectedMoviePath() const {
        return folderPath_ + QLatin1Char('/') + recordingFileName(kDate.toDateTime(), kMetadata);
    }

    QTemporaryDir home_;
    UserDefaults defaults_{home_.path() + QStringLiteral("/defaults.json")};
    FakeFolderPicker picker_;
    RecordingFolderStore folderStore_{defaults_, picker_};
    NotificationCenter center_;
    RecordingSavePath savePath_{folderStore_, center_};
    NotificationObserverToken token_;
    QList<QVariantMap> notifications_;
    QString folderPath_;
};

TEST_F(saveRecording, MovesTheMovieWritesTheDocumentAndPosts) {
    const QString temporary = writeTemporaryMovie("movie bytes");
    std::vector<RecordingEvent> events(2);
    testing::internal::CaptureStdout();
    save(temporary, events);
    const std::string printed = testing::internal::GetCapturedStdout();

    const QString moviePath = expectedMoviePath();
    EXPECT_FALSE(QFileInfo::exists(temporary));
    EXPECT_EQ(readFileBytes(moviePath), QByteArray("movie bytes"));
    const auto document = RecordingSidecarStore::shared().readSessionData(sessionDocumentPath(moviePath));
    ASSERT_TRUE(document.has_value());
    EXPECT_EQ(document->events.size(), 2u);
    ASSERT_TRUE(document->apmSamples.has_value()) << "written as an empty array";
    EXPECT_TRUE(document->apmSamples->empty());
    EXPECT_EQ(printed,
              "🎥 [GameCapturer] Match recorded! Saved directly to: " + moviePath.toStdString() + "\n");
    EXPECT_EQ(captureLogLines(),
              QStringList{QStringLiteral("[INFO] [Capture] Match recording saved to ") + moviePath});
    ASSERT_EQ(notifications_.size(), 1);
    EXPECT_EQ(notifications_[0].value(RecordingNotifications::urlKey).toUrl(),
              QUrl::fromLocalFile(moviePath));
    EXPECT_EQ(notifications_[0].value(RecordingNotifications::isHighlightKey), QVariant(false));
}

TEST_F(saveRecording, SameNameReplacesTheOlderRecording) {
    save(writeTemporaryMovie("first game"));
    save(writeTemporaryMovie("second game"));
    EXPECT_EQ(readFileBytes(expectedMoviePath()), QByteArray("second game"));
    EXPECT_EQ(QDir(folderPath_).entryList({QStringLiteral("*.mov")}, QDir::Files).size(), 1);
    EXPECT_EQ(notifications_.size(), 2);
}

TEST_F(saveRecording, FolderGoneSinceTheStartIsMadeAnew) {
    ASSERT_TRUE(QDir(folderPath_).removeRecursively());
    save(writeTemporaryMovie("movie"));
    EXPECT_EQ(readFileBytes(expectedMoviePath()), QByteArray("movie"));
}

TEST_F(saveRecording, FailuresBeforeTheMoveKeepTheTemporaryFileAndPostNothing) {
    struct Case {
        const char* name;
        std::function<QString(saveRecording&)> prepare;  // gives the temporary path
        std::string printedPrefix;
        QString loggedPrefix;
    };
    const std::vector<Case> cases = {
        {"no temporary file",
         [](saveRecording&) { return QStringLiteral("/nonexistent/capture.mov"); },
         "⚠️ [GameCapturer] Temp file was not found on disk. Skipping save.\n",
         {}},
        {"folder cannot be made",
         [](saveRecording& t) {
             QDir(t.folderPath_).removeRecursively();
             writeFileBytes(t.folderPath_, "a file where the folder should be");
             return t.writeTemporaryMovie("movie");
         },
         "❌ [GameCapturer] IO error moving file: ",
         QStringLiteral("[ERROR] [Capture] Could not move recording into Movies: ")},
        {"destination cannot be replaced",
         [](saveRecording& t) {
             QDir().mkpath(t.expectedMoviePath() +
                           QStringLiteral("/inside"));  // a non-empty folder by that name
             return t.writeTemporaryMovie("movie");
         },
         "❌ [GameCapturer] IO error moving file: ",
         QStringLiteral("[ERROR] [Capture] Could not move recording into Movies: ")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SetUp();
        notifications_.clear();
        const QString temporary = c.prepare(*this);
        testing::internal::CaptureStdout();
        save(temporary);
        const std::string printed = testing::internal::GetCapturedStdout();
        EXPECT_EQ(printed.rfind(c.printedPrefix, 0), 0u) << printed;
        const QStringList log = captureLogLines();
        if (c.loggedPrefix.isEmpty()) {
            EXPECT_TRUE(log.isEmpty());
        } else {
            ASSERT_EQ(log.size(), 1);
            EXPECT_TRUE(log[0].startsWith(c.loggedPrefix)) << log[0].toStdString();
            EXPECT_GT(log[0].size(), c.loggedPrefix.size()) << "the description follows";
            EXPECT_TRUE(QFileInfo::exists(temporary));
        }
        EXPECT_TRUE(notifications_.isEmpty());
        QFile::remove(folderPath_);
        QDir(folderPath_).removeRecursively();
    }
}

TEST_F(saveRecording, SidecarFailureStillKeepsTheMovieAndPosts) {
    // A folder in the document's place makes its atomic write fail.
    QDir().mkpath(sessionDocumentPath(expectedMoviePath()) + QStringLiteral("/blocker"));
    testing::internal::CaptureStdout();
    save(writeTemporaryMovie("movie"));
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(readFileBytes(expectedMoviePath()), QByteArray("movie"));
    EXPECT_NE(printed.find("⚠️ [GameCapturer] Video saved, but timeline data could not be saved: "),
              std::string::npos);
    EXPECT_NE(printed.find("🎥 [GameCapturer] Match recorded! Saved directly to: "), std::string::npos);
    // The document's failure is console only.
    EXPECT_EQ(captureLogLines(), QStringList{QStringLiteral("[INFO] [Capture] Match recording saved to ") +
                                             expectedMoviePath()});
    EXPECT_EQ(notifications_.size(), 1);
}

TEST(moveFile, CopiesAcrossFileSystems) {
    // /dev/shm is a separate tmpfs on Linux; the rename from there fails with EXDEV.
    QTemporaryDir memory(QStringLiteral("/dev/shm/kestrum-move-XXXXXX"));
    QTemporaryDir disk;
    if (!memory.isValid() || !disk.isValid()) GTEST_SKIP() << "/dev/shm is not available on this machine";
    const QString source = memory.path() + QStringLiteral("/capture.mov");
    ASSERT_TRUE(writeFileBytes(source, QByteArray(100'000, 'm')));
    const QString destination = disk.path() + QStringLiteral("/final.mov");
    ASSERT_TRUE(RecordingSavePath::moveFile(source, destination).ok());
    EXPECT_FALSE(QFileInfo::exists(source));
    EXPECT_EQ(readFileBytes(destination), QByteArray(100'000, 'm'));
}

}  // namespace
}  // namespace kestrum::test
