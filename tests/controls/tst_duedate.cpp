// The due-date field and its calendar.
#include "app/base/Clock.h"
#include "app/base/DayWatch.h"
#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"
#include "ui/controls/CalendarPopup.h"
#include "ui/controls/DateWidget.h"
#include "ui/controls/FancyToolBtn.h"
#include "ui/controls/MyCalendar.h"

#include <QAccessible>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
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

/// Where the day of the shown month has its middle, counted from the grid's description.
QPoint dayPlace(const MyCalendarMonthWidget* grid, const QDate& day)
{
    const QSize text = grid->fontMetrics().size(Qt::TextSingleLine, u"99"_s);
    const int width = text.width() + 10;
    const int height = text.height() + 2;
    int row = 1;
    for (QDate date(day.year(), day.month(), 1); date < day; date = date.addDays(1))
        row += date.dayOfWeek() == Qt::Sunday ? 1 : 0;
    return {(day.dayOfWeek() - 1) * width + width / 2, row * (height + 1) + height / 2};
}

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
        _setFormat(u"dd.MM.yyyy"_s);
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
        const QDate unchanged(2025, 5, 20);
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QDate>("result");
        QTest::addColumn<int>("emissions");
        QTest::addColumn<QString>("afterReturn");

        const QString dots = u"dd.MM.yyyy"_s;
        const QDate third(2013, 4, 3);
        const auto row = [](const char* name, const QString& setting, const QString& typed,
                            const QDate& result, int emissions, const QString& afterReturn) {
            QTest::newRow(name) << setting << typed << result << emissions << afterReturn;
        };
        row("unpadded", dots, u"3.4.2013"_s, third, 1, u"03.04.2013"_s);
        row("padded", dots, u"03.04.2013"_s, third, 1, u"03.04.2013"_s);
        row("blank, so cleared, before", dots, u" 3.4.2013"_s, third, 2, u"03.04.2013"_s);
        row("short year", dots, u"3.4.13"_s, unchanged, 0, u"20.05.2025"_s);
        row("not a number", dots, u"1.x.2013"_s, unchanged, 0, u"20.05.2025"_s);
        row("no such day", dots, u"30.2.2013"_s, unchanged, 0, u"20.05.2025"_s);
        row("two parts", dots, u"3.4"_s, unchanged, 0, u"20.05.2025"_s);
        row("other separators", dots, u"3/4/2013"_s, unchanged, 0, u"20.05.2025"_s);
        row("then wrong", dots, u"3.4.20131"_s, third, 1, u"03.04.2013"_s);
        row("year 1", dots, u"1.1.0001"_s, unchanged, 0, u"20.05.2025"_s);
        row("year 9999", dots, u"31.12.9999"_s, QDate(9999, 12, 31), 1, u"31.12.9999"_s);
        row("two-digit setting", u"dd.MM.yy"_s, u"3.4.2013"_s, third, 1, u"03.04.2013"_s);
        row("unpadded setting", u"d.M.yy"_s, u"3.4.2013"_s, third, 1, u"3.4.2013"_s);
        row("American", u"M/d/yy"_s, u"4/3/2013"_s, third, 1, u"4/3/2013"_s);
        row("American, not padded", u"MM/dd/yy"_s, u"4/3/2013"_s, unchanged, 0, u"05/20/2025"_s);
        row("ISO", u"yyyy-MM-dd"_s, u"2013-04-03"_s, third, 1, u"2013-04-03"_s);
        row("month names", u"d MMM yyyy"_s, u"3 apr 2013"_s, third, 1, u"3 Apr 2013"_s);
        row("literal", u"d.MM.yy 'г'."_s, u"3.04.2013 г."_s, third, 1, u"3.04.2013 г."_s);
    }

    void typing()
    {
        QFETCH(const QString, setting);
        _setFormat(setting);
        const QDateTime start = QDate(2025, 5, 20).startOfDay();
        QVERIFY(_show(start));
        m_edit->setFocus();
        QSignalSpy changes(m_date, &DateWidget::valueChanged);
        m_edit->selectAll();
        QFETCH(const QString, typed);
        for (const QChar character : typed)
            QTest::sendKeyEvent(QTest::Click, m_edit, Qt::Key_unknown, character, {});

        QFETCH(const QDate, result);
        QTEST(int(changes.size()), "emissions");
        if (!changes.isEmpty()) {
            const QDateTime value = changes.last().first().toDateTime();
            QCOMPARE(value, result.startOfDay());
            QCOMPARE(m_date->findChild<CalendarPopup*>()->dateTime(), value);
        }
        QTest::keyClick(m_edit, Qt::Key_Return);
        QTEST(m_edit->text(), "afterReturn");
        QCOMPARE(m_edit->selectedText(), m_edit->text());
        QCOMPARE(m_date->getValue(), result.startOfDay());
        QTEST(int(changes.size()), "emissions");
    }

    void clearing()
    {
        QVERIFY(_show(QDate(2013, 4, 3).startOfDay()));
        m_edit->setFocus();
        QSignalSpy changes(m_date, &DateWidget::valueChanged);
        QTest::keyClick(m_edit, Qt::Key_Backspace);
        QCOMPARE(changes.size(), 1);
        QVERIFY(changes.first().first().toDateTime().isNull());
        QVERIFY(m_date->getValue().isNull());
        QCOMPARE(_popup()->dateTime().date(), today);
        m_other->setFocus();
        QCOMPARE(m_edit->text(), u"Due date"_s);
        QVERIFY(m_date->getValue().isNull());
    }

    void example()
    {
        QVERIFY(_show({}));
        QSignalSpy changes(m_date, &DateWidget::valueChanged);
        QCOMPARE(m_edit->text(), u"Due date"_s);
        m_edit->setFocus();
        QCOMPARE(m_edit->text(), u"09.10.2026"_s);
        QCOMPARE(_popup()->dateTime().date(), tomorrow);
        m_other->setFocus();
        QCOMPARE(m_edit->text(), u"Due date"_s);
        QVERIFY(changes.isEmpty());

        m_edit->setFocus();
        QTest::keyClicks(m_edit, u"3.4.2013"_s);
        QTest::keyClick(m_edit, Qt::Key_Z, Qt::ControlModifier);
        QTest::keyClick(m_edit, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(!datesOf(changes).contains(tomorrow));

        m_date->setValue({});
        m_other->setFocus();
        changes.clear();
        m_edit->setFocus();
        QTest::keyClick(m_edit, Qt::Key_Return);
        QCOMPARE(datesOf(changes), QList<QDate>{tomorrow});
        m_other->setFocus();
        QCOMPARE(m_edit->text(), u"09.10.2026"_s);
    }

    void valuesFromElsewhere_data()
    {
        QTest::addColumn<QDate>("date");
        QTest::newRow("too long a year") << QDate(12345, 6, 7);
        QTest::newRow("before our era") << QDate(-5, 1, 1);
        QTest::newRow("none") << QDate();
    }

    void valuesFromElsewhere()
    {
        QFETCH(const QDate, date);
        QVERIFY(_show(QDateTime(date, QTime(15, 30))));
        m_edit->setFocus();
        m_date->setValue(QDateTime(date, QTime(15, 30)));
        auto* calendar = m_date->findChild<MyCalendar*>();
        calendar->setSelectedDateTime(QDateTime(date, QTime(15, 30)));
        QVERIFY(!calendar->grab().isNull());
        QTest::keyClick(m_edit, Qt::Key_Return);
        QCOMPARE(m_edit->text(), date.toString(u"dd.MM.yyyy"));
    }

    void popupLife()
    {
        QVERIFY(_show(QDate(2013, 4, 3).startOfDay()));
        QVERIFY(!_popup());
        m_edit->setFocus();
        QPointer<CalendarPopup> popup = _popup();
        QVERIFY(popup && popup->isVisible() && m_edit->hasFocus());
        QCOMPARE(popup->windowFlags(),
                 Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        QCOMPARE(popup->geometry(), _expectedPlace(popup));
        m_window->move(300, 80);
        QTRY_COMPARE(popup->geometry(), _expectedPlace(popup));

        m_other->setFocus();
        QVERIFY(popup->isVisible());
        m_date->showCalendarPopup(false);
        QVERIFY(!popup->isVisible());
        QTRY_VERIFY(!popup);
        m_edit->setFocus();
        popup = _popup();
        m_window->hide();
        QVERIFY(!popup->isVisible());
        m_window->show();
        m_window->activateWindow();
        QTRY_VERIFY(m_edit->hasFocus() && _popup() && _popup()->isVisible());
        popup = _popup();
        delete m_date;
        QVERIFY(!popup);
    }

    void popupStepsAsideForAnotherWindow()
    {
        QVERIFY(_show({}));
        m_edit->setFocus();
        CalendarPopup* popup = _popup();
        // The platform of the tests activates every window that is shown.
        QCoreApplication::processEvents();
        QTRY_VERIFY(m_edit->hasFocus());
        QWidget another;
        another.show();
        another.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&another));
        QVERIFY(!popup->isVisible());
        m_date->placePopup();
        QVERIFY(!popup->isVisible());
        m_window->activateWindow();
        QTRY_VERIFY(popup->isVisible());
        QCOMPARE(m_edit->text(), u"09.10.2026"_s);
        QCOMPARE(m_edit->selectedText(), m_edit->text());
    }

    void popupStaysOnTheScreen()
    {
        QVERIFY(_show({}));
        m_edit->setFocus();
        const QRect screen = m_window->screen()->availableGeometry();
        const QList<QPoint> corners{screen.topLeft() - QPoint(60, 0),
                                    screen.bottomRight() - QPoint(20, 60),
                                    screen.bottomLeft() - QPoint(20, 60)};
        for (const QPoint& corner : corners) {
            m_window->move(corner);
            QTRY_VERIFY(screen.contains(_popup()->geometry()));
            const QRect field(m_edit->mapToGlobal(QPoint(0, 0)), m_edit->size());
            QVERIFY(!_popup()->geometry().intersects(field));
        }
    }

    void popupFollowsScrolling()
    {
        QScrollArea area;
        auto* content = new QWidget;
        auto* date = new DateWidget({}, content);
        date->setGeometry(10, 50, 200, 24);
        content->resize(300, 1000);
        area.setWidget(content);
        area.resize(320, 200);
        area.show();
        QVERIFY(QTest::qWaitForWindowExposed(&area));
        date->showCalendarPopup(true);
        const auto* popup = date->findChild<CalendarPopup*>();
        const int top = popup->y();
        for (const auto& [value, visible] : {std::pair(30, true), {300, false}, {0, true}}) {
            area.verticalScrollBar()->setValue(value);
            date->placePopup();
            QCOMPARE(popup->isVisible(), visible);
            if (visible)
                QCOMPARE(popup->y(), top - value);
        }
    }

    void pickingKeepsThePopup()
    {
        QVERIFY(_show(QDate(2013, 4, 3).startOfDay()));
        m_edit->setFocus();
        QSignalSpy changes(m_date, &DateWidget::valueChanged);
        auto* grid = _popup()->findChild<MyCalendarMonthWidget*>();
        QTest::mouseClick(grid, Qt::LeftButton, {}, dayPlace(grid, {2013, 4, 28}));
        QCOMPARE(m_edit->text(), u"28.04.2013"_s);
        QCOMPARE(m_edit->selectedText(), m_edit->text());
        QVERIFY(_popup()->isVisible());
        QTest::mouseClick(_button(u"Next month"_s), Qt::LeftButton);
        QTest::mouseClick(_button(u"Reset to current date"_s), Qt::LeftButton);
        QCOMPARE(datesOf(changes), (QList<QDate>{{2013, 4, 28}, {2013, 5, 28}, tomorrow}));
        QCOMPARE(m_date->getValue(), tomorrow.startOfDay());
        QTRY_VERIFY(m_edit->hasFocus());
    }

    void grid_data()
    {
        QTest::addColumn<QDate>("month");
        QTest::newRow("from Monday, four rows") << QDate(2021, 2, 1);
        QTest::newRow("from Thursday") << QDate(2026, 10, 1);
        QTest::newRow("from Sunday, six rows") << QDate(2026, 3, 1);
        QTest::newRow("leap year") << QDate(2024, 2, 1);
    }

    /// Each day can be clicked where it stands; around the days there is nothing.
    void grid()
    {
        QFETCH(const QDate, month);
        MyCalendarMonthWidget grid(nullptr);
        grid.resize(grid.sizeHint());
        const QSize text = grid.fontMetrics().size(Qt::TextSingleLine, u"99"_s);
        grid.setSelectedDate(month);
        QSignalSpy changes(&grid, &MyCalendarMonthWidget::dateChanged);
        for (QDate day = month; day.month() == month.month(); day = day.addDays(1)) {
            QTest::mouseClick(&grid, Qt::LeftButton, {}, dayPlace(&grid, day));
            QCOMPARE(changes.size(), day.day());
            QCOMPARE(changes.last().first().toDate(), day);
        }
        changes.clear();
        QTest::mouseClick(&grid, Qt::LeftButton, {}, {20, 5});
        QTest::mouseClick(&grid, Qt::LeftButton, {},
                          dayPlace(&grid, month.addMonths(1).addDays(-1)) +
                              QPoint(0, text.height() + 3));
        QVERIFY(changes.isEmpty());
    }

    void navigation()
    {
        MyCalendar calendar;
        const auto* label = calendar.findChild<QLabel*>();
        calendar.setSelectedDateTime(QDate(2013, 1, 31).startOfDay());
        QCOMPARE(label->text(), u"January, 2013"_s);
        const QSize size = calendar.sizeHint();
        QSignalSpy changes(&calendar, &MyCalendar::dateChanged);
        const QStringList names{u"Next month"_s, u"Next month"_s, u"Previous month"_s,
                                u"Previous month"_s, u"Previous month"_s};
        QStringList seen;
        for (const QString& name : names) {
            for (auto* button : calendar.findChildren<FancyToolBtn*>()) {
                if (button->accessibleName() == name)
                    button->click();
            }
            seen.append(changes.last().first().toDate().toString(Qt::ISODate) + u' ' +
                        label->text());
        }
        QCOMPARE(seen, (QStringList{u"2013-02-28 February, 2013"_s, u"2013-03-28 March, 2013"_s,
                                    u"2013-02-28 February, 2013"_s, u"2013-01-28 January, 2013"_s,
                                    u"2012-12-28 December, 2012"_s}));
        QCOMPARE(calendar.sizeHint(), size);
        const QString spoken =
            QAccessible::queryAccessibleInterface(calendar.findChild<MyCalendarMonthWidget*>())
                ->text(QAccessible::Name);
        QVERIFY(spoken.startsWith(label->text()));
        changes.clear();
        calendar.setSelectedDateTime({});
        QVERIFY(label->text().isEmpty() && changes.isEmpty());
    }

    void midnightMovesTheExample()
    {
        QVERIFY(_show({}));
        m_edit->setFocus();
        Clock::freeze(tomorrow.startOfDay());
        for (auto* watch : m_date->findChildren<DayWatch*>())
            Q_EMIT watch->dayChanged();
        QCOMPARE(m_edit->text(), u"10.10.2026"_s);
        QCOMPARE(m_edit->selectedText(), m_edit->text());
    }

