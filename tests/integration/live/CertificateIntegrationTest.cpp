// The certificate rule of the local service over real TLS: Qt's handshake against the simulator.
#include "SimulatorProcess.h"

#include "support/CapturedLog.h"
#include "support/TestEnvironment.h"

#include "core/telemetry/live/LeagueLiveClient.h"
#include "core/telemetry/live/NetworkLiveServiceTransport.h"
#include "core/telemetry/live/RiotRootCertificate.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>

#include <functional>
#include <vector>

namespace kestrum {
namespace {

using test::CapturedLog;
using test::SimulatorProcess;

const QString kCompatibility =
    QStringLiteral("Riot local API is using legacy certificate compatibility mode: ");
const QString kValidated = QStringLiteral("Riot local API certificate validated successfully.");
const QString kMissing = QStringLiteral(
    "Riot local API certificate trust failed: riotgames.pem is missing or invalid in the app bundle.");
const QString kGameStatsFailed = QStringLiteral("Live Client Data API /gamestats failed: ");

// Makes in `folder` a root "ca.pem" and a leaf "leaf.pem" (key "leaf.key") for 127.0.0.1 signed by it.
bool makeTestChain(const QTemporaryDir& folder) {
    const auto path = [&folder](const char* name) { return folder.filePath(QString::fromLatin1(name)); };
    const auto openssl = [](const QStringList& arguments) {
        QProcess process;
        process.start(QStringLiteral("openssl"), arguments);
        return process.waitForFinished(30000) && process.exitCode() == 0;
    };
    return openssl({"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", path("ca.key"), "-out",
                    path("ca.pem"), "-days", "2", "-subj", "/CN=Kestrum Test Root"}) &&
           openssl({"req", "-newkey", "rsa:2048", "-nodes", "-keyout", path("leaf.key"), "-out",
                    path("leaf.csr"), "-subj", "/CN=127.0.0.1"}) &&
           test::writeFileBytes(path("leaf.ext"), "subjectAltName=IP:127.0.0.1\n") &&
           openssl({"x509", "-req", "-in", path("leaf.csr"), "-CA", path("ca.pem"), "-CAkey", path("ca.key"),
                    "-CAcreateserial", "-out", path("leaf.pem"), "-days", "2", "-extfile", path("leaf.ext")});
}

TEST(RiotLocalCertificatePolicy, TrustsTheServiceThroughItsAnchorOrInCompatibilityMode) {
    QTemporaryDir folder;
    ASSERT_TRUE(makeTestChain(folder));
    const QStringList chainArguments = {QStringLiteral("--certificate"),
                                        folder.filePath(QStringLiteral("leaf.pem")), QStringLiteral("--key"),
                                        folder.filePath(QStringLiteral("leaf.key"))};
    const QString testRoot = folder.filePath(QStringLiteral("ca.pem"));
    const auto bundled = [] { return loadRiotRootCertificate(); };
    struct Case {
        const char* name;
        QStringList simulatorArguments;
        bool ruleOnServicePort;  // false: the rule is bound to the game's port, the service is elsewhere
        std::function<std::optional<QSslCertificate>()> anchor;
        int successes;  // of three requests
        int anchorLookups;
        QStringList lines;  // the log's lines; one ending in ": " is a beginning, a reason must follow
    };
    const std::vector<Case> cases = {
        {"a certificate outside the anchor", {}, true, bundled, 3, 1, {kCompatibility}},
        {"a chain to the anchor",
         chainArguments,
         true,
         [testRoot] { return loadRiotRootCertificate(testRoot); },
         3,
         1,
         {kValidated}},
        // The refused handshakes are transport failures of the endpoint, logged under its word.
        {"a missing anchor refuses every request",
         {},
         true,
         [] { return std::optional<QSslCertificate>(); },
         0,
         1,
         {kMissing, kGameStatsFailed}},
        // The self-signed certificate meets Qt's own verification, and is refused without a line of the rule.
        {"other ports get Qt's default handling", {}, false, bundled, 0, 0, {kGameStatsFailed}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CapturedLog log;
        SimulatorProcess simulator;
        ASSERT_TRUE(simulator.start(SimulatorProcess::runningGame(), c.simulatorArguments));
        int lookups = 0;
        auto policy = std::make_shared<RiotLocalCertificatePolicy>(
            c.ruleOnServicePort ? simulator.port() : RiotLocalCertificatePolicy::kServicePort, [&] {
                ++lookups;
                return c.anchor();
            });
        LeagueLiveClient client(std::make_shared<NetworkLiveServiceTransport>(simulator.port(), policy));
        int successes = 0;
        for (int i = 0; i < 3; ++i) successes += QCoro::waitFor(client.fetchGameStats()).has_value() ? 1 : 0;
        EXPECT_EQ(successes, c.successes);
        EXPECT_EQ(lookups, c.anchorLookups);
        const QStringList lines = log.lines();
        ASSERT_EQ(lines.size(), c.lines.size()) << lines.join(u'\n').toStdString();
        for (qsizetype i = 0; i < lines.size(); ++i) {
            if (c.lines[i].endsWith(QStringLiteral(": "))) {
                EXPECT_TRUE(lines[i].startsWith(c.lines[i]) && lines[i].size() > c.lines[i].size())
                    << lines[i].toStdString();
            } else {
                EXPECT_EQ(lines[i], c.lines[i]);
            }
        }
    }
}

}  // namespace
}  // namespace kestrum
