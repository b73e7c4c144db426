// Certificates for test servers, made when they are needed.
#pragma once

#include "tests/net/TestServer.h"

#include <QTemporaryDir>

/// A new key and a certificate that it signs itself, for a name such as "DNS:a.example" or
/// "IP:127.0.0.1"; one that is not valid any more if `days` is negative.
[[nodiscard]] TestServer::Identity makeIdentity(const QString& name, int days = 2);

/// While it lives, the program takes the first certificate of this PEM text for that of its own
/// servers.
class PinnedCertificate
{
public:
    explicit PinnedCertificate(const QByteArray& pem);
    ~PinnedCertificate();
    Q_DISABLE_COPY_MOVE(PinnedCertificate)

private:
    QTemporaryDir m_dir;
};
