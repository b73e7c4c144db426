// A transport that sends its headers and tells statuses.
#pragma once

#include "net/HttpConnection.h"

#include <QMutex>
#include <QTcpSocket>
#include <QUrl>

#include <boost/make_shared.hpp>

#include <sys/socket.h>

/// Waits for its answer for ever; the server ends it by closing the connection.
class StatusTransport final : public net::HttpConnection
{
public:
    static boost::shared_ptr<HttpConnection> make()
    {
        return boost::make_shared<StatusTransport>();
    }

    bool open(const QString&, unsigned short) override { return true; }
    bool close() override { return true; }
    bool get(const QUrl& url, QByteArray& response, const net::HttpHeaders& headers) override
    {
        return _exchange("GET", url, {}, response, headers);
    }
    bool post(const QUrl& url, const QByteArray& body, QByteArray& response,
              const net::HttpHeaders& headers) override
    {
        return _exchange("POST", url, body, response, headers);
    }
    int statusCode() const override { return m_status; }
    qint64 contentLength() const override { return -1; }
    int read(QIODevice&, int) override { return -1; }
    QString referer() const override { return m_referer; }
    void setReferer(const QString& referer) override { m_referer = referer; }
    void abort() override
    {
        const QMutexLocker lock(&m_mutex);
        m_aborted = true;
        if (m_handle >= 0)
            ::shutdown(m_handle, SHUT_RDWR);
    }

private:
    bool _exchange(const QByteArray& method, const QUrl& url, const QByteArray& body,
                   QByteArray& response, net::HttpHeaders headers)
    {
        QTcpSocket socket;
        socket.connectToHost(url.host(), static_cast<quint16>(url.port(0)));
        if (!socket.waitForConnected() || !_attach(static_cast<int>(socket.socketDescriptor())))
            return false;
        headers.insert(QStringLiteral("User-Agent"), m_referer);
        headers.insert(QStringLiteral("Content-Length"), QString::number(body.size()));
        const QByteArray target = url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority);
        socket.write(method + ' ' + target + " HTTP/1.1\r\n" +
                     headersToString(headers).toLatin1().replace("\n", "\r\n") + "\r\n" + body);
        while (socket.waitForReadyRead(-1)) {
        }
        const QByteArray answer = socket.readAll();
        m_status = answer.split(' ').value(1, "-1").toInt();
        response = answer.mid(answer.indexOf("\r\n\r\n") + 4);
        return _attach(-1) && m_status >= 0;
    }

    bool _attach(int handle)
    {
        const QMutexLocker lock(&m_mutex);
        m_handle = handle;
        return !m_aborted;
    }

    QString m_referer;
    int m_status = -1;
    QMutex m_mutex; // guards what abort() touches
    int m_handle = -1;
    bool m_aborted = false;
};
