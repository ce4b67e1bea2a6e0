#include "core/telemetry/live/RiotLocalCertificatePolicy.h"
#include "core/telemetry/live/RiotRootCertificate.h"

#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QNetworkRequest>
#include <QSslConfiguration>
#include <QTemporaryDir>

#include <vector>

namespace kestrum {
namespace {

TEST(loadRiotRootCertificate, ReadsTheBundledAnchorAndAnythingButACertificateIsAbsent) {
    const QString bundled = QStringLiteral(KESTRUM_SOURCE_DIR "/resources/certs/riotgames.pem");
    // By default the bundled file, the same certificate Qt reads from the PEM directly.
    const auto direct = QSslCertificate::fromPath(bundled);
    ASSERT_EQ(direct.size(), 1);
    EXPECT_EQ(loadRiotRootCertificate(), direct.front());
    const QByteArray pem = test::readFileBytes(bundled);
    struct Case {
        const char* name;
        QByteArray contents;
        bool loads;
    };
    const std::vector<Case> cases = {
        {"the PEM as shipped", pem, true},
        {"CRLF line ends and indentation", QByteArray(pem).replace("\n", "\r\n   "), true},
        {"empty file", QByteArray(), false},
        {"markers only", "-----BEGIN CERTIFICATE-----\n-----END CERTIFICATE-----\n", false},
        {"invalid base 64", "-----BEGIN CERTIFICATE-----\n%%%not base64%%%\n-----END CERTIFICATE-----\n",
         false},
        {"base 64 of no certificate",
         "-----BEGIN CERTIFICATE-----\naGVsbG8gd29ybGQ=\n-----END CERTIFICATE-----\n", false},
    };
    QTemporaryDir folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QString path = folder.filePath(QString::fromLatin1(c.name));
        ASSERT_TRUE(test::writeFileBytes(path, c.contents));
        EXPECT_EQ(loadRiotRootCertificate(path).has_value(), c.loads);
    }
    EXPECT_FALSE(loadRiotRootCertificate(folder.filePath(QStringLiteral("missing.pem"))).has_value());
}

TEST(RiotLocalCertificatePolicy, GovernsOnlyTheLoopbackServicePort) {
    struct Case {
        const char* url;
        bool governed;
    };
    const std::vector<Case> cases = {
        {"https://127.0.0.1:2999/liveclientdata/gamestats", true},
        {"https://127.0.0.1:2998/liveclientdata/gamestats", false},
        {"https://localhost:2999/liveclientdata/gamestats", false},
        {"https://127.0.0.2:2999/", false},
        {"https://[::1]:2999/", false},
        {"http://127.0.0.1:2999/", false},
        {"https://127.0.0.1/", false},
        {"https://ddragon.leagueoflegends.com/api/versions.json", false},
    };
    int anchorLoads = 0;
    RiotLocalCertificatePolicy policy(2999, [&anchorLoads] {
        ++anchorLoads;
        return loadRiotRootCertificate();
    });
    for (const Case& c : cases) {
        SCOPED_TRACE(c.url);
        const QUrl url(QString::fromLatin1(c.url));
        EXPECT_EQ(policy.appliesTo(url), c.governed);
        QNetworkRequest request(url);
        const QSslConfiguration before = request.sslConfiguration();
        policy.prepare(request);
        if (c.governed) {
            EXPECT_EQ(request.sslConfiguration().caCertificates(),
                      QList<QSslCertificate>{*loadRiotRootCertificate()});
        } else {
            EXPECT_EQ(request.sslConfiguration(), before);
        }
    }
    EXPECT_EQ(anchorLoads, 1);
}

TEST(RiotLocalCertificatePolicy, AMissingAnchorLeavesNoAuthorityAndIsLookedUpOnce) {
    int anchorLoads = 0;
    RiotLocalCertificatePolicy policy(2999, [&anchorLoads] {
        ++anchorLoads;
        return std::optional<QSslCertificate>();
    });
    for (int i = 0; i < 3; ++i) {
        QNetworkRequest request(QUrl(QStringLiteral("https://127.0.0.1:2999/replay/game")));
        policy.prepare(request);
        EXPECT_TRUE(request.sslConfiguration().caCertificates().isEmpty());
    }
    EXPECT_EQ(anchorLoads, 1);
}

}  // namespace
}  // namespace kestrum
