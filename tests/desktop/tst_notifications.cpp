// Pop-up messages, sent to a service that takes them, refuses them or keeps silent.
#include "app/notify/Notification.h"
#include "app/notify/NotifyHelper.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

/// Lives in a thread and on a connection of its own, since its callers block.
class Service : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    QString refusal;         ///< the error that is answered
    bool refusesAll = false; ///< or else only messages whose urgency is an array
    QString silentCall;      ///< the one that is never answered
    QStringList calls;

    Service()
    {
        m_bus.registerObject(u"/org/freedesktop/Notifications"_s, this,
                             QDBusConnection::ExportAllSlots);
        m_bus.registerService(u"org.freedesktop.Notifications"_s);
        moveToThread(&m_thread);
        m_thread.start();
    }
    ~Service() override
    {
        m_bus.unregisterService(u"org.freedesktop.Notifications"_s);
        QDBusConnection::disconnectFromBus(u"service"_s);
        m_thread.quit();
        m_thread.wait();
    }
    Q_DISABLE_COPY_MOVE(Service)

    void tellAll(const QString& signal, const QVariantList& arguments) const
    {
        QDBusMessage message = QDBusMessage::createSignal(
            u"/org/freedesktop/Notifications"_s, u"org.freedesktop.Notifications"_s, signal);
        message.setArguments(arguments);
        m_bus.send(message);
    }

public Q_SLOTS:
    QStringList GetCapabilities()
    {
        setDelayedReply(silentCall == "GetCapabilities"_L1);
        return {u"body-markup"_s};
    }
    quint32 Notify(const QString& app, quint32 replaces, const QString& /*icon*/,
                   const QString& summary, const QString& body, const QStringList& /*actions*/,
                   const QVariantMap& hints, int timeout)
    {
        const QVariant urgency = hints.value(u"urgency"_s);
        calls += u"%1 %2 '%3' '%4' %5 %6"_s.arg(app)
                     .arg(replaces)
                     .arg(summary, body, QLatin1StringView(urgency.typeName()))
                     .arg(timeout);
        setDelayedReply(silentCall == "Notify"_L1);
        if (!refusal.isEmpty() && (refusesAll || urgency.typeId() == QMetaType::QByteArray))
            sendErrorReply(refusal, u"no"_s);
        return 7;
    }

private:
    QThread m_thread;
    QDBusConnection m_bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"service"_s);
};

class tst_Notifications : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messages_data()
    {
        QTest::addColumn<QString>("refusal");
        QTest::addColumn<bool>("refusesAll");
        QTest::addColumn<QString>("silentCall");
        QTest::addColumn<int>("tries");
        QTest::addColumn<bool>("shown");
        const QString error = u"org.freedesktop.DBus.Error."_s;
        const QString denied = error + u"AccessDenied"_s;
        QTest::newRow("taken") << QString() << false << QString() << 1 << true;
        QTest::newRow("array denied") << denied << false << QString() << 2 << true;
        QTest::newRow("array invalid")
            << error + u"InvalidArgs"_s << false << QString() << 2 << true;
        QTest::newRow("all denied") << denied << true << QString() << 2 << false;
        QTest::newRow("fails") << error + u"Failed"_s << false << QString() << 1 << false;
        QTest::newRow("silent") << QString() << false << u"Notify"_s << 1 << false;
        QTest::newRow("hangs from the start")
            << QString() << false << u"GetCapabilities"_s << 1 << false;
    }
    void messages()
    {
        QFETCH(const QString, refusal);
        QFETCH(const bool, refusesAll);
        QFETCH(const QString, silentCall);
        QFETCH(const int, tries);
        QFETCH(const bool, shown);
        Service service;
        service.refusal = refusal;
        service.refusesAll = refusesAll;
        service.silentCall = silentCall;
        QCOMPARE(NotifyHelper().show(u"A & b"_s, u"<c> & d"_s), shown);
        // Who cannot say that it takes markup gets the text as it is.
        const QString body =
            silentCall == "GetCapabilities"_L1 ? u"<c> & d"_s : u"&lt;c&gt; &amp; d"_s;
        QStringList expected;
        for (const QString& urgency : QStringList{u"QByteArray"_s, u"uchar"_s}.first(tries))
            expected += u"Mivora 0 'A & b' '%1' %2 5000"_s.arg(body, urgency);
        QTRY_COMPARE(service.calls, expected);
    }

    void noService()
    {
        NotifyHelper helper;
        QVERIFY(helper.isAvailable());
        QVERIFY(!helper.show(u"a"_s, u"b"_s));
    }

    void helpersShareTheConnection()
    {
        Service service;
        NotifyHelper outer;
        {
            const NotifyHelper inner;
        }
        QVERIFY(outer.show(u"a"_s, u"b"_s));
    }

    void messageGoesWhenItIsClosedAndNoOther()
    {
        Service service;
        const NotifyHelper helper;
        const QPointer<Notification> message = new Notification(u"a"_s, u"b"_s, {});
        const Notification never(u"e"_s, u"f"_s, {});
        QVERIFY(message->show());
        const QSignalSpy acted(message, &Notification::actionInvoked);
        const QSignalSpy closed(message, &Notification::closed);
        const QSignalSpy neverClosed(&never, &Notification::closed);
        service.tellAll(u"NotificationClosed"_s, {0U, 1U});
        service.tellAll(u"NotificationClosed"_s, {99U, 1U});
        service.tellAll(u"ActionInvoked"_s, {7U, u"key"_s});
        QTRY_COMPARE(acted.size(), 1);
        QVERIFY(message && closed.isEmpty() && neverClosed.isEmpty());
        service.tellAll(u"NotificationClosed"_s, {7U, 2U});
        QTRY_VERIFY(!message);
    }
};

QTEST_GUILESS_MAIN(tst_Notifications)
#include "tst_notifications.moc"
