#include "platform/linux/pulse/BackgroundMicrophoneAccess.h"
#include "platform/linux/pulse/PulseMicrophoneAccess.h"
#include "support/DisplayServers.h"
#include "support/RequiredServer.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstring>

namespace kestrum::test {
namespace {

using namespace std::chrono_literals;
using Access = MicrophoneAccess::Status;

// A sound server that accepts connections and never says a word.
class SilentServer {
  public:
    explicit SilentServer(const QString& path) {
        descriptor_ = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const QByteArray encoded = path.toLocal8Bit();
        std::memcpy(address.sun_path, encoded.constData(), static_cast<std::size_t>(encoded.size()));
        listening_ = ::bind(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 &&
                     ::listen(descriptor_, 16) == 0;
    }
    ~SilentServer() { ::close(descriptor_); }
    bool isListening() const { return listening_; }

  private:
    int descriptor_ = -1;
    bool listening_ = false;
};

TEST(BackgroundMicrophoneAccess, AHungSoundServerNeverBlocksTheMainThread) {
    QTemporaryDir directory;
    const QString socket = directory.path() + QStringLiteral("/native");
    SilentServer server(socket);
    ASSERT_TRUE(server.isListening());
    qputenv("PULSE_SERVER", (QStringLiteral("unix:") + socket).toLocal8Bit());

    BackgroundMicrophoneAccess access(std::make_shared<PulseMicrophoneAccess>(500ms));
    QSignalSpy reads(&access, &BackgroundMicrophoneAccess::statusRead);
    for (int poll = 0; poll < 5; ++poll) {  // the settings read every 2 seconds; here as fast as possible
        QElapsedTimer elapsed;
        elapsed.start();
        EXPECT_EQ(access.status(), Access::notDetermined);
        EXPECT_LT(elapsed.elapsed(), 50) << "answered from what was published";
        processEventsFor(20);  // the event loop turns meanwhile
    }
    EXPECT_TRUE(access.isReading()) << "one read at a time, still waiting on the server";
    EXPECT_TRUE(waitUntil([&] { return reads.count() >= 1; }, 10000))
        << "the read gives up after its time-out";
    EXPECT_EQ(reads.first().first().value<Access>(), Access::notDetermined);
    qunsetenv("PULSE_SERVER");
}

TEST(BackgroundMicrophoneAccess, PublishesTheServersAnswerAndEachChange) {
    PulseAudioServer server;
    KESTRUM_REQUIRE_SERVER(server.start(), server.failure());
    BackgroundMicrophoneAccess access(std::make_shared<PulseMicrophoneAccess>());
    QSignalSpy changes(&access, &BackgroundMicrophoneAccess::statusChanged);
    EXPECT_EQ(access.status(), Access::notDetermined) << "nothing is known before the first answer";
    ASSERT_TRUE(waitUntil([&] { return changes.count() == 1; }, 10000));
    EXPECT_EQ(access.status(), Access::authorized);
    EXPECT_TRUE(QCoro::waitFor(access.request()));

    server.stop();  // the server goes away: the next read finds none
    (void)access.status();
    ASSERT_TRUE(waitUntil([&] { return changes.count() == 2; }, 10000));
    EXPECT_EQ(access.status(), Access::notDetermined);
    EXPECT_FALSE(QCoro::waitFor(access.request()));
}

}  // namespace
}  // namespace kestrum::test
