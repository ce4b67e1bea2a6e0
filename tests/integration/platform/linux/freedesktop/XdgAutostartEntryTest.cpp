#include "platform/linux/freedesktop/XdgAutostartEntry.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

namespace kestrum::test {
namespace {

TEST(XdgAutostartEntry, TurningItOnWritesAnEntryTheDesktopStartsAndOffRemovesIt) {
    const QString folder = testConfigDirectory() + QStringLiteral("/autostart");
    XdgAutostartEntry entry(QStringLiteral("/opt/Kestrum Games/bin/kestrum"));
    EXPECT_EQ(entry.filePath(), folder + QStringLiteral("/com.tidemoss.Kestrum.desktop"))
        << "the user's autostart folder under XDG_CONFIG_HOME";
    EXPECT_FALSE(entry.isEnabled()) << "off until turned on";

    ASSERT_TRUE(entry.setEnabled(true).ok());
    EXPECT_TRUE(entry.isEnabled());
    const QByteArray text = readFileBytes(entry.filePath());
    EXPECT_TRUE(text.startsWith("[Desktop Entry]\nType=Application\nName=Kestrum\n")) << text.data();
    EXPECT_TRUE(text.contains("\nExec=\"/opt/Kestrum Games/bin/kestrum\"\n")) << text.data();

    ASSERT_TRUE(entry.setEnabled(false).ok());
    EXPECT_FALSE(QFile::exists(entry.filePath()));
    EXPECT_TRUE(entry.setEnabled(false).ok()) << "turning off what is off is no error";
}

TEST(XdgAutostartEntry, AnEntryTheDesktopDisabledCountsAsOff) {
    struct Case {
        QByteArray text;
        bool enabled;
    };
    const std::vector<Case> cases = {
        {"[Desktop Entry]\nType=Application\nExec=kestrum\n", true},
        {"[Desktop Entry]\nExec=kestrum\nHidden=true\n", false},
        {"[Desktop Entry]\nExec=kestrum\nX-GNOME-Autostart-enabled = false\n", false},
        {"[Desktop Entry]\nExec=kestrum\n[Desktop Action Other]\nHidden=true\n", true},  // another group
        {"", true},
    };
    const QString folder = testHomeDirectory() + QStringLiteral("/autostart-cases");
    XdgAutostartEntry entry(QStringLiteral("/usr/bin/kestrum"), folder);
    for (const Case& c : cases) {
        ASSERT_TRUE(writeFileBytes(entry.filePath(), c.text));
        EXPECT_EQ(entry.isEnabled(), c.enabled) << c.text.data();
    }
}

// A file where the autostart folder should be stops every change, even for root.
TEST(XdgAutostartEntry, AFolderThatCannotBeMadeGivesAClearErrorAndChangesNothing) {
    const QString blocked = testHomeDirectory() + QStringLiteral("/blocked-autostart");
    ASSERT_TRUE(writeFileBytes(blocked, "not a folder"));
    XdgAutostartEntry entry(QStringLiteral("/usr/bin/kestrum"), blocked);
    const Status changed = entry.setEnabled(true);
    ASSERT_FALSE(changed.ok());
    EXPECT_EQ(changed.error().description, QStringLiteral("Could not create the folder %1.").arg(blocked));
    EXPECT_FALSE(entry.isEnabled());
    EXPECT_EQ(readFileBytes(blocked), QByteArray("not a folder"));
}

TEST(XdgAutostartEntry, ExecArgumentsAreQuotedAndEscapedAsTheFormatAsks) {
    const std::vector<std::pair<QString, QString>> cases = {
        {QStringLiteral("/usr/bin/kestrum"), QStringLiteral("/usr/bin/kestrum")},
        {QStringLiteral("/opt/a b/kestrum"), QStringLiteral("\"/opt/a b/kestrum\"")},
        {QStringLiteral("/opt/100%/kestrum"), QStringLiteral("/opt/100%%/kestrum")},
        {QStringLiteral("/opt/$HOME/k"), QStringLiteral("\"/opt/\\\\$HOME/k\"")},
        {QStringLiteral("/opt/say \"hi\"/k"), QStringLiteral("\"/opt/say \\\\\"hi\\\\\"/k\"")},
        {QStringLiteral("/opt/back\\slash/k"), QStringLiteral("\"/opt/back\\\\\\\\slash/k\"")},
    };
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(XdgAutostartEntry::execArgument(path), expected) << path.toStdString();
    }
}

}  // namespace
}  // namespace kestrum::test
