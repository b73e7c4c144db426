#include "app/InstanceLock.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr mode_t userOnly = S_IRUSR | S_IWUSR;
}

InstanceLock::InstanceLock(const QString& path)
    : m_path(path)
{
}

InstanceLock::~InstanceLock()
{
    if (m_file >= 0)
        ::close(m_file);
}

InstanceLock::EState InstanceLock::tryLock()
{
    if (m_held)
        return EState::held;
    if (!_open())
        return EState::unavailable;
    int result = -1;
    do {
        result = ::flock(m_file, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result != 0)
        return errno == EWOULDBLOCK ? EState::busy : EState::unavailable;
    m_held = true;
    ::fchmod(m_file, userOnly);
    publish({});
    return EState::held;
}

void InstanceLock::publish(const QString& address)
{
    if (!m_held || ::ftruncate(m_file, 0) != 0 || address.isEmpty())
        return;
    const QByteArray line = QFile::encodeName(address) + '\n';
    // A line that is cut short lacks its line feed, and counts as none.
    [[maybe_unused]] const ssize_t written =
        ::pwrite(m_file, line.constData(), static_cast<size_t>(line.size()), 0);
}

QString InstanceLock::address() const
{
    std::array<char, 4096> text{};
    const ssize_t size = m_file < 0 ? -1 : ::pread(m_file, text.data(), text.size(), 0);
    if (size <= 0)
        return {};
    const QByteArray line(text.data(), size);
    return line.endsWith('\n') ? QFile::decodeName(line.chopped(1)) : QString();
}

bool InstanceLock::_open()
{
    if (m_file >= 0)
        return true;
    m_file = ::open(QFile::encodeName(m_path).constData(),
                    O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, userOnly);
    return m_file >= 0;
}
