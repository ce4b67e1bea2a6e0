#pragma once

#include <QSslConfiguration>
#include <QString>

#include <optional>

namespace kestrum::simulator {

// The simulator's TLS identity: a certificate and key given as PEM files, or a fresh self-signed
// certificate for 127.0.0.1 made with the openssl program at start (it chains to no anchor, which is
// what the client's compatibility mode is for).
class TlsIdentity {
  public:
    static std::optional<QSslConfiguration> fromFiles(const QString& certificatePath, const QString& keyPath,
                                                      QString* errorMessage);
    static std::optional<QSslConfiguration> selfSigned(QString* errorMessage);
};

}  // namespace kestrum::simulator
