// Certificates for test servers, made when they are needed.
#pragma once

#include "tests/net/TestServer.h"

#include <QTemporaryDir>

/// A new key and a certificate for the name `host` that it signs itself; one that is not valid any
/// more if `days` is negative.
[[nodiscard]] TestServer::Identity makeIdentity(const QString& host, int days = 2);

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
