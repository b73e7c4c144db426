// Finding out which proxies lead to a server.
#pragma once

#include <QList>
#include <QNetworkProxy>

#include <chrono>
#include <memory>
#include <optional>

class QUrl;

namespace net {

/// One question to the system, which can be given up: where its answer comes from a script on a
/// server that is gone, it takes as long as the system's patience lasts.
class ProxyLookup
{
public:
    /// Asks, in a thread of its own. That thread may outlive this object.
    explicit ProxyLookup(const QUrl& url);

    /// Blocks until there is an answer; none after cancel() or when it took too long.
    [[nodiscard]] std::optional<QList<QNetworkProxy>> wait(std::chrono::milliseconds timeout);

    /// Any thread: ends wait(), also one that is yet to begin.
    void cancel();

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace net
