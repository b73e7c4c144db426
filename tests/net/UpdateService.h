// The service that the program asks for updates.
#pragma once

#include "app/base/ProductHelper.h"
#include "tests/net/Certificates.h"

#include <QNetworkProxy>
#include <QSslSocket>

/// The service: a server that is reached through a proxy, so that the program may ask for its real
/// name and port.
class UpdateService
{
public:
    UpdateService()
        : m_identity(makeIdentity(QStringLiteral("DNS:") + ProductHelper::serviceHost()))
        , m_pin(m_identity.certificate)
        , server([this](const TestServer::Request& request, QSslSocket& socket) {
            _answer(request, socket);
        })
    {
        QNetworkProxy::setApplicationProxy(
            {QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), server.serverPort()});
    }
    ~UpdateService() { QNetworkProxy::setApplicationProxy(QNetworkProxy::DefaultProxy); }
    Q_DISABLE_COPY_MOVE(UpdateService)

private:
    void _answer(const TestServer::Request& request, QSslSocket& socket) const
    {
        if (request.method != "CONNECT") {
            socket.write(answer);
            return;
        }
        socket.write("HTTP/1.1 200 Go ahead\r\n\r\n");
        m_identity.encrypt(socket);
    }

    TestServer::Identity m_identity;
    PinnedCertificate m_pin;

public:
    QByteArray answer; ///< sent to every request; nothing while it is empty
    TestServer server;
};
