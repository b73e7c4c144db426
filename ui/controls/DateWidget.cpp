#include "ui/controls/DateWidget.h"

#include "app/base/Clock.h"
#include "app/base/DayWatch.h"
#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"
#include "ui/controls/CalendarPopup.h"
#include "ui/controls/StyleHelper.h"
#include "ui/controls/UndoKeys.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QToolTip>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Of a text that is no date, on the light background of the field.
constexpr QColor wrongTextColor(0xb3, 0x1d, 0x1d);

/// Without direction marks: no keyboard has them, and they would show a date in another order than
/// that in which it is typed.
QString typable(QString text)
{
    for (const char16_t mark : {u'\u061c', u'\u200e', u'\u200f'})
        text.remove(QChar(mark));
    return text;
}

// Both ways without the system's locale: its digits could not be typed on every keyboard, and its
// names of months would not always be read back.
QString toText(const QDateTime& value)
{
    return typable(value.date().toString(DateWidget::fixedDateFormat()));
}

QString tomorrowsText()
{
    return toText(Clock::today().addDays(1).startOfDay());
}

/// The first moment of the day: in some zones a few days have no midnight.
QDateTime fromText(const QString& text)
{
    const QDate date = QDate::fromString(typable(text), typable(DateWidget::fixedDateFormat()));
    return date.isValid() ? date.startOfDay() : QDateTime();
}

/// "1.2.2013" as "01.02.2013"; other texts as they are.
QString withPaddedNumbers(const QString& text)
{
    QStringList parts = text.split(u'.');
    if (parts.size() != 3)
        return text;
    for (QString& part : parts) {
        bool ok = false;
        const int number = part.toInt(&ok);
        if (!ok)
            return text;
        part = u"%1"_s.arg(number, 2, 10, QChar(u'0'));
    }
    return parts.join(u'.');
}

QDateTime fromTyped(const QString& text)
{
    const QDateTime padded = fromText(withPaddedNumbers(text));
    return padded.isValid() ? padded : fromText(text);
}

} // namespace

DateWidget::DateWidget(const QDateTime& value, QWidget* parent)
    : QWidget(parent)
    , m_value(value)
{
    _createEdit();
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_edit);
    layout->addStretch(1);
    setFocusProxy(m_edit);
    connect(new DayWatch(this), &DayWatch::dayChanged, this, &DateWidget::_updateExample);
    if (parent)
        _followWindow();
}

DateWidget::~DateWidget()
{
    // ~QWidget() destroys it: too late to be heard here losing the focus.
    m_edit->disconnect(this);
}

void DateWidget::_createEdit()
{
    m_edit = new HintedEditT<FancyLineEdit>(toText(m_value), tr("Due date"), this);
    m_edit->setFrame(false);
    m_edit->setTextMargins({});
    m_edit->setBaseColor(fancy::color(fancy::RowEdited));
    _updateExample();
    passUnusedUndo(m_edit);
    connect(m_edit, &QLineEdit::textChanged, this, &DateWidget::_markWrongText);
    connect(m_edit, &QLineEdit::textEdited, this, &DateWidget::_onTextEdited);
    connect(m_edit, &QLineEdit::returnPressed, this, &DateWidget::_onReturn);
    connect(m_edit, &FancyLineEdit::gotFocus, this, &DateWidget::_onEditGotFocus);
}

/// Tomorrow is what most tasks are due on.
void DateWidget::_updateExample()
{
    m_edit->setExample(tomorrowsText());
    if (m_popup && m_edit->isExampleShown())
        m_popup->setDateTime(getValue());
}

QString DateWidget::fixedDateFormat()
{
    QString format = dynamic_singleton<ProgramSettings>::inst().dateFormat;
    if (!format.contains("yyyy"_L1))
        format.replace("yy"_L1, "yyyy"_L1, Qt::CaseInsensitive);
    return format;
}

void DateWidget::setValue(const QDateTime& value)
{
    m_edit->setUserText(toText(value));
    if (!m_edit->isHintShown())
        m_edit->selectAll();
    if (m_popup && value.isValid())
        m_popup->setDateTime(value);
    _changeValue(value);
}

QDateTime DateWidget::getValue() const
{
    return fromText(m_edit->userText());
}

void DateWidget::_changeValue(const QDateTime& value)
{
    m_value = value;
    _markWrongText();
    Q_EMIT valueChanged(value);
}

