#include "net/ProxyLookup.h"

#include "app/base/OptionalThread.h"

#include <QNetworkProxyQuery>
#include <QUrl>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace net {

struct ProxyLookup::State
{
    std::mutex mutex;
    std::condition_variable changed;
    bool canceled = false;
    std::optional<QList<QNetworkProxy>> proxies;
};

ProxyLookup::ProxyLookup(const QUrl& url)
    : m_state(std::make_shared<State>())
{
    std::jthread lookup = startOptionalThread([state = m_state, url] {
        QList<QNetworkProxy> proxies = QNetworkProxyFactory::proxyForQuery(QNetworkProxyQuery(url));
        const std::lock_guard lock(state->mutex);
        state->proxies = std::move(proxies);
        state->changed.notify_all();
    });
    if (lookup.joinable())
        lookup.detach();
    else
        m_state->proxies = QList{QNetworkProxy(QNetworkProxy::NoProxy)};
}

std::optional<QList<QNetworkProxy>> ProxyLookup::wait(std::chrono::milliseconds timeout)
{
    std::unique_lock lock(m_state->mutex);
    m_state->changed.wait_for(lock, timeout,
                              [this] { return m_state->canceled || m_state->proxies; });
    return m_state->canceled ? std::nullopt : m_state->proxies;
}

void ProxyLookup::cancel()
{
    const std::lock_guard lock(m_state->mutex);
    m_state->canceled = true;
    m_state->changed.notify_all();
}

} // namespace net
