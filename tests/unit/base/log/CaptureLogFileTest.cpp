#include "base/log/CaptureLogFile.h"

#include <gtest/gtest.h>

#include <QDir>

#include <vector>

namespace {

TEST(captureLogFilePath, FollowsTheStateHomeOrFallsBackToTheHomeFolder) {
    const QByteArray saved = qgetenv("XDG_STATE_HOME");
    const QString fallback =
        QDir::homePath() + QStringLiteral("/.local/state/Kestrum/Logs/kestrum_system.log");
    const std::vector<std::pair<QByteArray, QString>> cases = {
        {"/srv/state", QStringLiteral("/srv/state/Kestrum/Logs/kestrum_system.log")},
        {"", fallback},
        {"relative/state", fallback},  // the XDG rule ignores a relative path
    };
    for (const auto& [stateHome, expected] : cases) {
        SCOPED_TRACE(stateHome.toStdString());
        qputenv("XDG_STATE_HOME", stateHome);
        EXPECT_EQ(kestrum::captureLogFilePath(), expected);
    }
    qunsetenv("XDG_STATE_HOME");
    EXPECT_EQ(kestrum::captureLogFilePath(), fallback);
    qputenv("XDG_STATE_HOME", saved);
}

}  // namespace
