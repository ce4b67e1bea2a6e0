#pragma once

#include <QSslCertificate>
#include <QString>

#include <optional>

namespace kestrum {

// Where the trust anchor of the local service ships: a Qt resource compiled into the core.
inline constexpr const char* kRiotRootCertificatePath = ":/certs/riotgames.pem";

// Reads the PEM file at `path` (a resource path or a file), strips the BEGIN/END CERTIFICATE lines and
// all white space, decodes the base-64 rest strictly and makes a certificate of it. Absent when the
// file is missing or unreadable, the base 64 is invalid, or the bytes are no certificate.
std::optional<QSslCertificate> loadRiotRootCertificate(
    const QString& path = QString::fromLatin1(kRiotRootCertificatePath));

}  // namespace kestrum
