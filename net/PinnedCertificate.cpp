#include "net/PinnedCertificate.h"

#include <QFile>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslError>

using namespace Qt::StringLiterals;

// Q_INIT_RESOURCE declares a function of the global namespace.
static void registerCertificate()
{
#ifdef MVR_HAS_PINNED_CERTIFICATE
    Q_INIT_RESOURCE(network);
#endif
}

void net::excusePinnedCertificate(QNetworkReply& reply)
{
    [[maybe_unused]] static const bool registered = (registerCertificate(), true);
    QFile file(u":/network/server.pem"_s);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QList<QSslCertificate> pinned = QSslCertificate::fromDevice(&file);
    if (!pinned.isEmpty())
        reply.ignoreSslErrors({QSslError(QSslError::SelfSignedCertificate, pinned.first())});
}
