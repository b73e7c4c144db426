#include "net/Tls.h"

#include "app/base/LogHelper.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QPluginLoader>
#include <QSslSocket>

#include <mutex>

using namespace Qt::StringLiterals;

namespace net {

namespace {
/// By its file name: while plug-in paths are set, even for a moment, the toolkit takes note of all
/// plug-ins there, such as image formats, and uses them from then on.
void loadBackend()
{
    if (!QSslSocket::availableBackends().isEmpty())
        return;
    const QString plugins = QLibraryInfo::path(QLibraryInfo::PluginsPath);
    QPluginLoader loader(plugins + u"/tls/libqopensslbackend.so");
    // It registers itself when it is created. The thread that needs it first may end before it.
    if (QObject* const backend = loader.instance())
        backend->moveToThread(QCoreApplication::instance()->thread());
    else
        MVR_LOG_WARN(u"TLS is not available: "_s + loader.errorString());
}
} // namespace

void ensureTls()
{
    static std::once_flag once;
    std::call_once(once, loadBackend);
}

} // namespace net
