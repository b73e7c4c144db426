// Certificates for test servers, made when they are needed.
#pragma once

#include "tests/net/TestServer.h"

/// A new key and a certificate for the name `host` that it signs itself, as files in `folder`; one
/// that is not valid any more if `days` is negative.
[[nodiscard]] TestServer::Identity makeIdentity(const QString& folder, const QString& host,
                                                int days = 2);

/// While it lives, the program takes the first of these PEM files' certificates for that of its
/// own servers.
class PinnedCertificate
{
public:
    PinnedCertificate(const QString& folder, const QStringList& pemFiles);
    ~PinnedCertificate();
    Q_DISABLE_COPY_MOVE(PinnedCertificate)

private:
    QString m_collection;
};
