// Recordings a crash left in the in-progress folder, brought into the recordings folder at launch.
#include "RecordingTestSupport.h"
#include "core/notifications/RecordingNotifications.h"
#include "core/recording/RecordingFileName.h"
#include "core/recording/RecordingRecovery.h"
#include "core/telemetry/RecordingSidecarStore.h"
#include "core/telemetry/RecordingTelemetryJournalCodec.h"
#include "platform/fake/FakeFolderPicker.h"
#include "support/ScriptedMovieRecovery.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoroTask>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>

namespace kestrum::test {
namespace {

const ReferenceDate kStarted =
    ReferenceDate::fromDateTime(QDateTime(QDate(2026, 5, 2), QTime(20, 15, 0), Qt::LocalTime));
const RecordingMetadata kMetadata{std::nullopt, "CLASSIC", "Ahri", "MIDDLE"};

RecordingEvent event(std::int64_t id, double videoTime) {
    RecordingEvent made;
    made.id = id;
    made.videoTime = videoTime;
    made.name = "ChampionKill";
    return made;
}

std::string journalLine(RecordingTelemetryJournalLine line) {
    return encodeRecordingTelemetryJournalLine(line).value();
}

// A complete telemetry journal: start, metadata, two events, one snapshot.
QByteArray fullJournal() {
    RecordingTelemetryJournalLine start;
    start.recordingStartedAt = kStarted;
    RecordingTelemetryJournalLine metadata;
    metadata.metadata = kMetadata;
    RecordingTelemetryJournalLine events;
    events.events = std::vector{event(4, 31.5), event(2, 12.0)};
    RecordingTelemetryJournalLine snapshot;
    snapshot.snapshot = RecordingScoreboardSnapshot{40.0, 30.0, {}};
    return QByteArray::fromStdString(journalLine(start) + journalLine(metadata) + journalLine(events) +
                                     journalLine(snapshot));
}

class RecordingRecoveryTest : public testing::Test {
  public:
    void SetUp() override {
        resetCaptureLogFile();
        QDir().mkpath(recordingsFolder_);
        QDir().mkpath(inProgress_);
        folderStore_.takeFolder(recordingsFolder_);
        token_ = center_.observe(RecordingNotifications::recordingSaved, nullptr,
                                 [this](const QVariantMap& userInfo) { saved_.append(userInfo); });
    }

    // An in-progress recording as a crash leaves it: a movie, its movie journal, maybe a telemetry journal,
    // and a lock file nobody holds.
    QString leaveOrphan(const QString& name, const std::optional<QByteArray>& telemetry) {
        const QString movie = inProgress_ + QLatin1Char('/') + name;
        EXPECT_TRUE(writeFileBytes(movie, "movie bytes"));
        EXPECT_TRUE(writeFileBytes(movie + QStringLiteral(".journal"), "journal bytes"));
        EXPECT_TRUE(writeFileBytes(movie + QStringLiteral(".lock"), ""));
        if (telemetry) {
            EXPECT_TRUE(writeFileBytes(movie + QStringLiteral(".telemetry"), *telemetry));
        }
        return movie;
    }
    int recover() { return QCoro::waitFor(recovery_.recoverOrphans()); }
    QStringList savedMovies() const {
        return QDir(recordingsFolder_).entryList({QStringLiteral("*.mov")}, QDir::Files);
    }

