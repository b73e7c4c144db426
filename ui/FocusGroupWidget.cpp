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
} // namespace

FocusGroupWidget::FocusGroupWidget(const FocusGroup::Id& id, QWidget* parent)
    : QWidget(parent)
    , m_id(id)
    , m_group(taskStorage().getGroup(id))
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
    colours.setColor(QPalette::WindowText, fancy::color(fancy::TextDark));
    m_name->setPalette(colours);
    layout->addWidget(m_icon);
    layout->addWidget(m_name, 1);
    setAttribute(Qt::WA_Hover);
    _setIcon();
    _setElidedName();
}

const FocusGroup& FocusGroupWidget::group() const
{
    if (m_stale) {
        m_group = taskStorage().getGroup(m_id);
        m_stale = false;
    }
    return m_group;
}

void FocusGroupWidget::refresh()
{
    if (group().tasks().isEmpty() != m_shownEmpty)
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
    m_shownEmpty = group().tasks().isEmpty();
    const QIcon icon =
        dynamic_singleton<IconsHelper>::inst().groupIcon(m_id, group().iconName(), m_shownEmpty);
    m_icon->setPixmap(icon.pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
}

void FocusGroupWidget::_setElidedName()
{
    const QString name = group().name().simplified();
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
        painter.setPen(QPen(fancy::color(fancy::Frame), 1));
        painter.setBrush(fancy::color(selected() ? fancy::GroupSelected : fancy::PanelFill));
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
