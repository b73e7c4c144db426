#include "app/notify/OrgFreedesktopNotificationsInterface.h"

#include <QDBusConnection>

using namespace Qt::StringLiterals;

OrgFreedesktopNotificationsInterface::OrgFreedesktopNotificationsInterface(QObject* parent)
    : QDBusAbstractInterface(u"org.freedesktop.Notifications"_s,
                             u"/org/freedesktop/Notifications"_s, staticInterfaceName(),
                             QDBusConnection::sessionBus(), parent)
{
}

QDBusPendingReply<QStringList> OrgFreedesktopNotificationsInterface::GetCapabilities()
{
    return asyncCall(u"GetCapabilities"_s);
}

QDBusPendingReply<quint32> OrgFreedesktopNotificationsInterface::Notify(
    const QString& appName, quint32 replacesId, const QString& icon, const QString& summary,
    const QString& body, const QStringList& actions, const QVariantMap& hints, int timeoutMs)
{
    return asyncCall(u"Notify"_s, appName, replacesId, icon, summary, body, actions, hints,
                     timeoutMs);
}

QDBusPendingReply<> OrgFreedesktopNotificationsInterface::CloseNotification(quint32 id)
{
    return asyncCall(u"CloseNotification"_s, id);
}

QDBusPendingReply<QString, QString, QString>
OrgFreedesktopNotificationsInterface::GetServerInformation()
{
    return asyncCall(u"GetServerInformation"_s);
}