    QTemporaryDir home_;
    const QString recordingsFolder_ = home_.path() + QStringLiteral("/Recordings");
    const QString inProgress_ = home_.path() + QStringLiteral("/InProgress");
    UserDefaults defaults_{home_.path() + QStringLiteral("/defaults.json")};
    FakeFolderPicker picker_;
    RecordingFolderStore folderStore_{defaults_, picker_};
    NotificationCenter center_;
    RecordingSavePath savePath_{folderStore_, center_};
    ScriptedMovieRecovery movies_;
    RecordingRecovery recovery_{movies_, savePath_, inProgress_};
    NotificationObserverToken token_;
    QList<QVariantMap> saved_;
};

TEST_F(RecordingRecoveryTest, EveryOrphanGoesThroughTheSavePathWithWhatItsJournalsHold) {
    const QByteArray journal = fullJournal();
    const QByteArray cutJournal = journal.left(journal.size() - 10);  // the snapshot line torn by the crash
    struct Case {
        const char* name;
        std::optional<QByteArray> telemetry;
        Result<RecoveredMovie> rebuilt;
        QString logLine;
        std::size_t events;
        std::size_t snapshots;
        bool namedFromJournal;
    };
    const std::vector<Case> cases{
        {"rebuilt, with its whole journal", journal, RecoveredMovie{83.44, false, 5000, 0},
         QStringLiteral("[INFO] [Capture] Recovered an unfinished recording: it holds 83.4 seconds."), 2, 1,
         true},
        {"rebuilt, the journal's last line torn", cutJournal, RecoveredMovie{7.0, false, 400, 0},
         QStringLiteral("[INFO] [Capture] Recovered an unfinished recording: it holds 7.0 seconds."), 2, 0,
         true},
        {"not playable, no telemetry journal", std::nullopt,
         Error::withDescription(QStringLiteral("The movie has no journal to rebuild it from.")),
         QStringLiteral(
             "[ERROR] [Capture] An unfinished recording could not be made playable (The movie has no "
             "journal to rebuild it from.); it is kept as it is."),
         0, 0, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        resetCaptureLogFile();
        saved_.clear();
        for (const QString& name : savedMovies()) QFile::remove(recordingsFolder_ + QLatin1Char('/') + name);
        const QString movie = leaveOrphan(QStringLiteral("kestrum_0A.mov"), c.telemetry);
        movies_.answer = c.rebuilt;
        EXPECT_EQ(recover(), 1);

        const QStringList movies = savedMovies();
        ASSERT_EQ(movies.size(), 1);
        if (c.namedFromJournal) {
            EXPECT_EQ(movies.first(), recordingFileName(kStarted.toDateTime(), kMetadata));
        }
        const QString savedMovie = recordingsFolder_ + QLatin1Char('/') + movies.first();
        EXPECT_EQ(readFileBytes(savedMovie), QByteArray("movie bytes"));
        const std::optional<RecordingSessionData> document =
            RecordingSidecarStore::shared().readSessionData(savedMovie.chopped(3) + QStringLiteral("json"));
        ASSERT_TRUE(document);
        EXPECT_EQ(document->events.size(), c.events);
        EXPECT_EQ(document->scoreboard.value_or(std::vector<RecordingScoreboardSnapshot>{}).size(),
                  c.snapshots);
        if (c.events > 0) {
            EXPECT_EQ(document->events.front().id, 2) << "sorted by movie time";
        }
        ASSERT_EQ(saved_.size(), 1);
        EXPECT_EQ(saved_.first()[RecordingNotifications::urlKey].toUrl().toLocalFile(), savedMovie);
        // The file's appends run on the utility pool, so its lines may stand in another order than the
        // calls: each is looked for, not its place.
        const QStringList log = captureLogLines();
        ASSERT_GE(log.size(), 2);
        EXPECT_TRUE(log.contains(c.logLine)) << log.join(QLatin1Char('\n')).toStdString();
        EXPECT_EQ(std::count_if(log.begin(), log.end(),
                                [](const QString& line) {
                                    return line.startsWith(
                                        QStringLiteral("[INFO] [Capture] Match recording saved to "));
                                }),
                  1);
        EXPECT_EQ(movies_.asked().back(), movie);
        EXPECT_TRUE(QDir(inProgress_).isEmpty()) << QDir(inProgress_).entryList().join(' ').toStdString();
    }
}

TEST_F(RecordingRecoveryTest, ALivingRecordingIsNoOrphan) {
    const QString movie = leaveOrphan(QStringLiteral("kestrum_0B.mov"), fullJournal());
    InProgressRecording living = InProgressRecording::claim(movie);
    ASSERT_TRUE(living.isOwned());
    EXPECT_EQ(recover(), 0);
    EXPECT_TRUE(movies_.asked().empty());
    EXPECT_TRUE(QFileInfo::exists(movie));
    EXPECT_TRUE(savedMovies().isEmpty());
}

TEST_F(RecordingRecoveryTest, AnOrphanWhoseSaveFailsWaitsForTheNextLaunch) {
    const QString movie = leaveOrphan(QStringLiteral("kestrum_0C.mov"), fullJournal());
    ASSERT_TRUE(QDir(recordingsFolder_).removeRecursively());
    ASSERT_TRUE(writeFileBytes(recordingsFolder_, "a file where the folder should be"));
    EXPECT_EQ(recover(), 1);
    EXPECT_TRUE(QFileInfo::exists(movie));
    EXPECT_TRUE(QFileInfo::exists(movie + QStringLiteral(".telemetry")));
    EXPECT_TRUE(saved_.isEmpty());

    ASSERT_TRUE(QFile::remove(recordingsFolder_));
    EXPECT_EQ(recover(), 1);
    EXPECT_EQ(savedMovies(), QStringList{recordingFileName(kStarted.toDateTime(), kMetadata)});
    EXPECT_TRUE(QDir(inProgress_).isEmpty());
}

TEST_F(RecordingRecoveryTest, JournalsLeftWithoutTheirMovieAreCleared) {
    const QString movie = leaveOrphan(QStringLiteral("kestrum_0D.mov"), fullJournal());
    ASSERT_TRUE(QFile::remove(movie));  // saved, and the crash came before the journals went
    EXPECT_EQ(recover(), 0);
    EXPECT_TRUE(QDir(inProgress_).isEmpty()) << QDir(inProgress_).entryList().join(' ').toStdString();
}

}  // namespace
}  // namespace kestrum::test
