// The due-date field and its calendar.
#include "app/base/Clock.h"
#include "app/base/DayWatch.h"
#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"
#include "ui/controls/CalendarPopup.h"
#include "ui/controls/DateWidget.h"
#include "ui/controls/FancyToolBtn.h"
#include "ui/controls/MyCalendar.h"

#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

const QDate today(2026, 10, 8);
const QDate tomorrow(2026, 10, 9);

class MovingWindow : public QWidget
{
    Q_OBJECT

Q_SIGNALS:
    void widgetMoved();

protected:
    void moveEvent(QMoveEvent*) override { Q_EMIT widgetMoved(); }
};

QList<QDate> datesOf(const QSignalSpy& spy)
{
    QList<QDate> dates;
    for (const QVariantList& arguments : spy)
        dates.append(arguments.first().toDateTime().date());
    return dates;
}

} // namespace

class TestDueDate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Clock::freeze(today.startOfDay().addSecs(15 * 3600));
        m_format = u"dd.MM.yyyy"_s;
    }

    void cleanup()
    {
        m_window.reset();
        Clock::release();
    }

    /// Typed into a field that holds 20 May 2025. The result is what was told last, if anything;
    /// Return then shows the stored value in the format.
    void typing_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QDate>("result");
        QTest::addColumn<int>("emissions");
        QTest::addColumn<QString>("afterReturn");
        const QDate unchanged(2025, 5, 20);
        const QDate third(2013, 4, 3);
        const QString dots = u"dd.MM.yyyy"_s;
        QTest::newRow("unpadded") << dots << u"3.4.2013"_s << third << 1 << u"03.04.2013"_s;
        QTest::newRow("cleared before") << dots << u" 3.4.2013"_s << third << 2 << u"03.04.2013"_s;
        QTest::newRow("short year") << dots << u"3.4.13"_s << unchanged << 0 << u"20.05.2025"_s;
        QTest::newRow("no such day") << dots << u"30.2.2013"_s << unchanged << 0 << u"20.05.2025"_s;
        QTest::newRow("then wrong") << dots << u"3.4.20131"_s << third << 1 << u"03.04.2013"_s;
        QTest::newRow("two-digit") << u"d.M.yy"_s << u"3.4.2013"_s << third << 1 << u"3.4.2013"_s;
        QTest::newRow("American") << u"M/d/yy"_s << u"4/3/2013"_s << third << 1 << u"4/3/2013"_s;
        QTest::newRow("month names")
            << u"d MMM yyyy"_s << u"3 apr 2013"_s << third << 1 << u"3 Apr 2013"_s;
        QTest::newRow("literal") << u"d.MM.yy 'г'."_s << u"3.04.2013 г."_s << third << 1
                                 << u"3.04.2013 г."_s;
    }

    void typing()
    {
        QFETCH(const QString, format);
        QFETCH(const QString, typed);
        QFETCH(const QDate, result);
        m_format = format;
        QVERIFY(_show(QDate(2025, 5, 20)));
        m_edit->setFocus();
        const QSignalSpy changes(m_date, &DateWidget::valueChanged);
        m_edit->selectAll();
        for (const QChar character : typed)
            QTest::sendKeyEvent(QTest::Click, m_edit, Qt::Key_unknown, character, {});

        QTEST(int(changes.size()), "emissions");
        if (!changes.isEmpty()) {
            QCOMPARE(datesOf(changes).last(), result);
            QCOMPARE(_popup()->dateTime(), result.startOfDay());
        }
        QTest::keyClick(m_edit, Qt::Key_Return);
        QTEST(m_edit->text(), "afterReturn");
        QCOMPARE(m_edit->selectedText(), m_edit->text());
        QCOMPARE(m_date->getValue(), result.startOfDay());
        QTEST(int(changes.size()), "emissions");
    }

    void tomorrowIsTheExample()
    {
        QVERIFY(_show({}));
        const QSignalSpy changes(m_date, &DateWidget::valueChanged);
        m_edit->setFocus();
        QCOMPARE(m_edit->text(), u"09.10.2026"_s);
        m_other->setFocus();
        QCOMPARE(m_edit->text(), u"Due date"_s);
        QVERIFY(changes.isEmpty());

        m_edit->setFocus();
        Clock::freeze(tomorrow.startOfDay());
        for (auto* watch : m_date->findChildren<DayWatch*>())
            Q_EMIT watch->dayChanged();
        QCOMPARE(m_edit->selectedText(), u"10.10.2026"_s);
        QCOMPARE(_popup()->dateTime().date(), tomorrow.addDays(1));
        QTest::keyClick(m_edit, Qt::Key_Return);
        QCOMPARE(datesOf(changes), QList<QDate>{tomorrow.addDays(1)});
        m_other->setFocus();
        QCOMPARE(m_edit->text(), u"10.10.2026"_s);
    }

    void oddDatesAreShownAndPainted()
    {
        for (const QDate& date : {QDate(12345, 6, 7), QDate(-5, 1, 1)}) {
            QVERIFY(_show(date));
            m_edit->setFocus();
            QVERIFY(!_popup()->grab().isNull());
            QTest::keyClick(m_edit, Qt::Key_Return);
            QCOMPARE(m_edit->text(), date.toString(m_format));
        }
    }

    void popupFollowsItsField()
    {
        QVERIFY(_show(today));
        m_edit->setFocus();
        QPointer<CalendarPopup> popup = _popup();
        const auto isBelow = [&] {
            const QRect place = popup->geometry();
            return popup->isVisible() && place.top() > _field().bottom() &&
                   qAbs(place.center().x() - _field().center().x()) < 2;
        };
        QVERIFY(isBelow() && m_edit->hasFocus());
        m_window->move(300, 80);
        QTRY_VERIFY(isBelow());

        // The platform of the tests activates every window that is shown.
        QCoreApplication::processEvents();
        QTRY_VERIFY(m_edit->hasFocus());
        QWidget another;
        another.show();
        another.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&another));
        m_date->placePopup();
        QVERIFY(!popup->isVisible());
        m_window->activateWindow();
        QTRY_VERIFY(isBelow());
        const QPoint place = m_date->pos();
        m_date->move(place.x(), -500);
        QVERIFY2(!popup->isVisible(), "scrolled out of view");
        m_date->move(place);
        QVERIFY(isBelow());
        delete m_date;
        QVERIFY(!popup);
    }

    void popupStaysOnTheScreen()
    {
        QVERIFY(_show({}));
        m_edit->setFocus();
        const QRect screen = m_window->screen()->availableGeometry();
        for (const QPoint& corner :
             {screen.topLeft() - QPoint(60, 0), screen.bottomRight() - QPoint(20, 60)}) {
            m_window->move(corner);
            QTRY_VERIFY(screen.contains(_popup()->geometry()));
            QVERIFY(!_popup()->geometry().intersects(_field()));
        }
    }

    void pickingKeepsThePopup()
    {
        QVERIFY(_show(QDate(2026, 3, 3)));
        m_edit->setFocus();
        const QSignalSpy changes(m_date, &DateWidget::valueChanged);
        auto* grid = _popup()->findChild<MyCalendarMonthWidget*>();
        // Seven rows of seven columns, the last day in the last row; above the days stand letters.
        const QPoint lastDay(grid->width() * 3 / 14, grid->height() * 13 / 14);
        QTest::mouseClick(grid, Qt::LeftButton, {}, {lastDay.x(), 5});
        QTest::mouseClick(grid, Qt::LeftButton, {}, lastDay);
        QCOMPARE(m_edit->selectedText(), u"31.03.2026"_s);
        QVERIFY(_popup()->isVisible());
        for (const QString& name : {u"Next month"_s, u"Previous month"_s, u"Previous month"_s,
                                    u"Reset to current date"_s}) {
            for (auto* button : _popup()->findChildren<FancyToolBtn*>()) {
                if (button->toolTip() == name)
                    QTest::mouseClick(button, Qt::LeftButton);
            }
        }
        QCOMPARE(
            datesOf(changes),
            (QList<QDate>{{2026, 3, 31}, {2026, 4, 30}, {2026, 3, 30}, {2026, 2, 28}, tomorrow}));
        QTRY_VERIFY(m_edit->hasFocus());
    }

