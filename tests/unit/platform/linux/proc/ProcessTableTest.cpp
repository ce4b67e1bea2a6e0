#include "platform/linux/proc/ProcessTable.h"

#include "core/recording/RecordingBundleIdentifiers.h"
#include "support/DesktopPrinters.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

using kestrum::ProcessTable;
using kestrum::RunningApplication;
namespace ids = kestrum::RecordingBundleIdentifiers;

struct FakeProcess {
    const char* name;  // of the case
    qint32 processIdentifier;
    QByteArray commandLine;
    QString executableTarget;                    // empty: no exe link (a kernel thread)
    std::optional<RunningApplication> expected;  // absent: no application
};

RunningApplication app(qint32 pid, const QString& name, std::optional<QString> identifier = std::nullopt) {
    return RunningApplication{std::move(identifier), pid, name};
}

const std::vector<FakeProcess>& fakeProcesses() {
    using namespace Qt::Literals::StringLiterals;
    static const std::vector<FakeProcess> rows = {
        {"Wine game, Windows path", 100,
         "C:\\Riot Games\\League of Legends\\Game\\League of Legends.exe\0-Port=1\0"_ba,
         u"/usr/bin/wine64-preloader"_s, app(100, u"League of Legends.exe"_s, ids::gameClient)},
        {"client, Windows path",
         9,
         "C:\\Riot Games\\League of Legends\\LeagueClient.exe\0"_ba,
         {},
         app(9, u"LeagueClient.exe"_s, ids::leagueClient)},
        {"client interface, bare name",
         10,
         "LeagueClientUx.exe\0--no-sandbox\0"_ba,
         {},
         app(10, u"LeagueClientUx.exe"_s, ids::leagueClientUx)},
        {"interface renderer, Unix path",
         11,
         "/home/p/.wine/drive_c/Riot Games/League of Legends/LeagueClientUxRender.exe\0"_ba,
         {},
         app(11, u"LeagueClientUxRender.exe"_s, ids::leagueClientUx)},
        {"launcher services, forward slashes",
         12,
         "C:/Riot Games/Riot Client/RiotClientServices.exe\0"_ba,
         {},
         app(12, u"RiotClientServices.exe"_s, ids::riotClient)},
        {"launcher, name with a space",
         13,
         "Riot Client.exe\0"_ba,
         {},
         app(13, u"Riot Client.exe"_s, ids::riotClient)},
        {"argv[0] without its NUL",
         14,
         "LeagueClient.exe"_ba,
         {},
         app(14, u"LeagueClient.exe"_s, ids::leagueClient)},
        {"other case is another name",
         15,
         "league of legends.exe\0"_ba,
         {},
         app(15, u"league of legends.exe"_s)},
        {"ordinary program", 16, "/usr/bin/bash\0-c\0true\0"_ba, u"/usr/bin/bash"_s, app(16, u"bash"_s)},
        {"empty argv[0] falls back to exe", 17, "\0\0"_ba, u"/opt/riot/League of Legends.exe"_s,
         app(17, u"League of Legends.exe"_s, ids::gameClient)},
        {"replaced executable", 18, ""_ba, u"/usr/lib/firefox/firefox (deleted)"_s, app(18, u"firefox"_s)},
        {"kernel thread: no name at all", 2, ""_ba, {}, std::nullopt},
    };
    return rows;
}

// A procfs of the rows in a temporary folder, with entries that are not processes beside them.
class FakeProcRoot {
  public:
    FakeProcRoot() {
        for (const FakeProcess& row : fakeProcesses()) {
            const QString directory = path() + QLatin1Char('/') + QString::number(row.processIdentifier);
            QDir().mkpath(directory);
            QFile commandLine(directory + QStringLiteral("/cmdline"));
            if (commandLine.open(QIODevice::WriteOnly)) commandLine.write(row.commandLine);
            if (!row.executableTarget.isEmpty())
                QFile::link(row.executableTarget, directory + QStringLiteral("/exe"));
        }
        for (const char* other : {"self", "sys", "1a"})
            QDir().mkpath(path() + QLatin1Char('/') + QLatin1String(other));
    }
    QString path() const { return directory_.path(); }

  private:
    QTemporaryDir directory_;
};

TEST(ProcessTable, NamesAndIdentifiesEachProcess) {
    const FakeProcRoot root;
    const ProcessTable table(root.path());
    for (const FakeProcess& row : fakeProcesses()) {
        EXPECT_EQ(table.application(row.processIdentifier), row.expected) << row.name;
    }
    EXPECT_EQ(table.application(4242), std::nullopt) << "a process that is not there";
}

TEST(ProcessTable, ListsTheNamedProcessesInAscendingProcessId) {
    const FakeProcRoot root;
    std::vector<RunningApplication> expected;
    for (const FakeProcess& row : fakeProcesses()) {
        if (row.expected) expected.push_back(*row.expected);
    }
    std::sort(expected.begin(), expected.end(),
              [](const auto& a, const auto& b) { return a.processIdentifier < b.processIdentifier; });
    EXPECT_EQ(ProcessTable(root.path()).applicationsOfCurrentUser(), expected);
    EXPECT_TRUE(ProcessTable(root.path() + QStringLiteral("/missing")).applicationsOfCurrentUser().empty());
}

}  // namespace
