#include "FakeFileManager.h"
#include "platform/linux/freedesktop/FreedesktopFileActions.h"
#include "support/PrivateSessionBus.h"
#include "support/RequiredServer.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QDBusConnection>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QThread>

namespace kestrum::test {
namespace {

// The test home shares its file system with XDG_DATA_HOME, so the home trash is the one used.
TEST(FreedesktopFileActions, TrashMovesFilesIntoTheHomeTrashAndReportsWhatStays) {
    struct Case {
        QString fileName;
        bool exists;  // made in the test home first; trashed exactly when it exists
    };
    const std::vector<Case> cases = {{QStringLiteral("2026-03-14_21-07_Ranked_Ahri_MIDDLE.mov"), true},
                                     {QStringLiteral("my game.json"), true},
                                     {QStringLiteral("gone.mov"), false}};
    FreedesktopFileActions actions([](const QUrl&) { return false; });
    for (const Case& row : cases) {
        const QString path = testHomeDirectory() + QLatin1Char('/') + row.fileName;
        const QString inTrash =
            qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Trash/files/") + row.fileName;
        ASSERT_TRUE(!row.exists || writeFileBytes(path, "movie bytes"));
        const Status trashed = actions.moveToTrash(path);
        EXPECT_EQ(trashed.ok(), row.exists) << row.fileName.toStdString();
        EXPECT_EQ(trashed.ok() || !trashed.error().description.isEmpty(), true);
        EXPECT_EQ(readFileBytes(inTrash), row.exists ? QByteArray("movie bytes") : QByteArray());
        EXPECT_FALSE(QFile::exists(path));
    }
}

// A plain file where the home trash's folder goes: the move is refused and the file stays where it was
// (Qt alone would have moved it under the working directory).
TEST(FreedesktopFileActions, AnUnusableHomeTrashRefusesAndLeavesTheFile) {
    const QString trash = FreedesktopFileActions::homeTrashFolder();
    const QString aside = trash + QStringLiteral(".aside");
    QDir().rename(trash, aside);
    ASSERT_TRUE(writeFileBytes(trash, "in the way"));
    const QString path = testHomeDirectory() + QStringLiteral("/blocked.mov");
    ASSERT_TRUE(writeFileBytes(path, "movie bytes"));
    FreedesktopFileActions actions([](const QUrl&) { return false; });
    const Status trashed = actions.moveToTrash(path);
    QFile::remove(trash);
    QDir().rename(aside, trash);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().description.contains(trash)) << trashed.error().description.toStdString();
    EXPECT_EQ(readFileBytes(path), QByteArray("movie bytes"));
    EXPECT_FALSE(QFile::exists(QDir::current().filePath(QStringLiteral("files/blocked.mov"))));
}

TEST(FreedesktopFileActions, CopyTextReplacesTheClipboard) {
    FreedesktopFileActions actions;
    for (const QString& text :
         {QStringLiteral("/home/me/Videos/Kestrum/a game.mov"), QStringLiteral("ü ✓")}) {
        actions.copyText(text);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), text);
    }
}

// A private session bus: first with no file manager on it, so reveal opens the folder; then with one,
// which must receive the item's URI.
TEST(FreedesktopFileActions, RevealAsksTheFileManagerAndFallsBackToTheFolder) {
    PrivateSessionBus bus;
    KESTRUM_REQUIRE_SERVER(bus.start(), bus.failure());
    const QString address = bus.address();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    ASSERT_TRUE(QDBusConnection::sessionBus().isConnected());

    QList<QUrl> opened;
    FreedesktopFileActions actions([&opened](const QUrl& url) {
        opened.append(url);
        return true;
    });
    const QString folder = testHomeDirectory() + QStringLiteral("/Videos");
    const QString movie = folder + QStringLiteral("/a game.mov");
    EXPECT_TRUE(actions.open(movie));
    EXPECT_TRUE(actions.reveal(movie));
    EXPECT_EQ(opened, (QList<QUrl>{QUrl::fromLocalFile(movie), QUrl::fromLocalFile(folder)}));

    QThread managerThread;
    FakeFileManager manager;
    manager.moveToThread(&managerThread);
    managerThread.start();
    QDBusConnection managerBus = QDBusConnection::connectToBus(address, QStringLiteral("file-manager"));
    ASSERT_TRUE(managerBus.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), &manager,
                                          QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(managerBus.registerService(QStringLiteral("org.freedesktop.FileManager1")));
    EXPECT_TRUE(actions.reveal(movie));
    EXPECT_EQ(manager.shownItems(),
              QStringList{QStringLiteral("file://") + folder + QStringLiteral("/a%20game.mov")});
    EXPECT_EQ(opened.size(), 2);

    QDBusConnection::disconnectFromBus(QStringLiteral("file-manager"));
    managerThread.quit();
    managerThread.wait();
}

}  // namespace
}  // namespace kestrum::test
