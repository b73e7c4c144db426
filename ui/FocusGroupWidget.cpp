#include "ui/FocusGroupWidget.h"

#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "ui/controls/StyleHelper.h"
#include "ui/icons/IconsHelper.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QResizeEvent>

using namespace Qt::StringLiterals;

namespace {
constexpr qreal cornerRadius = 5;
constexpr int iconSize = 20;

QColor styleColor(int slot)
{
    return dynamic_singleton<fancy::StyleHelper>::inst().color(slot);
}
} // namespace

FocusGroupWidget::FocusGroupWidget(const FocusGroup::Id& id, QWidget* parent)
    : QWidget(parent)
    , m_id(id)
    , m_group(dynamic_singleton<TaskCore>::inst().storage()->getGroup(id))
    , m_icon(new QLabel(this))
    , m_name(new QLabel(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(3, 3, 3, 4);
    layout->setSpacing(5);
    m_icon->setFixedSize(iconSize, iconSize);
    m_name->setTextFormat(Qt::PlainText);
    m_name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    QPalette colours = m_name->palette();
    colours.setColor(QPalette::WindowText, styleColor(13));
    m_name->setPalette(colours);
    layout->addWidget(m_icon);
    layout->addWidget(m_name, 1);
    setAttribute(Qt::WA_Hover);
    _setIcon();
    _setElidedName();
}

void FocusGroupWidget::reload()
{
    m_group = dynamic_singleton<TaskCore>::inst().storage()->getGroup(m_id);
    if (m_group.tasks().isEmpty() != m_shownEmpty)
        _setIcon();
}

void FocusGroupWidget::setSelected(bool selected)
{
    if (selected == this->selected())
        return;
    m_state ^= selectedBit;
    update();
}

void FocusGroupWidget::_setIcon()
{
    m_shownEmpty = m_group.tasks().isEmpty();
    const QIcon icon =
        dynamic_singleton<IconsHelper>::inst().groupIcon(m_id, m_group.iconName(), m_shownEmpty);
    m_icon->setPixmap(icon.pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
}

void FocusGroupWidget::_setElidedName()
{
    const QString name = m_group.name().simplified();
    const QString shown = m_name->fontMetrics().elidedText(name, Qt::ElideRight, m_name->width());
    m_name->setText(shown);
    // A tool tip guesses its format: only escaped text is safe from that.
    setToolTip(shown == name ? QString() : QString(u"<p>"_s + name.toHtmlEscaped() + u"</p>"_s));
    setAccessibleName(name);
}

void FocusGroupWidget::paintEvent(QPaintEvent* event)
{
    if (m_state != 0) {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(styleColor(14), 1));
        painter.setBrush(styleColor(selected() ? 12 : 11));
        painter.drawRoundedRect(QRectF(1, 1, width() - 2, height() - 3), cornerRadius,
                                cornerRadius);
    }
    QWidget::paintEvent(event);
}

void FocusGroupWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (event->size().width() == event->oldSize().width())
        return;
    // The label gets its new width before the name is cut to it.
    layout()->activate();
    _setElidedName();
}

void FocusGroupWidget::enterEvent(QEnterEvent* /*event*/)
{
    m_state |= hoverBit;
}

void FocusGroupWidget::leaveEvent(QEvent* /*event*/)
{
    m_state &= ~hoverBit;
}
