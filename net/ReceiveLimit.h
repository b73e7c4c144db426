// A bound on what servers can send to this process.
#pragma once

#include <QSet>
#include <QtGlobal>

#include <sys/types.h>

namespace net {

/// Goes by the system's count: the toolkit keeps some of what it receives to itself, such as
/// headers, and answers that ask for a password.
class ReceiveLimit
{
public:
    /// For the TCP connections that the process opens from now on; each may receive `bytes`.
    explicit ReceiveLimit(qint64 bytes);

    /// Cuts the connections that have received more, and returns whether there was one. While the
    /// toolkit reads from one without returning to its event loop, nothing but that stops it.
    bool cutExceeding();

private:
    const qint64 m_bytes;
    QSet<ino_t> m_exempt; ///< sockets that were there before
};

} // namespace net
