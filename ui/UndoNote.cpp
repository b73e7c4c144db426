#include "ui/UndoNote.h"

#include "ui/ElidedLabel.h"
#include "ui/controls/AccessibleFactory.h"
#include "ui/controls/StyleHelper.h"

#include <QAccessibleWidget>
#include <QBoxLayout>
#include <QEvent>
#include <QPainter>
#include <QTimer>
#include <QToolButton>

namespace {

constexpr int shownMs = 8000;
constexpr int distance = 8; // from the area's edges
constexpr int gap = 8;
constexpr QMargins margins(10, 4, 6, 4);
/// Where the text would have less beside the button, it stands above it.
constexpr int leastTextWidth = 80;
constexpr qreal cornerRadius = 5;

} // namespace

UndoNote::UndoNote(const QString& text, EOffer offer, QWidget* area)
    : LocalizedWidget(area->window())
    , m_offer(offer)
    , m_area(area)
    , m_label(new ElidedLabel(this))
    , m_button(new QToolButton(this))
    , m_timer(new QTimer(this))
{
    // Screen readers speak a notification when it is shown.
    installAccessible<UndoNote, QAccessibleWidget, QAccessible::Notification>();
    setAccessibleName(text);

    QPalette colors = m_label->palette();
    colors.setColor(QPalette::WindowText, fancy::color(fancy::TextDark));
    m_label->setPalette(colors);
    m_label->setText(text);
    // A click must not take the focus from a task's form.
    m_button->setFocusPolicy(Qt::NoFocus);
    m_button->setAutoRaise(true);
    colors.setColor(QPalette::ButtonText, fancy::color(fancy::FrameStrong));
    m_button->setPalette(colors);
    QFont underlined = m_button->font();
    underlined.setUnderline(true);
    m_button->setFont(underlined);
    m_layout = new QBoxLayout(QBoxLayout::LeftToRight, this);
    m_layout->setContentsMargins(margins);
    m_layout->setSpacing(gap);
    m_layout->addWidget(m_label, 1);
    m_layout->addWidget(m_button, 0, Qt::AlignCenter);
    connect(m_button, &QToolButton::clicked, this, &UndoNote::_click);

    m_timer->setSingleShot(true);
    connect(m_timer, &QTimer::timeout, this, &UndoNote::dismiss);
    m_timer->start(shownMs);
    // What the area lies in moves it as well.
    for (QWidget* moved = area; moved != window(); moved = moved->parentWidget())
        moved->installEventFilter(this);
    m_button->setText(m_offer == undo ? tr("Undo") : tr("Redo"));
    m_button->setAccessibleName(m_button->text());
    _place();
    raise();
}

void UndoNote::dismiss()
{
    m_timer->stop();
    m_area = nullptr;
    hide();
    deleteLater();
}

void UndoNote::_click()
{
    dismiss();
    Q_EMIT wanted();
}

/// What it tells is in the language of before.
void UndoNote::retranslateUI()
{
    dismiss();
}

bool UndoNote::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
        _place();
        break;
    default:
        break;
    }
    return LocalizedWidget::eventFilter(watched, event);
}

void UndoNote::_place()
{
    if (!m_area)
        return;
    const QPoint corner = m_area->mapTo(window(), QPoint(0, 0));
    const int room = qMax(0, m_area->width() - 2 * distance);
    const int textRoom =
        room - margins.left() - margins.right() - gap - m_button->sizeHint().width();
    const bool isNarrow = textRoom < qMin(leastTextWidth, m_label->sizeHint().width());
    m_layout->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    const QSize size(qMin(sizeHint().width(), room), sizeHint().height());
    setGeometry(corner.x() + (m_area->width() - size.width()) / 2,
                corner.y() + m_area->height() - distance - size.height(), size.width(),
                size.height());
    setVisible(m_area->isVisibleTo(window()));
}

void UndoNote::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(fancy::color(fancy::FrameStrong), 1));
    painter.setBrush(fancy::color(fancy::White));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius,
                            cornerRadius);
}
