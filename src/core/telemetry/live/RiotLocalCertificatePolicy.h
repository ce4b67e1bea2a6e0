#pragma once

#include <QList>
#include <QSslCertificate>
#include <QSslError>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

class QNetworkReply;
class QNetworkRequest;

namespace kestrum {

// The trust rule of the local service, for Qt's TLS. It applies only to https://127.0.0.1 on the
// service's port (2999; tests may bind the rule to another port); every other host and port gets Qt's
// default handling and no log line.
//
// On the service the anchor riotgames.pem is the only certificate authority. A chain that verifies
// against it logs "Riot local API certificate validated successfully." once; a chain that does not is
// logged once as compatibility mode and accepted all the same (a deliberate leniency, the service's
// certificates are often outside the anchor); an anchor that cannot be loaded refuses every connection
// and logs one error line. The info flag covers both passing outcomes, so only one of them is ever
// logged in the life of the policy.
//
// Thread: main thread only (request preparation and the reply's signals); the flags and the anchor are
// touched nowhere else. The anchor is loaded on first need, once; an absent result is kept too.
class RiotLocalCertificatePolicy {
  public:
    using AnchorLoader = std::function<std::optional<QSslCertificate>()>;

    static constexpr int kServicePort = 2999;

    // `loadAnchor` defaults to the bundled resource.
    explicit RiotLocalCertificatePolicy(int servicePort = kServicePort, AnchorLoader loadAnchor = {});

    // Whether the rule governs a request to `url`.
    bool appliesTo(const QUrl& url) const;

    // Before the request is sent: pins the anchor as the only authority (or none, when it is missing,
    // so that the handshake cannot pass). Requests the rule does not govern are left alone.
    void prepare(QNetworkRequest& request);

    // After the reply is made: decides on its handshake as above.
    void watch(QNetworkReply* reply);

  private:
    const std::optional<QSslCertificate>& anchor();
    void onSslErrors(QNetworkReply* reply, const QList<QSslError>& errors);
    void onEncrypted();

    int servicePort_;
    AnchorLoader loadAnchor_;
    std::optional<std::optional<QSslCertificate>> anchor_;  // outer: loaded yet; inner: the result
    bool didLogTrustedCertificate_ = false;
    bool didLogTrustFailure_ = false;
};

}  // namespace kestrum
