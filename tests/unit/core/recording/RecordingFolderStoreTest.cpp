#include "RecordingTestSupport.h"
#include "core/recording/RecordingFolderStore.h"
#include "core/settings/SettingsKeys.h"
#include "platform/fake/FakeFolderPicker.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <unistd.h>

namespace kestrum::test {
namespace {

class RecordingFolderStore : public testing::Test {
  protected:
    void SetUp() override {
        resetCaptureLogFile();
        QDir(moviesPath()).removeRecursively();
    }
    void TearDown() override { QDir(moviesPath()).removeRecursively(); }

    static QString moviesPath() { return QStandardPaths::writableLocation(QStandardPaths::MoviesLocation); }

    QTemporaryDir dir_;
    UserDefaults defaults_{dir_.path() + QStringLiteral("/defaults.json")};
    FakeFolderPicker picker_;
};

TEST_F(RecordingFolderStore, DefaultFolderMigratesTheLegacyFolderOnce) {
    struct Case {
        const char* name;
        bool newExists;
        bool legacyExists;
        bool legacyMovable;
        QString expectedName;
        bool expectsLog;
    };
    const std::vector<Case> cases = {
        {"neither exists", false, false, true, QStringLiteral("Kestrum"), false},
        {"only the new one", true, false, true, QStringLiteral("Kestrum"), false},
        {"both exist: the new one wins", true, true, true, QStringLiteral("Kestrum"), false},
        {"only the legacy one: moved", false, true, true, QStringLiteral("Kestrum"), false},
        {"the move fails: the legacy one stays in use", false, true, false, QStringLiteral("Brindlet"), true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SetUp();
        const QString legacy = moviesPath() + QStringLiteral("/Brindlet");
        if (c.newExists) QDir().mkpath(moviesPath() + QStringLiteral("/Kestrum"));
        if (c.legacyExists) {
            ASSERT_TRUE(writeFileBytes(legacy + QStringLiteral("/old.mov"), "old"));
        }
        // A file by the new name makes the rename of the legacy folder fail, whatever the privileges.
        if (!c.legacyMovable) {
            ASSERT_TRUE(writeFileBytes(moviesPath() + QStringLiteral("/Kestrum"), "a file"));
        }

        const QString folder = kestrum::RecordingFolderStore::defaultFolderPath();
        EXPECT_EQ(folder, moviesPath() + QLatin1Char('/') + c.expectedName);
        if (c.legacyExists && !c.newExists && c.legacyMovable) {
            EXPECT_EQ(readFileBytes(folder + QStringLiteral("/old.mov")), QByteArray("old"));
            EXPECT_FALSE(QFileInfo::exists(legacy));
        }
        const QStringList log = captureLogLines();
        ASSERT_EQ(log.size(), c.expectsLog ? 1 : 0);
        if (c.expectsLog) {
            EXPECT_TRUE(log[0].startsWith(
                QStringLiteral("[ERROR] [Capture] Could not migrate the recordings folder to Kestrum: ")));
        }
    }
}

TEST_F(RecordingFolderStore, RestoresAStoredFolderAndForgetsAnUnusableOne) {
    const QString chosen = dir_.path() + QStringLiteral("/Chosen");
    QDir().mkpath(chosen);
    ASSERT_TRUE(writeFileBytes(dir_.path() + QStringLiteral("/plain-file"), "x"));
    struct Case {
        const char* name;
        std::optional<QByteArray> stored;
        QString expectedFolder;
        bool forgotten;
    };
    const QString defaultFolder = moviesPath() + QStringLiteral("/Kestrum");
    const std::vector<Case> cases = {
        {"nothing stored", std::nullopt, defaultFolder, false},
        {"a usable folder", chosen.toUtf8(), chosen, false},
        {"a folder that is gone", (dir_.path() + QStringLiteral("/Gone")).toUtf8(), defaultFolder, true},
        {"a relative path", QByteArray("Videos/Kestrum"), defaultFolder, true},
        {"an empty path", QByteArray(), defaultFolder, true},
        {"a file, not a folder", (dir_.path() + QStringLiteral("/plain-file")).toUtf8(), defaultFolder, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SetUp();
        defaults_.removeObjectForKey(SettingsKeys::recordingsFolderBookmark);
        if (c.stored) defaults_.setData(*c.stored, SettingsKeys::recordingsFolderBookmark);
        const kestrum::RecordingFolderStore store(defaults_, picker_);
        EXPECT_EQ(store.folderPath(), c.expectedFolder);
        EXPECT_EQ(store.folderURL(), QUrl::fromLocalFile(c.expectedFolder));
        EXPECT_EQ(defaults_.dataForKey(SettingsKeys::recordingsFolderBookmark).has_value(),
                  c.stored && !c.forgotten);
        const QStringList log = captureLogLines();
        ASSERT_EQ(log.size(), c.forgotten ? 1 : 0);
        if (c.forgotten) {
            EXPECT_TRUE(
                log[0].startsWith(QStringLiteral("[ERROR] [Capture] Could not restore recordings folder: ")));
        }
    }
}

TEST_F(RecordingFolderStore, ChooseFolderShowsThePickerAndRemembersTheChoice) {
    kestrum::RecordingFolderStore store(defaults_, picker_);
    QSignalSpy changed(&store, &kestrum::RecordingFolderStore::folderURLChanged);
    const QString before = store.folderPath();

    picker_.setAnswer(std::nullopt);  // cancelled
    store.chooseFolder();
    EXPECT_EQ(store.folderPath(), before);
    EXPECT_EQ(changed.count(), 0);

    const QString chosen = dir_.path() + QStringLiteral("/Über Aufnahmen");
    QDir().mkpath(chosen);
    picker_.setAnswer(chosen);
    store.chooseFolder();
    ASSERT_EQ(picker_.requests().size(), 2);
    const FolderPicker::Request request = picker_.requests().at(0);
    EXPECT_EQ(request.title, QStringLiteral("Choose Recordings Folder"));
    EXPECT_EQ(request.prompt, QStringLiteral("Choose"));
    EXPECT_EQ(request.message, QStringLiteral("Kestrum will save new recordings and timeline files here."));
    EXPECT_EQ(request.startDirectoryPath, before);
    EXPECT_TRUE(request.canCreateDirectories);
    EXPECT_EQ(store.folderPath(), chosen);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(defaults_.dataForKey(SettingsKeys::recordingsFolderBookmark), chosen.toUtf8());

    // The choice survives a restart.
    const kestrum::RecordingFolderStore restarted(defaults_, picker_);
    EXPECT_EQ(restarted.folderPath(), chosen);
}

TEST_F(RecordingFolderStore, UnusableChoiceIsRefusedWithALogLine) {
    kestrum::RecordingFolderStore store(defaults_, picker_);
    const QString before = store.folderPath();
    store.takeFolder(QStringLiteral("relative/folder"));
    EXPECT_EQ(store.folderPath(), before);
    EXPECT_FALSE(defaults_.dataForKey(SettingsKeys::recordingsFolderBookmark).has_value());
    const QStringList log = captureLogLines();
    ASSERT_EQ(log.size(), 1);
    EXPECT_TRUE(
        log[0].startsWith(QStringLiteral("[ERROR] [Capture] Could not remember recordings folder: ")));
}

TEST_F(RecordingFolderStore, FolderIsUsableWhenItsNearestExistingParentIsWritable) {
    const QString readOnly = dir_.path() + QStringLiteral("/ReadOnly");
    const auto setReadOnly = [&](bool locked) {
        QFile::setPermissions(readOnly, locked ? QFile::ReadOwner | QFile::ExeOwner
                                               : QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    };
    QDir().mkpath(readOnly);
    setReadOnly(true);
    // A privileged user writes anywhere; the read-only rows only hold for the others.
    const bool permissionsApply = ::access(QFile::encodeName(readOnly).constData(), W_OK) != 0;
    setReadOnly(false);
    const std::vector<std::pair<QString, bool>> cases = {
        {QStringLiteral("/Writable"), true},
        {QStringLiteral("/Writable/Not/Made/Yet"), true},
        {QStringLiteral("/ReadOnly"), !permissionsApply},
        {QStringLiteral("/ReadOnly/Not/Made/Yet"), !permissionsApply},
    };
    kestrum::RecordingFolderStore store(defaults_, picker_);
    for (const auto& [suffix, usable] : cases) {
        SCOPED_TRACE(suffix.toStdString());
        // Made so that it can be taken, then gone again above the existing part of the table.
        QDir().mkpath(dir_.path() + suffix);
        store.takeFolder(dir_.path() + suffix);
        ASSERT_EQ(store.folderPath(), dir_.path() + suffix);
        QDir(dir_.path() + QStringLiteral("/Writable/Not")).removeRecursively();
        QDir(readOnly + QStringLiteral("/Not")).removeRecursively();
        setReadOnly(true);
        EXPECT_EQ(store.isFolderUsable(), usable);
        setReadOnly(false);
    }
}

TEST_F(RecordingFolderStore, DisplayPathWritesTheHomeFolderAsTilde) {
    const QString home = QDir::homePath();
    QDir().mkpath(home + QStringLiteral("/Videos/Kestrum"));
    QDir().mkpath(home + QStringLiteral("2/Other"));
    const std::vector<std::pair<QString, QString>> cases = {
        {home + QStringLiteral("/Videos/Kestrum"), QStringLiteral("~/Videos/Kestrum")},
        {home, QStringLiteral("~")},
        {home + QStringLiteral("2/Other"), home + QStringLiteral("2/Other")},  // only a whole component
        {dir_.path(), dir_.path()},
    };
    kestrum::RecordingFolderStore store(defaults_, picker_);
    for (const auto& [folder, expected] : cases) {
        SCOPED_TRACE(folder.toStdString());
        store.takeFolder(folder);
        EXPECT_EQ(store.folderDisplayPath(), expected);
    }
    QDir(home + QStringLiteral("2")).removeRecursively();
}

}  // namespace
}  // namespace kestrum::test
