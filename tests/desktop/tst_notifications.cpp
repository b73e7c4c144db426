// Pop-up messages, sent to a service that takes them, refuses them or keeps silent.
#include "app/notify/Notification.h"
#include "app/notify/NotifyHelper.h"
#include "tests/desktop/BusService.h"

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
    void messages()
    {
        // Taken, the array denied or invalid, silence, no answer from the start.
        for (const auto& [answers, tellsCapabilities] : {std::pair(QStringList{QString()}, true),
                                                         {{u"AccessDenied"_s, {}}, true},
                                                         {{u"InvalidArgs"_s, {}}, true},
                                                         {{u"silence"_s}, true},
                                                         {{QString()}, false}}) {
            Service service;
            service.answers = answers;
            service.tellsCapabilities = tellsCapabilities;
            const NotifyHelper helper;
            Notification message(u"A & b"_s, u"<c> & d"_s, {});
            QCOMPARE(message.show(), tellsCapabilities && answers.last().isEmpty());
            // Who cannot say that it takes markup gets the text as it is.
            const QString body = tellsCapabilities ? u"&lt;c&gt; &amp; d"_s : u"<c> & d"_s;
            QStringList expected;
            for (const QString& urgency :
                 QStringList{u"QByteArray"_s, u"uchar"_s}.first(answers.size()))
                expected += u"Mivora 0 'A & b' '%1' %2 5000"_s.arg(body, urgency);
            QTRY_COMPARE(service.calls, expected);
        }
    }
};

QTEST_GUILESS_MAIN(tst_Notifications)
#include "tst_notifications.moc"
