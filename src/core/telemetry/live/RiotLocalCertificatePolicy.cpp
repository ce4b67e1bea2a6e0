#include "core/telemetry/live/RiotLocalCertificatePolicy.h"

#include "base/log/CaptureLog.h"
#include "core/telemetry/live/RiotRootCertificate.h"

#include <QHostAddress>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslConfiguration>
#include <QStringList>

#include <memory>

namespace kestrum {

RiotLocalCertificatePolicy::RiotLocalCertificatePolicy(int servicePort, AnchorLoader loadAnchor)
    : servicePort_(servicePort), loadAnchor_(std::move(loadAnchor)) {
    if (!loadAnchor_) loadAnchor_ = [] { return loadRiotRootCertificate(); };
}

bool RiotLocalCertificatePolicy::appliesTo(const QUrl& url) const {
    return url.scheme() == QLatin1String("https") && url.host() == QLatin1String("127.0.0.1") &&
           url.port(443) == servicePort_;
}

const std::optional<QSslCertificate>& RiotLocalCertificatePolicy::anchor() {
    if (!anchor_) anchor_.emplace(loadAnchor_());
    return *anchor_;
}

void RiotLocalCertificatePolicy::prepare(QNetworkRequest& request) {
    if (!appliesTo(request.url())) return;
    QSslConfiguration configuration = request.sslConfiguration();
    // An explicit list also stops Qt from loading the system's roots on demand: the anchor alone decides.
    const auto& pinned = anchor();
    configuration.setCaCertificates(pinned ? QList<QSslCertificate>{*pinned} : QList<QSslCertificate>{});
    request.setSslConfiguration(configuration);
}

void RiotLocalCertificatePolicy::watch(QNetworkReply* reply) {
    if (!appliesTo(reply->url())) return;
    QObject::connect(reply, &QNetworkReply::sslErrors, reply,
                     [this, reply](const QList<QSslError>& errors) { onSslErrors(reply, errors); });
    QObject::connect(reply, &QNetworkReply::encrypted, reply, [this] { onEncrypted(); });
}

void RiotLocalCertificatePolicy::onSslErrors(QNetworkReply* reply, const QList<QSslError>& errors) {
    if (!anchor()) {
        if (!didLogTrustFailure_) {
            didLogTrustFailure_ = true;
            logCaptureError(
                QStringLiteral("Riot local API certificate trust failed: riotgames.pem is missing or invalid "
                               "in the app bundle."));
        }
        reply->abort();
        return;
    }
    QStringList reasons;
    for (const QSslError& error : errors) reasons << error.errorString();
    const QString reason = reasons.isEmpty() ? QStringLiteral("unknown compatibility error")
                                             : reasons.join(QStringLiteral("; "));
    if (!didLogTrustedCertificate_) {
        didLogTrustedCertificate_ = true;
        logCaptureInfo(QStringLiteral("Riot local API is using legacy certificate compatibility mode: ") +
                       reason);
    }
    reply->ignoreSslErrors();
}

void RiotLocalCertificatePolicy::onEncrypted() {
    // `encrypted` follows `sslErrors` when errors were ignored; only a clean handshake gets here first.
    if (!anchor() || didLogTrustedCertificate_) return;
    didLogTrustedCertificate_ = true;
    logCaptureInfo(QStringLiteral("Riot local API certificate validated successfully."));
}

}  // namespace kestrum
