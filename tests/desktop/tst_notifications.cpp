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
    QStringList capabilities;
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
        return capabilities;
    }
    quint32 Notify(const QString& app, quint32 replaces, const QString& /*icon*/,
                   const QString& summary, const QString& body, const QStringList& actions,
                   const QVariantMap& hints, int timeout)
    {
        const QVariant urgency = hints.value(u"urgency"_s);
        calls += u"%1 %2 '%3' '%4' [%5] %6 %7"_s.arg(app)
                     .arg(replaces)
                     .arg(summary, body, actions.join(u' '), QLatin1StringView(urgency.typeName()))
                     .arg(timeout);
        setDelayedReply(silentCall == "Notify"_L1);
        if (!refusal.isEmpty() && (refusesAll || urgency.typeId() == QMetaType::QByteArray))
            sendErrorReply(refusal, u"no"_s);
        return replaces ? replaces : ++m_lastId;
    }
    void CloseNotification(quint32 id) const { tellAll(u"NotificationClosed"_s, {id, 3U}); }
    QString GetServerInformation(QString& vendor, QString& version, QString& standard)
    {
        vendor = u"tests"_s;
        version = standard = u"1.2"_s;
        return u"service"_s;
    }

private:
    QThread m_thread;
    QDBusConnection m_bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"service"_s);
    quint32 m_lastId = 6;
};

class tst_Notifications : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messages_data()
    {
        QTest::addColumn<QString>("capability");
        QTest::addColumn<QString>("refusal");
        QTest::addColumn<bool>("refusesAll");
        QTest::addColumn<QString>("silentCall");
        QTest::addColumn<QStringList>("urgencies");
        QTest::addColumn<bool>("shown");
        const QString array = u"QByteArray"_s;
        const QString byte = u"uchar"_s;
        const QString error = u"org.freedesktop.DBus.Error."_s;
        const auto row = [](const char* name, const QString& capability, const QString& refusal,
                            bool refusesAll, const QString& silentCall,
                            const QStringList& urgencies, bool shown) {
            QTest::newRow(name) << capability << refusal << refusesAll << silentCall << urgencies
                                << shown;
        };
        row("plain text", u"body"_s, {}, false, {}, {array}, true);
        row("markup", u"body-markup"_s, {}, false, {}, {array}, true);
        row("array denied", {}, error + u"AccessDenied"_s, false, {}, {array, byte}, true);
        row("array invalid", {}, error + u"InvalidArgs"_s, false, {}, {array, byte}, true);
        row("all denied", {}, error + u"AccessDenied"_s, true, {}, {array, byte}, false);
        row("fails", {}, error + u"Failed"_s, false, {}, {array}, false);
        row("silent", {}, {}, false, u"Notify"_s, {array}, false);
        row("hangs from the start", {}, {}, false, u"GetCapabilities"_s, {array}, false);
    }
    void messages()
    {
        QFETCH(const QString, capability);
        QFETCH(const QString, refusal);
        QFETCH(const bool, refusesAll);
        QFETCH(const QString, silentCall);
        QFETCH(const QStringList, urgencies);
        QFETCH(const bool, shown);
        Service service;
        service.capabilities = {capability};
        service.refusal = refusal;
        service.refusesAll = refusesAll;
        service.silentCall = silentCall;
        QCOMPARE(NotifyHelper().show(u"A & b"_s, u"<c> & d"_s), shown);
        const QString body = capability == "body-markup"_L1 ? u"&lt;c&gt; &amp; d"_s : u"<c> & d"_s;
        QStringList expected;
        for (const QString& urgency : urgencies)
            expected += u"Mivora 0 'A & b' '%1' [] %2 5000"_s.arg(body, urgency);
        QTRY_COMPARE(service.calls, expected);
    }

    void noService()
    {
        NotifyHelper helper;
        QVERIFY(helper.isAvailable());
        QVERIFY(!helper.show(u"a"_s, u"b"_s));
        QCOMPARE(Notification::getServerCaps(), QStringList());
    }

    void helpersShareTheConnection()
    {
        Service service;
        NotifyHelper outer;
        {
            const NotifyHelper inner;
        }
        QVERIFY(!Notification::isInitted());
        QVERIFY(outer.show(u"a"_s, u"b"_s));
    }

    void life()
    {
        Service service;
        const NotifyHelper helper;
        QString name;
        QString vendor;
        QString version;
        QVERIFY(Notification::getServerInfo(name, vendor, version));
        QCOMPARE(name + vendor + version, u"servicetests1.2"_s);

        const QPointer<Notification> first = new Notification(u"a"_s, u"b"_s, {});
        Notification second(u"c"_s, u"d"_s, {});
        Notification never(u"e"_s, u"f"_s, {});
        second.setAutoDelete(false);
        second.addAction(u"key"_s, u"Label"_s);
        QVERIFY(first->show() && second.show());
        first->setBody(u"changed"_s);
        QVERIFY(first->show());
        QTRY_COMPARE(service.calls.size(), 3);
        QCOMPARE(service.calls.at(1), u"Mivora 0 'c' 'd' [key Label] QByteArray 5000"_s);
        QCOMPARE(service.calls.at(2), u"Mivora 7 'a' 'changed' [] QByteArray 5000"_s);

        const QSignalSpy firstClosed(first, &Notification::closed);
        const QSignalSpy firstActed(first, &Notification::actionInvoked);
        const QSignalSpy secondClosed(&second, &Notification::closed);
        const QSignalSpy secondActed(&second, &Notification::actionInvoked);
        const QSignalSpy neverClosed(&never, &Notification::closed);
        service.tellAll(u"NotificationClosed"_s, {0U, 1U});
        service.tellAll(u"NotificationClosed"_s, {99U, 1U});
        service.tellAll(u"ActionInvoked"_s, {8U, u"key"_s});
        second.close();
        QTRY_COMPARE(secondClosed.size(), 1);
        QCOMPARE(secondClosed.at(0).at(0).toUInt(), 3U);
        QCOMPARE(secondActed.size(), 1);
        QVERIFY(first && firstClosed.isEmpty() && firstActed.isEmpty() && neverClosed.isEmpty());
        service.tellAll(u"NotificationClosed"_s, {7U, 2U});
        QTRY_VERIFY(!first);
    }
};

QTEST_GUILESS_MAIN(tst_Notifications)
#include "tst_notifications.moc"
