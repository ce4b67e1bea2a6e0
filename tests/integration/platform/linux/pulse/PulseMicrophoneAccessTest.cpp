#include "platform/linux/pulse/PulseMicrophoneAccess.h"
#include "support/DisplayServers.h"

#include <gtest/gtest.h>

#include <QCoroTask>
#include <QProcess>

#include <functional>

namespace kestrum::test {
namespace {

using Access = MicrophoneAccess::Status;

// Each row changes the one server, then reads the status and makes a request.
TEST(PulseMicrophoneAccess, StatusFollowsTheSourcesTheServerOffers) {
    PulseAudioServer server;
    if (!server.start()) GTEST_SKIP() << "no private sound server: " << server.failure().toStdString();
    const auto unloadMicrophone = [] {
        QProcess pactl;
        pactl.start(QStringLiteral("pactl"),
                    {QStringLiteral("unload-module"), QStringLiteral("module-null-source")});
        return pactl.waitForFinished(5000) && pactl.exitCode() == 0;
    };
    const auto stopServer = [&server] {
        server.stop();
        qputenv("PULSE_SERVER", "unix:/nonexistent/kestrum-no-server");
        return true;
    };
    const std::vector<std::tuple<const char*, std::function<bool()>, Access>> cases = {
        {"a null source besides the sink's monitor", [] { return true; }, Access::authorized},
        {"only the sink's monitor", unloadMicrophone, Access::denied},
        {"no server", stopServer, Access::notDetermined},
    };
    for (const auto& [name, change, expected] : cases) {
        ASSERT_TRUE(change()) << name;
        PulseMicrophoneAccess access;
        EXPECT_EQ(access.status(), expected) << name;
        EXPECT_EQ(QCoro::waitFor(access.request()), expected == Access::authorized) << name;
    }
    qunsetenv("PULSE_SERVER");
}

}  // namespace
}  // namespace kestrum::test
