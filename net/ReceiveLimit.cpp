#include "net/ReceiveLimit.h"

#include <QDir>

#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace net {

namespace {
/// Calls `use` with the descriptor and the inode of each socket of this process.
template <typename Use>
void forEachSocket(Use use)
{
    const QStringList names = QDir(u"/proc/self/fd"_s).entryList(QDir::System);
    for (const QString& name : names) {
        struct stat status = {};
        if (::fstat(name.toInt(), &status) == 0 && S_ISSOCK(status.st_mode))
            use(name.toInt(), status.st_ino);
    }
}

/// 0 where it is no TCP connection.
qint64 bytesReceived(int descriptor)
{
    tcp_info info = {};
    socklen_t size = sizeof info;
    ::getsockopt(descriptor, IPPROTO_TCP, TCP_INFO, &info, &size);
    return static_cast<qint64>(info.tcpi_bytes_received);
}
} // namespace

ReceiveLimit::ReceiveLimit(qint64 bytes)
    : m_bytes(bytes)
{
    forEachSocket([this](int /*descriptor*/, ino_t inode) { m_exempt.insert(inode); });
}

bool ReceiveLimit::cutExceeding()
{
    bool anyExceeds = false;
    forEachSocket([&](int descriptor, ino_t inode) {
        if (m_exempt.contains(inode) || bytesReceived(descriptor) <= m_bytes)
            return;
        ::shutdown(descriptor, SHUT_RDWR);
        anyExceeds = true;
    });
    return anyExceeds;
}

} // namespace net
