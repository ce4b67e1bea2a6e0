#include "TlsIdentity.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>

namespace kestrum::simulator {

std::optional<QSslConfiguration> TlsIdentity::fromFiles(const QString& certificatePath,
                                                        const QString& keyPath, QString* errorMessage) {
    QFile certificateFile(certificatePath);
    QFile keyFile(keyPath);
    if (!certificateFile.open(QIODevice::ReadOnly) || !keyFile.open(QIODevice::ReadOnly)) {
        *errorMessage = QStringLiteral("cannot read %1 or %2").arg(certificatePath, keyPath);
        return std::nullopt;
    }
    const QList<QSslCertificate> chain = QSslCertificate::fromData(certificateFile.readAll(), QSsl::Pem);
    const QSslKey key(keyFile.readAll(), QSsl::Rsa, QSsl::Pem);
    if (chain.isEmpty() || key.isNull()) {
        *errorMessage = QStringLiteral("%1 or %2 holds no usable PEM certificate or RSA key")
                            .arg(certificatePath, keyPath);
        return std::nullopt;
    }
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificateChain(chain);
    configuration.setPrivateKey(key);
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    return configuration;
}

std::optional<QSslConfiguration> TlsIdentity::selfSigned(QString* errorMessage) {
    QTemporaryDir directory;
    if (!directory.isValid()) {
        *errorMessage = QStringLiteral("cannot make a temporary folder for the certificate");
        return std::nullopt;
    }
    const QString certificatePath = directory.filePath(QStringLiteral("cert.pem"));
    const QString keyPath = directory.filePath(QStringLiteral("key.pem"));
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"),
                  {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                   QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-keyout"), keyPath,
                   QStringLiteral("-out"), certificatePath, QStringLiteral("-days"), QStringLiteral("2"),
                   QStringLiteral("-subj"), QStringLiteral("/CN=127.0.0.1"), QStringLiteral("-addext"),
                   QStringLiteral("subjectAltName=IP:127.0.0.1")});
    if (!openssl.waitForFinished(30000) || openssl.exitStatus() != QProcess::NormalExit ||
        openssl.exitCode() != 0) {
        *errorMessage = QStringLiteral("openssl could not make a certificate: ") +
                        QString::fromLocal8Bit(openssl.readAllStandardError()) + openssl.errorString();
        return std::nullopt;
    }
    return fromFiles(certificatePath, keyPath, errorMessage);
}

}  // namespace kestrum::simulator
