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
#include <QRegularExpression>
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
        QTest::addColumn<QString>("product");
        QTest::addColumn<QString>("version");
        QTest::addColumn<bool>("wanted");
        const QString ours = ProductHelper::productId();
        QTest::newRow("same") << ours << u"0.2.608"_s << true;
        QTest::newRow("other product") << u"other"_s << u"9.0"_s << true;
        QTest::newRow("newer, unwanted") << ours << u"0.2.609"_s << false;
        QTest::newRow("newer") << ours << u"0.10.1"_s << true;
    }
    void news()
    {
        QFETCH(const QString, product);
        QFETCH(const QString, version);
        QFETCH(const bool, wanted);
        m_service->answer = TestServer::answer(
            200, json("{'updates': [{'id': '" + product.toLatin1() + "', 'version': '" +
                      version.toLatin1() + "', 'url': 'http://a.example'}]}"));
        dynamic_singleton<UserMetrics>::inst();
        dynamic_singleton<ProgramSettings>::inst().showNotifications = wanted;
        ProductHelper::setLatestProductVersion({});
        const QSignalSpy checked(NetServices::shared().get(), &NetServices::updatesChecked);
        {
            const TrayIcon icon(m_window.get());
            QTRY_COMPARE_WITH_TIMEOUT(checked.size(), 1, 20'000);
            QCoreApplication::processEvents();
        }
        const QString row = QString::fromUtf8(QTest::currentDataTag());
        QVERIFY(NotifyHelper().show(row, {}));
        const bool isNewer = row.startsWith("newer"_L1);
        QCOMPARE(ProductHelper::latestProductVersion().toString() == version, isNewer);
        const QString text =
            u"Mivora update/Mivora 0.10.1 is available! Check out the About section "
            "for a download link./"_s;
        QCOMPARE(toldBefore(row), isNewer && wanted ? text : QString());
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
        m_tray.emplace(u"trayer"_s, QStringList{u"--widthtype"_s, u"request"_s});
        QTRY_VERIFY(icon->geometry().isValid() && QSystemTrayIcon::isSystemTrayAvailable());
        const QSignalSpy activated(icon.get(), &QSystemTrayIcon::activated);
        const auto click = [&](const QStringList& how) {
            const QPoint where = icon->geometry().center();
            QProcess::execute(u"xdotool"_s, QStringList{u"mousemove"_s, QString::number(where.x()),
                                                        QString::number(where.y()), u"click"_s} +
                                                how);
        };
        m_window->close();
        icon->showWindowUnlessHosted(0ms);
        // The tray still moves the icon to its place.
        QTRY_VERIFY((click({u"2"_s}), !activated.isEmpty()));
        QVERIFY(!m_window->isVisible());
        click({u"1"_s});
        QTRY_VERIFY(m_window->isActiveWindow());
        m_window->showMinimized();
        QTRY_VERIFY(m_window->isMinimized() && !m_window->isActiveWindow());
        // A second click with the first button would make it a double one.
        click({u"2"_s});
        click({u"1"_s});
        QTRY_VERIFY(!m_window->isMinimized() && m_window->isActiveWindow());

        QMenu* menu = icon->contextMenu();
        bool isInReach = false;
        QTimer::singleShot(0, this, [&] {
            click({u"3"_s});
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
    /// "summary/body/" of what the service has shown up to the message of that summary.
    QString toldBefore(const QString& summary)
    {
        static const QRegularExpression field(u"^(?:summary|body): '(.+)'$"_s);
        QString told;
        for (;;) {
            const QString line = m_daemon->line();
            const QString text = field.match(line).captured(1);
            if (line.isEmpty() || text == summary)
                return line.isEmpty() ? u"nothing came"_s : told;
            if (!text.isEmpty())
                told += text + u'/';
        }
    }

    std::unique_ptr<UpdateService> m_service;
    std::optional<Child> m_daemon;
    std::optional<Child> m_tray;
};

QTEST_MAIN(tst_TrayIcon)
#include "tst_trayicon.moc"
