// The little window with the calendar.
#pragma once

#include <QDateTime>
#include <QWidget>

class MyCalendar;

/// Floats above the window of its parent and never takes the focus from it.
class CalendarPopup : public QWidget
{
    Q_OBJECT

public:
    explicit CalendarPopup(QWidget* parent);

    /// Shows and selects its day, without a signal.
    void setDateTime(const QDateTime& dateTime);
    [[nodiscard]] QDateTime dateTime() const;

Q_SIGNALS:
    /// The user picked this day: its first moment.
    void dateTimeChanged(const QDateTime& dateTime);

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private Q_SLOTS:
    void _calendarDateChanged(const QDate& date);

private:
    void _fitCalendar();

    MyCalendar* m_calendar;
};