private:
    [[nodiscard]] bool _show(const QDate& date)
    {
        m_window = std::make_unique<MovingWindow>();
        auto* layout = new QVBoxLayout(m_window.get());
        m_other = new QLineEdit;
        layout->addWidget(m_other);
        m_date = new DateWidget(QDateTime(date, QTime(15, 30)), m_window.get());
        layout->addWidget(m_date);
        m_edit = m_date->findChild<QLineEdit*>();
        m_window->setGeometry(200, 100, 300, 80);
        m_window->show();
        m_window->activateWindow();
        if (!QTest::qWaitForWindowActive(m_window.get()))
            return false;
        m_other->setFocus();
        return m_other->hasFocus();
    }

    [[nodiscard]] CalendarPopup* _popup() const { return m_date->findChild<CalendarPopup*>(); }
    [[nodiscard]] QRect _field() const
    {
        return {m_edit->mapToGlobal(QPoint(0, 0)), m_edit->size()};
    }

    QString& m_format = dynamic_singleton<ProgramSettings>::inst().dateFormat;
    std::unique_ptr<MovingWindow> m_window;
    DateWidget* m_date = nullptr;
    QLineEdit* m_edit = nullptr;
    QLineEdit* m_other = nullptr;
};

QTEST_MAIN(TestDueDate)
#include "tst_duedate.moc"
