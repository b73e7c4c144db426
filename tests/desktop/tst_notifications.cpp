// Pop-up messages, sent to a service that takes them, refuses them or keeps silent.
#include "app/notify/Notification.h"
#include "app/notify/NotifyHelper.h"
#include "tests/desktop/BusService.h"

#include <QDBusMessage>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class Service : public BusService
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    bool tellsCapabilities = true; ///< or else never answers
    /// What becomes of one message after the other: an error, "silence", or else it is taken.
    QStringList answers;
    QStringList calls;

    Service()
        : BusService(u"org.freedesktop.Notifications"_s)
    {
        begin(u"/org/freedesktop/Notifications"_s);
    }
    ~Service() override { end(); }

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
        setDelayedReply(!tellsCapabilities);
        return {u"body-markup"_s};
    }
    quint32 Notify(const QString& app, quint32 replaces, const QString& /*icon*/,
                   const QString& summary, const QString& body, const QStringList& /*actions*/,
                   const QVariantMap& hints, int timeout)
    {
        const QString answer = answers.value(calls.size());
        const QLatin1StringView urgency(hints.value(u"urgency"_s).typeName());
        calls += u"%1 %2 '%3' '%4' %5 %6"_s.arg(app)
                     .arg(replaces)
                     .arg(summary, body, urgency)
                     .arg(timeout);
        setDelayedReply(answer == "silence"_L1);
        if (!answer.isEmpty() && answer != "silence"_L1)
            sendErrorReply(u"org.freedesktop.DBus.Error."_s + answer, u"no"_s);
        return 7;
    }
};

class tst_Notifications : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messages_data()
    {
        QTest::addColumn<QStringList>("answers");
        QTest::addColumn<bool>("tellsCapabilities");
        QTest::newRow("taken") << QStringList{{}} << true;
        QTest::newRow("array denied") << QStringList{u"AccessDenied"_s, {}} << true;
        QTest::newRow("array invalid") << QStringList{u"InvalidArgs"_s, {}} << true;
        QTest::newRow("all denied") << QStringList{u"AccessDenied"_s, u"AccessDenied"_s} << true;
        QTest::newRow("fails") << QStringList{u"Failed"_s} << true;
        QTest::newRow("silent") << QStringList{u"silence"_s} << true;
        QTest::newRow("hangs from the start") << QStringList{{}} << false;
    }
    void messages()
    {
        QFETCH(const QStringList, answers);
        QFETCH(const bool, tellsCapabilities);
        Service service;
        service.answers = answers;
        service.tellsCapabilities = tellsCapabilities;
        const bool shown = tellsCapabilities && answers.last().isEmpty();
        QCOMPARE(NotifyHelper().show(u"A & b"_s, u"<c> & d"_s), shown);
        // Who cannot say that it takes markup gets the text as it is.
        const QString body = tellsCapabilities ? u"&lt;c&gt; &amp; d"_s : u"<c> & d"_s;
        QStringList expected;
        for (const QString& urgency :
             QStringList{u"QByteArray"_s, u"uchar"_s}.first(answers.size()))
            expected += u"Mivora 0 'A & b' '%1' %2 5000"_s.arg(body, urgency);
        QTRY_COMPARE(service.calls, expected);
    }

    void helpersShareTheConnection()
    {
        NotifyHelper outer;
        QVERIFY(outer.isAvailable());
        QVERIFY2(!outer.show(u"a"_s, u"b"_s), "there is no service");
        const Service service;
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
