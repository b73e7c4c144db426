#include "app/notify/Notification.h"

#include "app/notify/OrgFreedesktopNotificationsInterface.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDeadlineTimer>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
constexpr int patienceMs = 3000;
constexpr auto urgencyHint = "urgency"_L1;

bool isTimeOut(const QDBusError& error)
{
    return error.type() == QDBusError::NoReply || error.type() == QDBusError::Timeout ||
           error.type() == QDBusError::TimedOut;
}

bool isRefusal(const QDBusError& error)
{
    return error.type() == QDBusError::AccessDenied || error.type() == QDBusError::InvalidArgs;
}

template <typename Reply>
Reply waitedFor(Reply reply)
{
    reply.waitForFinished();
    return reply;
}

/// What a failed reply gives as its value is the text of the error.
QStringList listIn(const QDBusPendingReply<QStringList>& reply)
{
    return reply.isValid() ? reply.value() : QStringList();
}
} // namespace

std::unique_ptr<OrgFreedesktopNotificationsInterface> Notification::s_notifications;

bool Notification::init(const QString& appName)
{
    if (!QDBusConnection::sessionBus().isConnected())
        return false;
    s_notifications = std::make_unique<OrgFreedesktopNotificationsInterface>();
    s_notifications->setTimeout(patienceMs);
    s_appName = appName;
    s_isInitted = true;
    return true;
}

void Notification::uninit()
{
    s_isInitted = false;
    s_notifications.reset();
}

QStringList Notification::getServerCaps()
{
    return s_notifications ? listIn(waitedFor(s_notifications->GetCapabilities())) : QStringList();
}

bool Notification::getServerInfo(QString& name, QString& vendor, QString& version)
{
    if (!s_notifications)
        return false;
    const auto reply = waitedFor(s_notifications->GetServerInformation());
    if (!reply.isValid())
        return false;
    name = reply.argumentAt<0>();
    vendor = reply.argumentAt<1>();
    version = reply.argumentAt<2>();
    return true;
}

Notification::Notification(const QString& summary, const QString& body, const QString& iconName,
                           QObject* parent)
    : QObject(parent)
    , m_summary(summary)
    , m_body(body)
    , m_iconName(iconName)
{
    setUrgency(NotificationUrgency::Normal);
    // From any sender: the service may be started anew under another name.
    const QString interface =
        QLatin1StringView(OrgFreedesktopNotificationsInterface::staticInterfaceName());
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect({}, {}, interface, u"NotificationClosed"_s, this,
                SLOT(onNotificationClosed(quint32, quint32)));
    bus.connect({}, {}, interface, u"ActionInvoked"_s, this,
                SLOT(onActionInvoked(quint32, QString)));
}

void Notification::addAction(const QString& key, const QString& label)
{
    m_actions << key << label;
}

void Notification::setCategory(const QString& category)
{
    setHintString(u"category"_s, category);
}

void Notification::setUrgency(NotificationUrgency urgency)
{
    setHintByte(urgencyHint, static_cast<char>(urgency));
}

void Notification::setLocation(int x, int y)
{
    setHintInt32(u"x"_s, x);
    setHintInt32(u"y"_s, y);
}

bool Notification::show()
{
    if (!s_notifications)
        return false;
    if (m_id == 0)
        return _showNew();
    _send();
    return true;
}

/// All calls together take no longer than the time-out of one.
bool Notification::_showNew()
{
    const QDeadlineTimer deadline(patienceMs);
    const auto capabilities = waitedFor(s_notifications->GetCapabilities());
    m_takesMarkup = listIn(capabilities).contains("body-markup"_L1);
    if (isTimeOut(capabilities.error())) {
        // Nobody waits twice. Once the service wakes up, it shows the message all the same.
        _send();
        return false;
    }
    const auto sendInTime = [&deadline, this] {
        s_notifications->setTimeout(qMax(1, static_cast<int>(deadline.remainingTime())));
        return waitedFor(_send());
    };
    auto reply = sendInTime();
    if (isRefusal(reply.error()) && !std::exchange(m_plainUrgency, true))
        reply = sendInTime();
    s_notifications->setTimeout(patienceMs);
    if (reply.isValid())
        m_id = reply.value();
    return reply.isValid();
}

QDBusPendingReply<quint32> Notification::_send() const
{
    QVariantMap hints = m_hints;
    const QByteArray urgency = hints.value(urgencyHint).toByteArray();
    if (m_plainUrgency && !urgency.isEmpty())
        hints.insert(urgencyHint, QVariant::fromValue(static_cast<uchar>(urgency.front())));
    return s_notifications->Notify(s_appName, m_id, m_iconName, m_summary,
                                   m_takesMarkup ? m_body.toHtmlEscaped() : m_body, m_actions,
                                   hints, m_timeoutMs);
}

void Notification::close()
{
    if (s_notifications)
        waitedFor(s_notifications->CloseNotification(m_id));
}

void Notification::onNotificationClosed(quint32 id, quint32 reason)
{
    // The service tells everybody of everything. A pop-up that was never shown has no id.
    if (m_id == 0 || id != m_id)
        return;
    Q_EMIT closed(reason);
    if (m_autoDelete)
        deleteLater();
}

void Notification::onActionInvoked(quint32 id, const QString& actionKey)
{
    if (m_id != 0 && id == m_id)
        Q_EMIT actionInvoked(actionKey);
}