private:
    void _setFormat(const QString& format)
    {
        dynamic_singleton<ProgramSettings>::inst().dateFormat = format;
    }

    [[nodiscard]] bool _show(const QDateTime& value)
    {
        m_window = std::make_unique<MovingWindow>();
        auto* layout = new QVBoxLayout(m_window.get());
        m_other = new QLineEdit;
        layout->addWidget(m_other);
        m_date = new DateWidget(value, m_window.get());
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

    [[nodiscard]] FancyToolBtn* _button(const QString& toolTip) const
    {
        for (auto* button : _popup()->findChildren<FancyToolBtn*>()) {
            if (button->toolTip() == toolTip)
                return button;
        }
        return nullptr;
    }

    [[nodiscard]] QRect _expectedPlace(const CalendarPopup* popup) const
    {
        const QPoint anchor =
            m_date->mapToGlobal(QPoint(m_edit->x() + m_edit->width() / 2, m_date->height()));
        return {anchor - QPoint(popup->sizeHint().width() / 2, 0), popup->sizeHint()};
    }

    std::unique_ptr<MovingWindow> m_window;
    DateWidget* m_date = nullptr;
    QLineEdit* m_edit = nullptr;
    QLineEdit* m_other = nullptr;
};

QTEST_MAIN(TestDueDate)
#include "tst_duedate.moc"
