// The service that the program asks for updates.
#pragma once

#include "app/base/ProductHelper.h"
#include "tests/net/TestServer.h"

#include <QNetworkProxy>
#include <QSslSocket>

/// The service: a server that is reached through a proxy, so that the program may ask for its real
/// name and port.
class UpdateService
{
public:
    UpdateService()
    {
        QNetworkProxy::setApplicationProxy(
            {QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), server.serverPort()});
    }
    ~UpdateService() { QNetworkProxy::setApplicationProxy(QNetworkProxy::DefaultProxy); }
    Q_DISABLE_COPY_MOVE(UpdateService)

private:
    const QByteArray m_identity =
        makeIdentity(QStringLiteral("DNS:") + ProductHelper::serviceHost());
    const PinnedCertificate m_pin{m_identity};

public:
    QByteArray answer; ///< sent to every request
    TestServer server{[this](const QByteArray& request, QSslSocket& socket) {
        if (!request.startsWith("CONNECT ")) {
            socket.write(answer);
            return;
        }
        socket.write("HTTP/1.1 200 Go ahead\r\n\r\n");
        encrypt(socket, m_identity);
    }};
};
