// The update check from the interface thread to the server and back.
#include "app/base/ProductHelper.h"
#include "app/base/UserMetrics.h"
#include "app/base/dynamic_singleton.h"
#include "net/NetServices.h"
#include "tests/net/UpdateService.h"
#include "tests/support/LogWatch.h"

#include <QRegularExpression>
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
        row("no text", "", u""_s);
        row("no JSON", "<html>", u""_s);
        row("cut", goodAnswer.chopped(1), u""_s);
        row("no object", "[]", u""_s);
        row("no updates", "{'x': []}", u""_s);
        row("updates are no list", "{'updates': {'id': 'a'}}", u""_s);
        row("none", entries(""), u""_s);
        row("entries of other kinds", entries("1, 'a', [], null"), u""_s);
        row("no id", entries("{'version': '1', 'url': 'http://a'}"), u""_s);
        row("empty id", entries("{'id': '', 'version': '1', 'url': 'http://a'}"), u""_s);
        row("no version", entries("{'id': 'a', 'url': 'http://a'}"), u""_s);
        row("bad version", entries("{'id': 'a', 'version': '1.x', 'url': 'http://a'}"), u""_s);
        row("no address", entries("{'id': 'a', 'version': '1'}"), u""_s);
        row("bad address", entries("{'id': 'a', 'version': '1', 'url': 'http://a:b:c'}"), u""_s);
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
        for (const UpdateInformation::ProductInfo& info : information.products()) {
            found << info.id() + u' ' + info.version().toString() + u' ' + info.url().toString();
            QCOMPARE(info.text(), QString());
        }
        QCOMPARE(found.join(u'/'), products);
        QCOMPARE(information.valid(), !products.isEmpty());
        QVERIFY(!UpdateInformation(nullptr).valid());
    }

    void check()
    {
        UpdateService service;
        service.answer = TestServer::answer(200, goodAnswer);
        const boost::shared_ptr<NetServices> worker = NetServices::shared();
        QCOMPARE(NetServices::shared(), worker);

        UpdateInformation got;
        QThread* receiver = nullptr;
        connect(worker.get(), &NetServices::updatesChecked, this,
                [&](const UpdateInformation& information) {
                    got = information;
                    receiver = QThread::currentThread();
                });
        worker->checkForUpdates();
        QTRY_COMPARE_WITH_TIMEOUT(receiver, thread(), 20'000);
        QVERIFY(got.valid());
        QCOMPARE(got.products().keys(), {u"a.product"_s});

        QCOMPARE(service.server.requests().size(), 2);
        const TestServer::Request request = service.server.requests().last();
        QCOMPARE(request.method, "GET");
        QCOMPARE(request.header("Host"), ProductHelper::serviceHost().toLatin1());
        QCOMPARE(request.header("User-Agent"), "Mivora 0.2.608");
        QCOMPARE(QString::fromLatin1(request.target),
                 u"/updates?id="_s + UserMetrics::installationId() + u"&p="_s +
                     ProductHelper::productId() + u"&v=0.2.608"_s);
    }

    void severalChecks()
    {
        UpdateService service;
        service.answer = TestServer::answer(200, goodAnswer);
        const boost::shared_ptr<NetServices> worker = NetServices::shared();
        const QSignalSpy checked(worker.get(), &NetServices::updatesChecked);
        for (int i = 0; i < 5; ++i)
            worker->checkForUpdates();
        QTRY_COMPARE_WITH_TIMEOUT(checked.size(), 5, 20'000);
        QByteArray methods;
        for (const TestServer::Request& request : service.server.requests())
            methods += request.method + ' ';
        // One after the other: no connection is made before the one before it has its answer.
        QCOMPARE(methods, QByteArray("CONNECT GET ").repeated(5));
    }

    void failedCheck()
    {
        UpdateService service;
        service.answer = TestServer::answer(503, goodAnswer);
        const boost::shared_ptr<NetServices> worker = NetServices::shared();
        const QSignalSpy checked(worker.get(), &NetServices::updatesChecked);
        worker->checkForUpdates();
        QTRY_COMPARE_WITH_TIMEOUT(checked.size(), 1, 20'000);
        const auto information = checked.at(0).at(0).value<UpdateInformation>();
        QVERIFY(!information.valid());
        QVERIFY(information.products().isEmpty());
        QCOMPARE(m_log->take().size(), 1);
    }

    void endDuringACheck()
    {
        const UpdateService service;
        NetServices::shared()->checkForUpdates();
        NetServices::shared()->checkForUpdates();
        QVERIFY(service.server.waitForRequests(2));
        QElapsedTimer clock;
        clock.start();
        NetServices::destroyShared();
        qInfo("leaving took %lld ms", clock.elapsed());
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
        const auto saved = [&path] {
            dynamic_singleton<UserMetrics>::inst().save(path);
            QFile file(path);
            return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        };
        const auto document = [](const QString& id) -> QString {
            return u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><metrics><id>"_s + id +
                   u"</id></metrics>\n"_s;
        };

        QVERIFY(!start());
        QCOMPARE(saved(), document(u""_s));

        QVERIFY(start());
        const QString id = sentId();
        static const QRegularExpression form(
            u"^[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}$"_s);
        QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
        QCOMPARE(sentId(), id);
        QCOMPARE(saved(), document(id));

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
