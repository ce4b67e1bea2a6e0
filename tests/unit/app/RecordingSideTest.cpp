// The recording side composed on the fakes: what happens while it is being made.
#include "app/PlatformServices.h"
#include "app/RecordingSide.h"
#include "core/settings/SettingsKeys.h"
#include "core/settings/UserDefaults.h"
#include "platform/fake/FakeSystemLog.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <functional>
#include <memory>

namespace kestrum {
namespace {

// The folder store is made at launch and may fail right then; its errors must reach the system log as
// well as the file, so the system log is installed before it.
TEST(RecordingSide, LaunchTimeFolderErrorsReachTheSystemLog) {
    const QString videos = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    struct Row {
        const char* name;
        std::function<void()> prepare;
        QString expectedError;
    };
    const std::vector<Row> rows{
        {"a remembered folder that is gone",
         [] { UserDefaults::standard().setData("/gone/Recordings", SettingsKeys::recordingsFolderBookmark); },
         QStringLiteral(
             "❌ Could not restore recordings folder: The folder “/gone/Recordings” doesn’t exist.")},
        {"an old folder that cannot move to its new name",
         [&] {
             ASSERT_TRUE(QDir().mkpath(videos + QStringLiteral("/Brindlet")));
             ASSERT_TRUE(test::writeFileBytes(videos + QStringLiteral("/Kestrum"), "a file in the way"));
         },
         QStringLiteral("❌ Could not migrate the recordings folder to Kestrum: Not a directory")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        row.prepare();
        PlatformServices services = makeFakePlatformServices();
        const auto systemLog = std::make_shared<FakeSystemLog>();
        services.systemLog = systemLog;
        { const RecordingSide side(std::move(services)); }
        const QList<FakeSystemLog::Line> lines = systemLog->lines();
        ASSERT_FALSE(lines.isEmpty());
        EXPECT_EQ(lines.first(), (FakeSystemLog::Line{SystemLog::Level::Error, row.expectedError}));
        (void)QFile::remove(videos + QStringLiteral("/Kestrum"));
        (void)QDir(videos + QStringLiteral("/Brindlet")).removeRecursively();
    }
}

}  // namespace
}  // namespace kestrum
