// The update check from the interface thread to the server and back.
#include "app/base/ProductHelper.h"
#include "app/base/UserMetrics.h"
#include "app/base/dynamic_singleton.h"
#include "net/NetServices.h"
#include "tests/net/UpdateService.h"
#include "tests/support/LogWatch.h"

#include <QSignalSpy>
#include <QTest>
#include <QUrlQuery>

using namespace Qt::StringLiterals;

namespace {
const QByteArray goodAnswer = json("{'updates': [{'id': 'a.product', 'version': '1.4.2', "
                                   "'url': 'https://www.mivora.example/get?a=b'}]}");
} // namespace

class tst_UpdateCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCoreApplication::setLibraryPaths({}); }

    void init()
    {
        m_log = std::make_unique<LogWatch>();
        dynamic_singleton<UserMetrics>::inst();
    }

    void cleanup()
    {
        NetServices::destroyShared();
        dynamic_singleton<UserMetrics>::destroy();
        m_log.reset();
    }

    void answers_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("products");
        const auto row = [](const char* name, const QByteArray& answer, const QString& products) {
            QTest::newRow(name) << json(answer) << products;
        };
        const auto entries = [](const QByteArray& text) -> QByteArray {
            return "{'updates' : [" + text + "]}";
        };
        row("usable", goodAnswer, u"a.product 1.4.2 https://www.mivora.example/get?a=b"_s);
        row("cut", goodAnswer.chopped(1), u""_s);
        row("no object", "[]", u""_s);
        row("updates are no list", "{'updates': {'id': 'a', 'version': '1', 'url': 'http://a'}}",
            u""_s);
        row("nothing usable",
            entries("1, 'a', [], null, {'id': '', 'version': '1', 'url': 'http://a'}, "
                    "{'id': 'b', 'version': '1.x', 'url': 'http://a'}, "
                    "{'id': 'c', 'version': '1', 'url': 'http://a:b:c'}"),
            u""_s);
        row("good among bad, numbers as texts, the last of one id",
            entries(
                "{'id': 'a', 'version': 7, 'url': 'http://a'}, {'id': 'b'}, {'id': 'a', 'version': "
                "8.5, 'url': 'http://b'}, {'id': 'a', 'version': '-1', 'url': 'http://c'}"),
            u"a 8.5.0 http://b"_s);
    }

    void answers()
    {
        QFETCH(QByteArray, answer);
        QFETCH(const QString, products);
        const UpdateInformation information(&answer);
        QStringList found;
        for (const UpdateInformation::ProductInfo& info : information.products())
            found << info.id() + u' ' + info.version().toString() + u' ' + info.url().toString();
        QCOMPARE(found.join(u'/'), products);
        QCOMPARE(information.valid(), !products.isEmpty());
    }

    void check()
    {
        UpdateService service;
        service.answer = TestServer::answer(200, goodAnswer);
        UpdateInformation got;
        QThread* receiver = nullptr;
        connect(NetServices::shared().get(), &NetServices::updatesChecked, this,
                [&](const UpdateInformation& information) {
                    got = information;
                    receiver = QThread::currentThread();
                });
        NetServices::shared()->checkForUpdates();
        QTRY_COMPARE_WITH_TIMEOUT(receiver, thread(), 20'000);
        QCOMPARE(got.products().keys(), {u"a.product"_s});

        const TestServer::Request request = service.server.requests().last();
        QCOMPARE(request.method, "GET");
        QCOMPARE(request.headers.value("host"), ProductHelper::serviceHost().toLatin1());
        QCOMPARE(request.headers.value("user-agent"), "Mivora 0.2.608");
        QCOMPARE(QString::fromLatin1(request.target),
                 u"/updates?id="_s + UserMetrics::installationId() + u"&p="_s +
                     ProductHelper::productId() + u"&v=0.2.608"_s);
    }

    void failedCheck()
    {
        UpdateService service;
        service.answer = TestServer::answer(503, goodAnswer);
        const QSignalSpy checked(NetServices::shared().get(), &NetServices::updatesChecked);
        NetServices::shared()->checkForUpdates();
        QTRY_COMPARE_WITH_TIMEOUT(checked.size(), 1, 20'000);
        QVERIFY(!checked.at(0).at(0).value<UpdateInformation>().valid());
        QCOMPARE(m_log->take().size(), 1);
    }

    void endDuringACheck()
    {
        const UpdateService service;
        NetServices::shared()->checkForUpdates();
        NetServices::shared()->checkForUpdates();
        QTRY_COMPARE_WITH_TIMEOUT(service.server.requests().size(), 2, 20'000);
        NetServices::destroyShared();
        // The server reads only now what was sent meanwhile.
        QTest::qWait(50);
        // The thread was not terminated, and what was queued never began.
        QCOMPARE(m_log->take(), {u"Critical some error happened Operation canceled"_s});
        QCOMPARE(service.server.requests().size(), 2);
    }

    void installationIdLivesOn()
    {
        UpdateService service;
        service.answer = TestServer::answer(200, goodAnswer);
        const QTemporaryDir dir;
        const QString path = dir.filePath(u"metrics.xml"_s);
        const auto start = [&path] {
            dynamic_singleton<UserMetrics>::destroy();
            return dynamic_singleton<UserMetrics>::inst().load(path);
        };
        const auto sentId = [&service] {
            const QSignalSpy checked(NetServices::shared().get(), &NetServices::updatesChecked);
            NetServices::shared()->checkForUpdates();
            if (!QTest::qWaitFor([&checked] { return !checked.isEmpty(); }, 20'000))
                return u"no answer"_s;
            const QUrl url(QString::fromLatin1(service.server.requests().last().target));
            return QUrlQuery(url).queryItemValue(u"id"_s);
        };

        // Nobody has asked for it in the first life.
        QVERIFY(!start());
        dynamic_singleton<UserMetrics>::inst().save(path);

        QVERIFY(start());
        const QString id = sentId();
        QCOMPARE(id.size(), 36);
        QCOMPARE(sentId(), id);
        dynamic_singleton<UserMetrics>::inst().save(path);

        QVERIFY(start());
        QCOMPARE(sentId(), id);

        QVERIFY(QFile::remove(path));
        QVERIFY(!start());
        QVERIFY(sentId() != id);
    }

private:
    std::unique_ptr<LogWatch> m_log;
};

QTEST_GUILESS_MAIN(tst_UpdateCheck)
#include "tst_updatecheck.moc"
