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

    /// Typed into a field that holds 20 May 2025; Return then shows what is stored, and selects it.
    void typing()
    {
        const QDate third(2013, 4, 3);
        const QDate before(2025, 5, 20);
        for (const auto& [typed, result, emissions] : {std::tuple(u"3.4.2013"_s, third, 1),
                                                       {u" 3.4.2013"_s, third, 2},
                                                       {u"3.4.20131"_s, third, 1},
                                                       {u"3.4.13"_s, before, 0}}) {
            QVERIFY(_show(before));
            m_edit->setFocus();
            QTest::keyClicks(m_edit, typed);
            QTest::keyClick(m_edit, Qt::Key_Return);
            QCOMPARE(m_told.size(), emissions);
            QCOMPARE(m_edit->selectedText(), result.toString(m_format));
            QCOMPARE(m_date->getValue(), result.startOfDay());
            QCOMPARE(_popup()->dateTime(), result.startOfDay());
        }
    }

    /// In the format of any locale; direction marks are on no keyboard.
    void whatIsShownCanBeTyped()
    {
        QVERIFY(_show({}));
        m_edit->setFocus();
        for (const QLocale& locale : QLocale::matchingLocales(
                 QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory)) {
            m_format = locale.dateFormat(QLocale::ShortFormat);
            for (const QDate& date : {QDate(2026, 1, 2), QDate(1999, 12, 31), QDate(2030, 10, 9)}) {
                m_date->setValue(date.startOfDay());
                const QString typed = m_edit->text().remove(QChar(0x200f));
                m_date->setValue({});
                m_edit->insert(typed);
                QVERIFY2(m_told.last() == date, qPrintable(locale.name()));
            }
        }
        QVERIFY(m_told.size() > 1000);
    }

    void whatIsNoDateIsMarked()
    {
        QVERIFY(_show({}));
        m_edit->setFocus();
        const QPalette plain = m_edit->palette();
        QTest::keyClicks(m_edit, u"12/25/26"_s);
        QTest::keyClick(m_edit, Qt::Key_Return);
        m_other->setFocus();
        QCOMPARE(m_edit->text(), u"12/25/26"_s);
        QVERIFY(m_edit->palette() != plain);
        QVERIFY(m_edit->toolTip().contains(tomorrow.toString(m_format)));
        QCOMPARE(m_edit->accessibleDescription(), m_edit->toolTip());
        m_edit->setFocus();
        QTest::keyClicks(m_edit, u"3.4.2013"_s);
        QVERIFY(m_edit->palette() == plain && m_edit->toolTip().isEmpty());

        // A stored date may be one that cannot be typed.
        for (const QDate& odd : {QDate(12345, 6, 7), QDate(-5, 1, 1)}) {
            m_date->setValue(odd.startOfDay());
            QVERIFY(m_edit->toolTip().isEmpty() && !_popup()->grab().isNull());
            QTest::keyClick(m_edit, Qt::Key_Return);
            QCOMPARE(m_edit->text(), odd.toString(m_format));
        }
    }

    void tomorrowIsTheExample()
    {
        QVERIFY(_show({}));
        m_edit->setFocus();
        QCOMPARE(m_edit->text(), u"09.10.2026"_s);
        Clock::freeze(tomorrow.startOfDay());
        for (auto* watch : m_date->findChildren<DayWatch*>())
            Q_EMIT watch->dayChanged();
        QCOMPARE(m_edit->selectedText(), u"10.10.2026"_s);
        QCOMPARE(_popup()->dateTime().date(), tomorrow.addDays(1));
        QVERIFY(m_told.isEmpty());
        QTest::keyClick(m_edit, Qt::Key_Return);
        QCOMPARE(m_told, QList<QDate>{tomorrow.addDays(1)});
        m_other->setFocus();
        QCOMPARE(m_edit->text(), u"10.10.2026"_s);
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

        const QPoint place = m_date->pos();
        m_date->move(place.x(), -500);
        QVERIFY2(!popup->isVisible(), "scrolled out of view");
        m_date->move(place);
        QVERIFY(isBelow());

        const QRect screen = m_window->screen()->availableGeometry();
        for (const QPoint& corner :
             {screen.topLeft() - QPoint(60, 0), screen.bottomRight() - QPoint(20, 60)}) {
            m_window->move(corner);
            QTRY_VERIFY(screen.contains(popup->geometry()) &&
                        !popup->geometry().intersects(_field()));
        }
        delete m_date;
        QVERIFY(!popup);
    }

    void pickingKeepsThePopup()
    {
        QVERIFY(_show(QDate(2026, 3, 3)));
        m_edit->setFocus();
        auto* grid = _popup()->findChild<MyCalendarMonthWidget*>();
        // Seven rows of seven columns, the last day in the last row; above the days stand letters.
        const QPoint lastDay(grid->width() * 3 / 14, grid->height() * 13 / 14);
        QTest::mouseClick(grid, Qt::LeftButton, {}, {lastDay.x(), 5});
        QTest::mouseClick(grid, Qt::LeftButton, {}, lastDay);
        QCOMPARE(m_edit->selectedText(), u"31.03.2026"_s);
        QVERIFY(_popup()->isVisible());
        const auto buttons = _popup()->findChildren<FancyToolBtn*>();
        for (const int number : {2, 0, 0, 1}) // the next month, twice the one before, tomorrow
            QTest::mouseClick(buttons.at(number), Qt::LeftButton);
        QCOMPARE(
            m_told,
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
        m_told.clear();
        connect(m_date, &DateWidget::valueChanged, this,
                [this](const QDateTime& value) { m_told += value.date(); });
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
    QList<QDate> m_told;
};

QTEST_MAIN(TestDueDate)
#include "tst_duedate.moc"
