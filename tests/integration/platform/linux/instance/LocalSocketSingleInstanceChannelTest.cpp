#include "platform/linux/instance/LocalSocketSingleInstanceChannel.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <memory>

namespace kestrum::test {
namespace {

using Outcome = SingleInstanceChannel::Outcome;

// A second program that launches against the channel at `socketPath`.
std::unique_ptr<QProcess> launchProbe(const QString& socketPath, const QStringList& token = {}) {
    auto probe = std::make_unique<QProcess>();
    probe->start(QStringLiteral(KESTRUM_INSTANCE_PROBE), QStringList{socketPath} + token);
    return probe;
}

QString finishedOutput(QProcess& probe) {
    EXPECT_TRUE(waitUntil([&] { return probe.state() == QProcess::NotRunning; }, 10000));
    return QString::fromUtf8(probe.readAllStandardOutput());
}

TEST(LocalSocketSingleInstanceChannel, ALaterLaunchHandsItsRequestToTheFirstAndExitsZero) {
    QTemporaryDir directory;
    const QString socketPath = directory.path() + QStringLiteral("/instance");
    LocalSocketSingleInstanceChannel first(socketPath);
    std::vector<ActivationToken> requests;
    const Subscription observer =
        first.observeRequests([&](const SingleInstanceChannel::Request& r) { requests.push_back(r.token); });
    ASSERT_EQ(first.claim({}), Outcome::listening);

    struct Case {
        const char* name;
        QStringList arguments;
        ActivationToken expected;
    };
    const std::vector<Case> cases = {
        {"from a launcher",
         {QStringLiteral("kestrum-4242-host_TIME777")},
         {QStringLiteral("kestrum-4242-host_TIME777"), std::nullopt}},
        {"from a terminal", {QString(), QStringLiteral("123456")}, {QString(), 123456u}},
        {"with nothing to prove", {}, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto probe = launchProbe(socketPath, c.arguments);
        EXPECT_EQ(finishedOutput(*probe), QStringLiteral("forwarded\n"));
        EXPECT_EQ(probe->exitCode(), 0);
        ASSERT_FALSE(requests.empty());
        EXPECT_EQ(requests.back(), c.expected);
    }
    EXPECT_EQ(requests.size(), cases.size());
}

TEST(LocalSocketSingleInstanceChannel, AnotherProcessThatListensAnswersThisOne) {
    QTemporaryDir directory;
    const QString socketPath = directory.path() + QStringLiteral("/instance");
    const auto listener = launchProbe(socketPath);
    ASSERT_TRUE(waitUntil([&] { return listener->canReadLine(); }, 10000));
    ASSERT_EQ(listener->readLine(), QByteArray("listening\n"));

    LocalSocketSingleInstanceChannel later(socketPath);
    EXPECT_EQ(later.claim({{QStringLiteral("launch_TIME9"), std::nullopt}}), Outcome::forwarded);
    EXPECT_EQ(finishedOutput(*listener), QStringLiteral("request launch_TIME9 -\n"));
    EXPECT_EQ(listener->exitCode(), 0);
}

TEST(LocalSocketSingleInstanceChannel, TwoLaunchesAtOnceMakeOneInstance) {
    QTemporaryDir directory;
    const QString socketPath = directory.path() + QStringLiteral("/instance");
    const auto a = launchProbe(socketPath, {QStringLiteral("a")});
    const auto b = launchProbe(socketPath, {QStringLiteral("b")});
    const QString outputs = finishedOutput(*a) + finishedOutput(*b);
    EXPECT_EQ(outputs.count(QStringLiteral("listening")), 1) << outputs.toStdString();
    EXPECT_EQ(outputs.count(QStringLiteral("forwarded")), 1) << outputs.toStdString();
    EXPECT_TRUE(outputs.contains(QStringLiteral("request a -")) ||
                outputs.contains(QStringLiteral("request b -")))
        << outputs.toStdString();
    EXPECT_EQ(a->exitCode(), 0);
    EXPECT_EQ(b->exitCode(), 0);
}

// A socket file bound by a process that is gone, and a socket whose owner never answers.
int bindUnixSocket(const QString& path, bool listens) {
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray encoded = path.toLocal8Bit();
    std::memcpy(address.sun_path, encoded.constData(), static_cast<std::size_t>(encoded.size()));
    if (::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) return -1;
    if (listens) ::listen(descriptor, 4);
    return descriptor;
}

TEST(LocalSocketSingleInstanceChannel, ASocketLeftBehindOrAnInstanceThatNeverAnswersCountsAsGone) {
    for (const bool hung : {false, true}) {
        SCOPED_TRACE(hung ? "an instance that accepts and never answers" : "a socket left by a crash");
        QTemporaryDir directory;
        const QString socketPath = directory.path() + QStringLiteral("/instance");
        const int leftBehind = bindUnixSocket(socketPath, hung);
        ASSERT_GE(leftBehind, 0);
        if (!hung) ::close(leftBehind);  // the file stays, nobody listens
        LocalSocketSingleInstanceChannel channel(socketPath, 300);
        EXPECT_EQ(channel.claim({}), Outcome::listening);
        const auto probe = launchProbe(socketPath);
        EXPECT_EQ(finishedOutput(*probe), QStringLiteral("forwarded\n"))
            << "this process is the instance now";
        if (hung) ::close(leftBehind);
    }
}

TEST(LocalSocketSingleInstanceChannel, AClientThatSendsNoRequestGetsNoAnswerAndChangesNothing) {
    QTemporaryDir directory;
    const QString socketPath = directory.path() + QStringLiteral("/instance");
    LocalSocketSingleInstanceChannel channel(socketPath);
    int requests = 0;
    const Subscription observer =
        channel.observeRequests([&](const SingleInstanceChannel::Request&) { ++requests; });
    ASSERT_EQ(channel.claim({}), Outcome::listening);
    for (const QByteArray& garbage :
         {QByteArray("hello\n"), QByteArray("{\"request\":\"quit\"}\n"), QByteArray(5000, 'x')}) {
        QLocalSocket client;
        client.connectToServer(socketPath);
        ASSERT_TRUE(client.waitForConnected(1000));
        client.write(garbage);
        client.flush();
        EXPECT_TRUE(waitUntil([&] { return client.state() == QLocalSocket::UnconnectedState; }, 3000));
        EXPECT_TRUE(client.readAll().isEmpty());
    }
    EXPECT_EQ(requests, 0);
    const auto probe = launchProbe(socketPath);
    EXPECT_EQ(finishedOutput(*probe), QStringLiteral("forwarded\n"));
    EXPECT_EQ(requests, 1);
}

TEST(LocalSocketSingleInstanceChannel, RequestLinesRoundTripAndBadOnesAreRefused) {
    using Request = SingleInstanceChannel::Request;
    for (const Request& request :
         {Request{}, Request{{QStringLiteral("id ü \"q\""), 0u}, Request::Kind::showDashboard},
          Request{{QString(), 4294967295u}, Request::Kind::startLeagueShare},
          Request{{QStringLiteral("x_TIME1"), std::nullopt}, Request::Kind::startLeagueShare}}) {
        EXPECT_EQ(LocalSocketSingleInstanceChannel::decodeRequest(
                      LocalSocketSingleInstanceChannel::encodeRequest(request)),
                  request);
    }
    for (const QByteArray& line :
         {QByteArray("{\"request\":\"showDashboard\"}"),  // no line end
          QByteArray("[1]\n"), QByteArray("{\"request\":\"showDashboard\",\"eventTimeMs\":-1}\n"),
          QByteArray("{\"request\":\"showDashboard\",\"eventTimeMs\":1.5}\n"),
          QByteArray("{\"request\":\"showDashboard\",\"eventTimeMs\":4294967296}\n"),
          QByteArray("{\"request\":\"showDashboard\",\"startupID\":7}\n")}) {
        EXPECT_EQ(LocalSocketSingleInstanceChannel::decodeRequest(line), std::nullopt) << line.data();
    }
}

}  // namespace
}  // namespace kestrum::test
