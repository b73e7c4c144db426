// A calendar of one month with buttons to go to other months.
#pragma once

#include "ui/controls/MyCalendarMonthWidget.h"

#include <QDateTime>

class FancyToolBtn;
class QBoxLayout;
class QLabel;

class MyCalendar : public QWidget, public MyCalendarMonthWidgetDelegate
{
    Q_OBJECT

public:
    explicit MyCalendar(QWidget* parent = nullptr);

    /// Shows and selects its day, without a signal.
    void setSelectedDateTime(const QDateTime& dateTime);
    /// Null until one was set.
    [[nodiscard]] QDateTime selectedDateTime() const { return m_selected; }

    /// By how near the day is.
    [[nodiscard]] QColor cellColorForDate(const QDate& date) const override;

Q_SIGNALS:
    /// The user picked a day or went to another month.
    void dateChanged(const QDate& date);

protected:
    void changeEvent(QEvent* event) override;

private Q_SLOTS:
    void _onPrevClicked();
    void _onNextClicked();
    void _onResetClicked();
    void _onCurrentMonthDateChanged(const QDate& date);

private:
    [[nodiscard]] QBoxLayout* _createHeader();
    void _choose(const QDateTime& dateTime);
    void _updateLabel();
    void _reserveLabelWidth();
    void _retranslate();

    QDateTime m_selected;
    MyCalendarMonthWidget* m_month;
    QLabel* m_label = nullptr;
    FancyToolBtn* m_prev = nullptr;
    FancyToolBtn* m_reset = nullptr;
    FancyToolBtn* m_next = nullptr;
};
