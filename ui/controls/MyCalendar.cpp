#include "ui/controls/MyCalendar.h"

#include "app/base/Clock.h"
#include "app/base/DayWatch.h"
#include "ui/controls/FancyToolBtn.h"
#include "ui/controls/StyleHelper.h"
#include "ui/icons/IconsHelper.h"

#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize iconSize(16, 16);
constexpr int soonDays = 3;

FancyToolBtn* makeButton(icons::EKnownIcon icon, QWidget* parent)
{
    auto* button = new FancyToolBtn(parent);
    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
    button->setIcon(dynamic_singleton<IconsHelper>::inst().knownIcon(icon));
    button->setIconSize(iconSize);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

void setName(FancyToolBtn* button, const QString& text)
{
    button->setToolTip(text);
    button->setAccessibleName(text);
}

QString monthText(const QDate& date)
{
    return u"%0, %1"_s.arg(QLocale::system().standaloneMonthName(date.month()),
                           QString::number(date.year()));
}

} // namespace

MyCalendar::MyCalendar(QWidget* parent)
    : QWidget(parent)
    , m_month(new MyCalendarMonthWidget(this, this))
{
    setFocusPolicy(Qt::NoFocus);
    auto* container = new QWidget(this);
    auto* centred = new QHBoxLayout(container);
    centred->setContentsMargins({});
    centred->addWidget(m_month);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addLayout(_createHeader());
    layout->addWidget(container);

    connect(m_prev, &QAbstractButton::clicked, this, &MyCalendar::_onPrevClicked);
    connect(m_reset, &QAbstractButton::clicked, this, &MyCalendar::_onResetClicked);
    connect(m_next, &QAbstractButton::clicked, this, &MyCalendar::_onNextClicked);
    connect(m_month, &MyCalendarMonthWidget::dateChanged, this,
            &MyCalendar::_onCurrentMonthDateChanged);
    connect(new DayWatch(this), &DayWatch::dayChanged, m_month, qOverload<>(&QWidget::update));
    _retranslate();
}

QBoxLayout* MyCalendar::_createHeader()
{
    m_label = new QLabel(this);
    m_label->setTextFormat(Qt::PlainText);
    QFont bold = m_label->font();
    bold.setBold(true);
    m_label->setFont(bold);
    QPalette colors = m_label->palette();
    colors.setColor(QPalette::WindowText, fancy::color(fancy::TextDark).lighter(150));
    m_label->setPalette(colors);

    m_prev = makeButton(icons::PreviousMonth, this);
    m_reset = makeButton(icons::ResetDate, this);
    m_next = makeButton(icons::NextMonth, this);

    auto* header = new QHBoxLayout;
    header->setContentsMargins({});
    header->setSpacing(0);
    header->addWidget(m_label);
    header->addStretch();
    header->addWidget(m_prev);
    header->addWidget(m_reset);
    header->addWidget(m_next);
    return header;
}

void MyCalendar::setSelectedDateTime(const QDateTime& dateTime)
{
    if (dateTime == m_selected)
        return;
    m_selected = dateTime;
    m_month->setSelectedDate(dateTime.date());
    _updateLabel();
}

QColor MyCalendar::cellColorForDate(const QDate& date) const
{
    const qint64 days = Clock::today().daysTo(date);
    if (days < 1)
        return fancy::color(fancy::DueNow);
    return fancy::color(days <= soonDays ? fancy::DueSoon : fancy::PanelFill);
}

void MyCalendar::_onPrevClicked()
{
    _choose(m_selected.addMonths(-1));
}

void MyCalendar::_onNextClicked()
{
    _choose(m_selected.addMonths(1));
}

/// To the day most tasks are due on: tomorrow.
void MyCalendar::_onResetClicked()
{
    _choose(Clock::today().addDays(1).startOfDay());
}

void MyCalendar::_onCurrentMonthDateChanged(const QDate& date)
{
    _choose(date.startOfDay());
}

void MyCalendar::_choose(const QDateTime& dateTime)
{
    if (!dateTime.isValid())
        return;
    m_selected = dateTime;
    m_month->setSelectedDate(dateTime.date());
    _updateLabel();
    Q_EMIT dateChanged(dateTime.date());
}

void MyCalendar::_updateLabel()
{
    const QDate date = m_selected.date();
    m_label->setText(date.isValid() ? monthText(date) : QString());
    const QString day = QLocale::system().toString(date, QLocale::LongFormat);
    m_month->setAccessibleName(date.isValid() ? u"%0: %1"_s.arg(m_label->text(), day) : QString());
}

/// Room for the longest month: the buttons stay under the pointer that steps through them.
void MyCalendar::_reserveLabelWidth()
{
    const QFontMetrics metrics = m_label->fontMetrics();
    int width = 0;
    for (int month = 1; month <= 12; ++month)
        width = qMax(width, metrics.horizontalAdvance(monthText({2000, month, 1})));
    m_label->setMinimumWidth(width);
}

void MyCalendar::_retranslate()
{
    setName(m_prev, tr("Previous month"));
    setName(m_reset, tr("Reset to current date"));
    setName(m_next, tr("Next month"));
    _updateLabel();
    _reserveLabelWidth();
}

void MyCalendar::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::LanguageChange:
    case QEvent::LocaleChange:
    case QEvent::FontChange:
    case QEvent::StyleChange:
        _retranslate();
        break;
    default:
        break;
    }
}
