// The days of one month, to pick one from.
#pragma once

#include <QDate>
#include <QWidget>

#include <optional>

/// Chooses the colours of the days.
class MyCalendarMonthWidgetDelegate
{
public:
    MyCalendarMonthWidgetDelegate() = default;
    Q_DISABLE_COPY_MOVE(MyCalendarMonthWidgetDelegate)
    virtual ~MyCalendarMonthWidgetDelegate() = default;

    /// What a day is filled with when it is selected or under the pointer.
    [[nodiscard]] virtual QColor cellColorForDate(const QDate& date) const = 0;
};

/// Shows the month of the selected date, with its weeks beginning on Monday.
class MyCalendarMonthWidget : public QWidget
{
    Q_OBJECT

public:
    /// The delegate may be null; otherwise it has to live as long as this widget.
    explicit MyCalendarMonthWidget(const MyCalendarMonthWidgetDelegate* delegate,
                                   QWidget* parent = nullptr);

    /// Shows and selects it, without a signal; null shows no days.
    void setSelectedDate(const QDate& date);
    [[nodiscard]] QDate selectedDate() const { return m_selected; }

    [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user picked a day.
    void dateChanged(const QDate& date);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] QRect _cell(int row, int column) const;
    [[nodiscard]] QRect _cellOf(const QDate& day) const;
    [[nodiscard]] QDate _dayAt(const QPoint& position) const;
    void _pick(QMouseEvent* event);
    void _setHovered(const QDate& day);
    void _drawHeader(QPainter& painter) const;
    void _drawDay(QPainter& painter, const QDate& day, const QDate& today) const;
    [[nodiscard]] QColor _cellColor(const QDate& day) const;

    const MyCalendarMonthWidgetDelegate* m_delegate;
    QDate m_selected;
    QDate m_hovered;
    mutable std::optional<QSize> m_cellSize; // of the widget's font
};
