#include "net/Tls.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QPluginLoader>
#include <QSslSocket>

#include <mutex>

using namespace Qt::StringLiterals;

namespace net {

namespace {
void loadPlugins()
{
    if (!QSslSocket::availableBackends().isEmpty())
        return;
    const QDir folder(QLibraryInfo::path(QLibraryInfo::PluginsPath) + u"/tls"_s);
    const QStringList files = folder.entryList(QDir::Files);
    for (const QString& file : files) {
        QPluginLoader loader(folder.filePath(file));
        // A back end makes itself known when it is created.
        if (QObject* const backend = loader.instance())
            backend->moveToThread(QCoreApplication::instance()->thread());
    }
}
} // namespace

void ensureTls()
{
    static std::once_flag once;
    std::call_once(once, loadPlugins);
}

} // namespace net
