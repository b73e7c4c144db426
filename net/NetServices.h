// The network worker: jobs for servers, done one at a time away from the interface thread.
#pragma once

#include "net/UpdateInformation.h"

#include <QDeadlineTimer>
#include <QList>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <boost/shared_ptr.hpp>

#include <chrono>

namespace net {
class HttpConnection;
}

/// A thread with a queue. When its last owner lets go, the request under way is aborted and what is
/// queued is dropped.
class NetServices : public QThread
{
    Q_OBJECT

public:
    class NetJob;
    class CheckForUpdateJob;

    ~NetServices() override;
    Q_DISABLE_COPY_MOVE(NetServices)

    /// The running worker, created by the first call. Interface thread; UserMetrics must exist.
    [[nodiscard]] static boost::shared_ptr<NetServices> shared();
    /// Lets go of the worker; it ends with its last owner, which waits up to 10 s for that.
    /// Interface thread.
    static void destroyShared();

    /// Queues a check and returns at once; updatesChecked() tells its outcome. The worker begins
    /// nothing before `delay` is over. A program without a service does nothing. Any thread.
    void checkForUpdates(std::chrono::milliseconds delay = {});

    /// How the program names itself to servers.
    [[nodiscard]] static QString httpReferer();

Q_SIGNALS:
    /// After every check, from the worker's thread; invalid and empty after one that failed.
    void updatesChecked(UpdateInformation information);

protected:
    void run() override;

private:
    NetServices() = default;

    [[nodiscard]] static boost::shared_ptr<NetServices>& _instance();
    /// Deletes the worker once its thread has ended, after 10 s by force. A thread that resists
    /// even that, inside the system's search for proxies, keeps its worker.
    static void _end(NetServices* services);
    void _stop();
    boost::shared_ptr<NetJob> _takeJob();
    void _runJob(const NetJob& job);
    void _checkForUpdates();
    bool _fetch(const QUrl& url, QByteArray& response);

    bool m_stop = false;
    QMutex m_mutex; ///< guards all fields
    QWaitCondition m_wakeUp;
    QList<boost::shared_ptr<NetJob>> m_jobs;
    QDeadlineTimer m_rest;                               ///< expired while jobs may begin
    boost::shared_ptr<net::HttpConnection> m_connection; ///< of the request under way
};
