// One request to the task server.
#pragma once

#include "net/HttpConnection.h"
#include "net/taskapi/ApiError.h"
#include "net/taskapi/ClientLink.h"
#include "net/taskapi/ITaskApiRunnableDelegate.h"

#include <QMutex>
#include <QRunnable>
#include <QUrl>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <type_traits>

namespace taskapi {

/// Does its one exchange in whatever thread runs it, and then hands itself to its client, or
/// deletes itself if that is gone. Without a client it goes nowhere and stays its creator's.
class TaskApiRunnable : public QRunnable
{
public:
    enum ETaskType : int
    {
        Other = 0,
        Login = 1,
        Logout = 2,
        CreateAccount = 3,
        Status = 4
    };
    enum EMethod : int
    {
        Get = 0,
        Post = 1
    };

    TaskApiRunnable();
    Q_DISABLE_COPY_MOVE(TaskApiRunnable)

    void run() override;
    ~TaskApiRunnable() override;

    [[nodiscard]] virtual int taskType() const;
    /// Everything between the connection's creation and the client's hearing of the outcome.
    [[nodiscard]] virtual ApiError
    runWithConnection(const boost::shared_ptr<net::HttpConnection>& connection);
    /// One exchange. Returns whether the server answered 200; `result` is the answer's JSON, and
    /// stays what it was when no answer came.
    virtual bool post(const boost::shared_ptr<net::HttpConnection>& connection, const QUrl& url,
                      const net::HttpHeaders& headers, const QByteArray& body, QVariant& result,
                      ApiError& error);
    /// The same without a body.
    virtual bool get(const boost::shared_ptr<net::HttpConnection>& connection, const QUrl& url,
                     const net::HttpHeaders& headers, QVariant& result, ApiError& error);
    [[nodiscard]] virtual int method() const;
    [[nodiscard]] virtual QUrl url() const = 0;
    /// On the client's server; empty without a client.
    [[nodiscard]] virtual QUrl urlForPath(const QString& path) const;
    /// The body of a post; of a get, the map of what its URL asks for.
    [[nodiscard]] virtual QVariant payload() const;
    [[nodiscard]] virtual net::HttpHeaders extraHeaders() const;
    /// Whether the client's token goes along.
    [[nodiscard]] virtual bool addAuthHeader() const;

    /// Set before it runs.
    void setClient(const std::shared_ptr<ClientLink>& client) { m_client = client; }
    /// Any thread; returns at once. The exchange fails soon, under way or yet to come.
    void abort();

    /// For the client and its delegate, once the request is over.
    [[nodiscard]] const ApiError& error() const { return m_error; }
    /// The answer's JSON; invalid without one.
    [[nodiscard]] const QVariant& result() const { return m_result; }

protected:
    /// What `ask`, a function or a getter, tells of the client; an empty value without one.
    template <typename Ask>
    [[nodiscard]] auto askClient(Ask ask) const
    {
        using Answer = std::invoke_result_t<Ask, const ITaskApiRunnableDelegate&>;
        if (!m_client)
            return Answer();
        return m_client->with([&ask](const ITaskApiRunnableDelegate* client) {
            return client ? std::invoke(ask, *client) : Answer();
        });
    }

private:
    ApiError _exchange();
    [[nodiscard]] net::HttpHeaders _headers() const;

    std::shared_ptr<ClientLink> m_client;
    ApiError m_error;
    QVariant m_result;

    QMutex m_mutex;                              ///< guards what abort() touches
    net::HttpConnection* m_connection = nullptr; ///< of the exchange under way
    bool m_aborted = false;
};

} // namespace taskapi
