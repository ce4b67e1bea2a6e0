#include "core/telemetry/live/RiotRootCertificate.h"

#include <QFile>
#include <QRegularExpression>

// The resource lives in a static library: nothing would pull its initialiser into a program unless it
// is referenced, and Q_INIT_RESOURCE must be used outside any namespace.
static void initialiseCertificateResource() {
    Q_INIT_RESOURCE(certs);
}

namespace kestrum {

std::optional<QSslCertificate> loadRiotRootCertificate(const QString& path) {
    static const bool resourceReady = (initialiseCertificateResource(), true);
    (void)resourceReady;

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    QString text = QString::fromUtf8(file.readAll());
    text.remove(QStringLiteral("-----BEGIN CERTIFICATE-----"));
    text.remove(QStringLiteral("-----END CERTIFICATE-----"));
    static const QRegularExpression whiteSpace(QStringLiteral("\\s+"));
    text.remove(whiteSpace);

    const auto decoded =
        QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.isEmpty()) return std::nullopt;
    QSslCertificate certificate(decoded.decoded, QSsl::Der);
    if (certificate.isNull()) return std::nullopt;
    return certificate;
}

}  // namespace kestrum
