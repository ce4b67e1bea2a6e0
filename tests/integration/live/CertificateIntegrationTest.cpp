// The certificate rule of the local service over real TLS: Qt's handshake against the simulator.
#include "CapturedLog.h"
#include "SimulatorProcess.h"

#include "support/TestEnvironment.h"

#include "core/telemetry/live/LeagueLiveClient.h"
#include "core/telemetry/live/NetworkLiveServiceTransport.h"
#include "core/telemetry/live/RiotRootCertificate.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>

namespace kestrum {
namespace {

using test::CapturedLog;
using test::SimulatorProcess;

const QString kCompatibility =
    QStringLiteral("Riot local API is using legacy certificate compatibility mode: ");
const QString kValidated = QStringLiteral("Riot local API certificate validated successfully.");
const QString kMissing = QStringLiteral(
    "Riot local API certificate trust failed: riotgames.pem is missing or invalid in the app bundle.");

QJsonObject runningGame() {
    return SimulatorProcess::script(QStringLiteral("short-game.json"),
                                    {{QStringLiteral("loadingSeconds"), 0}});
}

// Three requests through one client whose rule is bound to `rulePort` and reads its anchor with `loader`.
int successfulFetches(int servicePort, int rulePort, RiotLocalCertificatePolicy::AnchorLoader loader) {
    auto policy = std::make_shared<RiotLocalCertificatePolicy>(rulePort, std::move(loader));
    LeagueLiveClient client(std::make_shared<NetworkLiveServiceTransport>(servicePort, policy));
    int successes = 0;
    for (int i = 0; i < 3; ++i) successes += QCoro::waitFor(client.fetchGameStats()).has_value() ? 1 : 0;
    return successes;
}

TEST(RiotLocalCertificatePolicy, ACertificateOutsideTheAnchorConnectsInCompatibilityMode) {
    CapturedLog log;
    SimulatorProcess simulator;
    const int port = SimulatorProcess::freePort();
    ASSERT_TRUE(simulator.start(port, runningGame())) << simulator.output().toStdString();
    EXPECT_EQ(successfulFetches(port, port, [] { return loadRiotRootCertificate(); }), 3);
    EXPECT_EQ(log.countStartingWith(kCompatibility), 1) << log.lines().join(u'\n').toStdString();
    EXPECT_EQ(log.lines().size(), 1);
    ASSERT_FALSE(log.lines().isEmpty());
    EXPECT_GT(log.lines().front().size(), kCompatibility.size());  // the reason follows
}

TEST(RiotLocalCertificatePolicy, AMissingAnchorRefusesEveryRequestAndLogsOnce) {
    CapturedLog log;
    SimulatorProcess simulator;
    const int port = SimulatorProcess::freePort();
    ASSERT_TRUE(simulator.start(port, runningGame())) << simulator.output().toStdString();
    int lookups = 0;
    EXPECT_EQ(successfulFetches(port, port,
                                [&lookups] {
                                    ++lookups;
                                    return std::optional<QSslCertificate>();
                                }),
              0);
    EXPECT_EQ(lookups, 1);
    EXPECT_EQ(log.countStartingWith(kMissing), 1) << log.lines().join(u'\n').toStdString();
    EXPECT_EQ(log.countStartingWith(kCompatibility), 0);
    // The refused handshakes are transport failures of the endpoint, logged under its word.
    EXPECT_EQ(log.countStartingWith(QStringLiteral("Live Client Data API /gamestats failed: ")), 1);
}

TEST(RiotLocalCertificatePolicy, AChainToTheAnchorIsValidated) {
    QTemporaryDir folder;
    const auto path = [&folder](const char* name) { return folder.filePath(QString::fromLatin1(name)); };
    const auto openssl = [](const QStringList& arguments) {
        QProcess process;
        process.start(QStringLiteral("openssl"), arguments);
        return process.waitForFinished(30000) && process.exitCode() == 0;
    };
    ASSERT_TRUE(openssl({"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", path("ca.key"), "-out",
                         path("ca.pem"), "-days", "2", "-subj", "/CN=Kestrum Test Root"}));
    ASSERT_TRUE(openssl({"req", "-newkey", "rsa:2048", "-nodes", "-keyout", path("leaf.key"), "-out",
                         path("leaf.csr"), "-subj", "/CN=127.0.0.1"}));
    ASSERT_TRUE(test::writeFileBytes(path("leaf.ext"), "subjectAltName=IP:127.0.0.1\n"));
    ASSERT_TRUE(
        openssl({"x509", "-req", "-in", path("leaf.csr"), "-CA", path("ca.pem"), "-CAkey", path("ca.key"),
                 "-CAcreateserial", "-out", path("leaf.pem"), "-days", "2", "-extfile", path("leaf.ext")}));

    CapturedLog log;
    SimulatorProcess simulator;
    const int port = SimulatorProcess::freePort();
    ASSERT_TRUE(simulator.start(
        port, runningGame(),
        {QStringLiteral("--certificate"), path("leaf.pem"), QStringLiteral("--key"), path("leaf.key")}))
        << simulator.output().toStdString();
    const QString anchorPath = path("ca.pem");
    EXPECT_EQ(successfulFetches(port, port, [anchorPath] { return loadRiotRootCertificate(anchorPath); }), 3);
    EXPECT_EQ(log.lines(), QStringList{kValidated});
}

TEST(RiotLocalCertificatePolicy, OtherPortsGetQtsDefaultHandling) {
    CapturedLog log;
    SimulatorProcess simulator;
    const int port = SimulatorProcess::freePort();
    ASSERT_TRUE(simulator.start(port, runningGame())) << simulator.output().toStdString();
    int lookups = 0;
    // The rule is bound to the game's port; this service is elsewhere, so its self-signed certificate
    // meets Qt's own verification and is refused, without any line of the rule.
    EXPECT_EQ(successfulFetches(port, RiotLocalCertificatePolicy::kServicePort,
                                [&lookups] {
                                    ++lookups;
                                    return loadRiotRootCertificate();
                                }),
              0);
    EXPECT_EQ(lookups, 0);
    EXPECT_EQ(log.countStartingWith(QStringLiteral("Riot local API")), 0);
}

}  // namespace
}  // namespace kestrum
