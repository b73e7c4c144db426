// The icon in a real tray, and the news that it tells by a real notification service.
#include "app/base/UserMetrics.h"
#include "app/notify/NotifyHelper.h"
#include "net/NetServices.h"
#include "tests/app/Child.h"
#include "tests/net/UpdateService.h"
#include "tests/ui/WindowTest.h"
#include "ui/TrayIcon.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QMenu>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class tst_TrayIcon : public WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_service = std::make_unique<UpdateService>();
        m_daemon.emplace(u"dunst"_s, QStringList{u"-print"_s});
        QTRY_VERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(
            u"org.freedesktop.Notifications"_s));
    }

    void news_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<bool>("wanted");
        QTest::newRow("same") << u"0.2.608"_s << true;
        QTest::newRow("newer, unwanted") << u"0.2.609"_s << false;
        QTest::newRow("newer") << u"0.10.1"_s << true;
    }
    void news()
    {
        QFETCH(const QString, version);
        QFETCH(const bool, wanted);
        m_service->answer = TestServer::answer(
            200, json("{'updates': [{'id': '" + ProductHelper::productId().toLatin1() +
                      "', 'version': '" + version.toLatin1() + "', 'url': 'http://a.example'}]}"));
        dynamic_singleton<UserMetrics>::inst();
        dynamic_singleton<ProgramSettings>::inst().showNotifications = wanted;
        ProductHelper::setLatestProductVersion({});
        const QSignalSpy checked(NetServices::shared().get(), &NetServices::updatesChecked);
        {
            const TrayIcon icon(m_window.get());
            QTRY_COMPARE_WITH_TIMEOUT(checked.size(), 1, 20'000);
            QCoreApplication::processEvents();
        }
        const bool isNewer = version != u"0.2.608"_s;
        QCOMPARE(ProductHelper::latestProductVersion().toString() == version, isNewer);
        QVERIFY(NotifyHelper().show(u"the last"_s, {}));
        QString told;
        while (!told.contains(u"'the last'"_s)) {
            const QString line = m_daemon->line();
            QVERIFY(!line.isEmpty());
            told += line;
        }
        QCOMPARE(told.contains("'Mivora update'"_L1), isNewer && wanted);
        QCOMPARE(told.contains(u"'Mivora %1 is available! Check out the About section for a "
                               "download link.'"_s.arg(version)),
                 isNewer && wanted);
        NetServices::destroyShared();
        dynamic_singleton<UserMetrics>::destroy();
    }

    void clicks()
    {
        m_service->answer = TestServer::answer(404, {});
        dynamic_singleton<UserMetrics>::inst();
        auto icon = std::make_unique<TrayIcon>(m_window.get());
        icon->show();
        m_window->setTrayIcon(icon.get());
        m_window->close();
        icon->showWindowUnlessHosted(0ms);
        QTRY_VERIFY2(m_window->isActiveWindow(), "no tray to bring it back from");

        // A tray that is late.
        const Child tray(u"trayer"_s, QStringList{u"--widthtype"_s, u"request"_s});
        QTRY_VERIFY(icon->geometry().isValid() && QSystemTrayIcon::isSystemTrayAvailable());
        const QSignalSpy activated(icon.get(), &QSystemTrayIcon::activated);
        const auto click = [&](const QString& button) {
            const QPoint where = icon->geometry().center();
            QProcess::execute(u"xdotool"_s, {u"mousemove"_s, QString::number(where.x()),
                                             QString::number(where.y()), u"click"_s, button});
        };
        m_window->close();
        icon->showWindowUnlessHosted(0ms);
        // The tray still moves the icon to its place.
        QTRY_VERIFY((click(u"2"_s), !activated.isEmpty()));
        QVERIFY(!m_window->isVisible());
        click(u"1"_s);
        QTRY_VERIFY(m_window->isActiveWindow());

        QMenu* menu = icon->contextMenu();
        bool isInReach = false;
        QTimer::singleShot(0, this, [&] {
            click(u"3"_s);
            isInReach = QTest::qWaitFor([menu] { return menu->isVisible(); });
            menu->close();
            QApplication::activeModalWidget()->close();
        });
        menu->actions().at(3)->trigger();
        QVERIFY2(isInReach, "while the preferences are open");
        icon.reset();
        QCoreApplication::processEvents();
        NetServices::destroyShared();
        dynamic_singleton<UserMetrics>::destroy();
        QCOMPARE(m_log->take().size(), 1);
    }

private:
    std::unique_ptr<UpdateService> m_service;
    std::optional<Child> m_daemon;
};

QTEST_MAIN(tst_TrayIcon)
#include "tst_trayicon.moc"