/// The value may be one that cannot be typed: what shows it is not wrong.
void DateWidget::_markWrongText()
{
    const QString text = m_edit->userText();
    const bool isWrong = !text.trimmed().isEmpty() && !fromTyped(text.trimmed()).isValid() &&
                         text != toText(m_value);
    const QString advice =
        isWrong ? tr("Not a date. Please write it like this: %1").arg(tomorrowsText()) : QString();
    if (advice.isEmpty() && !m_edit->toolTip().isEmpty())
        QToolTip::hideText();
    m_edit->setMark(isWrong ? wrongTextColor : QColor());
    m_edit->setToolTip(advice);
    m_edit->setAccessibleDescription(advice);
}

void DateWidget::_onTextEdited(const QString& text)
{
    m_edit->leaveHint();
    const QString typed = text.trimmed();
    if (typed.isEmpty()) {
        if (m_popup)
            m_popup->setDateTime(Clock::now());
        _changeValue({});
        return;
    }
    const QDateTime value = fromTyped(typed);
    if (!value.isValid())
        return;
    if (m_popup)
        m_popup->setDateTime(value);
    _changeValue(value);
}

void DateWidget::_onReturn()
{
    // What is accepted becomes the value, as if it had been typed.
    const bool acceptsExample = m_edit->isExampleShown();
    m_edit->leaveHint();
    if (acceptsExample)
        setValue(getValue());
    else if (m_value.isValid())
        m_edit->setUserText(toText(m_value));
    m_edit->selectAll();
}

void DateWidget::_onEditGotFocus(bool focused)
{
    if (focused)
        showCalendarPopup(true);
    else if (window()->isActiveWindow() && !QApplication::activePopupWidget())
        _stepAside(); // for what has the focus now and may lie below the calendar
}

void DateWidget::_onCalendarDateChanged(const QDateTime& dateTime)
{
    setValue(dateTime);
}

void DateWidget::_onParentWindowMoved()
{
    if (m_popup && m_popup->isVisible())
        placePopup();
}

void DateWidget::showCalendarPopup(bool show)
{
    if (!show) {
        if (m_popup) {
            m_popup->hide();
            std::exchange(m_popup, nullptr)->deleteLater();
        }
        return;
    }
    if (!m_popup) {
        m_popup = new CalendarPopup(this);
        const QDateTime value = getValue();
        const QDateTime fallback = m_value.isValid() ? m_value : Clock::now();
        m_popup->setDateTime(value.isValid() ? value : fallback);
        connect(m_popup, &CalendarPopup::dateTimeChanged, this,
                &DateWidget::_onCalendarDateChanged);
    }
    _followWindow();
    m_aside = false;
    placePopup();
}

void DateWidget::placePopup()
{
    if (!m_popup || m_aside)
        return;
    if (visibleRegion().isEmpty()) {
        m_popup->hide();
        return;
    }
    m_popup->move(_popupPlace());
    m_popup->show();
}

/// Centred below the edit; where that would leave the screen, above it and moved inwards.
QPoint DateWidget::_popupPlace() const
{
    const QPoint anchor = mapToGlobal(QPoint(m_edit->x() + m_edit->width() / 2, height()));
    const QSize size = m_popup->sizeHint();
    QPoint place(anchor.x() - size.width() / 2, anchor.y());

    const QScreen* under = QGuiApplication::screenAt(anchor);
    const QRect area = (under ? under : screen())->availableGeometry();
    const int above = anchor.y() - height() - size.height();
    if (place.y() + size.height() > area.bottom() + 1 && above >= area.top())
        place.setY(above);
    place.setX(qMax(area.left(), qMin(place.x(), area.right() + 1 - size.width())));
    place.setY(qMax(area.top(), qMin(place.y(), area.bottom() + 1 - size.height())));
    return place;
}

/// The window's class is out of reach from here; it tells of its moves by a signal of this name.
void DateWidget::_followWindow()
{
    const QWidget* top = window();
    if (top->metaObject()->indexOfSignal("widgetMoved()") >= 0)
        connect(top, SIGNAL(widgetMoved()), this, SLOT(_onParentWindowMoved()),
                Qt::UniqueConnection);
}

void DateWidget::_stepAside()
{
    if (!m_popup)
        return;
    m_aside = true;
    m_popup->hide();
}

bool DateWidget::event(QEvent* event)
{
    if (event->type() == QEvent::WindowDeactivate && QApplication::activeWindow() != m_popup)
        _stepAside();
    return QWidget::event(event);
}

void DateWidget::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    // A window manager minimises the popup along with its window; shown again in that state it
    // would take the window with it.
    showCalendarPopup(false);
}

void DateWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // A window that comes back may get its focus before its contents.
    _onEditGotFocus(m_edit->hasFocus());
}

void DateWidget::moveEvent(QMoveEvent* event)
{
    QWidget::moveEvent(event);
    placePopup();
}

void DateWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placePopup();
}

void DateWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::LanguageChange)
        return;
    m_edit->setHintText(tr("Due date"));
    _markWrongText();
}
