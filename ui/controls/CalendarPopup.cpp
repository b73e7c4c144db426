#include "ui/controls/CalendarPopup.h"

#include "ui/controls/MyCalendar.h"
#include "ui/controls/StyleHelper.h"

#include <QPainter>
#include <QVBoxLayout>
#include <QWindow>

namespace {

constexpr QMargins margins(7, 5, 7, 5);

} // namespace

CalendarPopup::CalendarPopup(QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , m_calendar(new MyCalendar(this))
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(margins);
    layout->setSpacing(0);
    layout->addWidget(m_calendar);
    connect(m_calendar, &MyCalendar::dateChanged, this, &CalendarPopup::_calendarDateChanged);
    _fitCalendar();
}

void CalendarPopup::setDateTime(const QDateTime& dateTime)
{
    m_calendar->setSelectedDateTime(dateTime);
}

QDateTime CalendarPopup::dateTime() const
{
    return m_calendar->selectedDateTime();
}

void CalendarPopup::_calendarDateChanged(const QDate& date)
{
    Q_EMIT dateTimeChanged(date.startOfDay());
}

void CalendarPopup::_fitCalendar()
{
    setFixedSize(m_calendar->sizeHint().grownBy(margins));
}

bool CalendarPopup::event(QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest)
        _fitCalendar();
    // Not every platform respects that it takes no focus.
    if (event->type() == QEvent::WindowActivate)
        parentWidget()->activateWindow();
    return QWidget::event(event);
}

void CalendarPopup::showEvent(QShowEvent* event)
{
    windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus);
    QWidget::showEvent(event);
}

void CalendarPopup::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fancy::color(fancy::RowSelected));
    painter.drawRect(rect());
}
