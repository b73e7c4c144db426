#include "ui/controls/FancySplitter.h"

#include "ui/controls/FancySplitterHandle.h"
#include "ui/controls/StyleHelper.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

namespace {
constexpr int handleThickness = 1;
constexpr int grip = 3; // to each side of the handle
} // namespace

FancySplitter::FancySplitter(Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent)
    , m_orientation(orientation)
    , m_handle(new FancySplitterHandle(orientation, this))
{
}

void FancySplitter::addWidget(QWidget* widget)
{
    QPointer<QWidget>& pane = m_first ? m_second : m_first;
    if (!widget || pane || widget == m_first)
        return;
    pane = widget;
    pane->setParent(this);
    _update();
}

int FancySplitter::handlePos() const
{
    return m_handlePos;
}

void FancySplitter::setHandlePos(int pos)
{
    m_handlePos = pos;
    _update();
}

int FancySplitter::handleWidth() const
{
    return handleThickness;
}

void FancySplitter::setStretchFactor(int index, int stretch)
{
    Q_UNUSED(index)
    Q_UNUSED(stretch)
}

void FancySplitter::_update()
{
    if (m_orientation != Qt::Horizontal)
        return;
    const int pos = m_handlePos;
    // Shown after it got its place, so that nothing is painted in the old one.
    if (m_first) {
        m_first->setGeometry(0, 0, pos, height());
        m_first->setVisible(pos > 0);
    }
    m_handle->setGeometry(pos - grip, 0, handleThickness + 2 * grip, height());
    m_handle->raise();
    // Hidden under the pointer it would lose the mouse: a drag keeps it until the release.
    m_handle->setVisible(m_dragging || (pos > 0 && pos < width()));
    if (m_second) {
        const int left = pos + handleThickness;
        m_second->setGeometry(left, 0, width() - left, height());
        m_second->setVisible(pos < width());
    }
}

int FancySplitter::_draggedPos(int x) const
{
    const int firstMinimum = m_first ? m_first->minimumWidth() : 0;
    const int secondMinimum = m_second ? m_second->minimumWidth() : 0;
    const int pos = std::max(std::clamp(x, 0, width()), firstMinimum);
    return std::max(std::min(pos, width() - secondMinimum), 0);
}

void FancySplitter::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    _update();
}

void FancySplitter::paintEvent(QPaintEvent* event)
{
    // With the first pane hidden, the handle's pixel belongs to no widget.
    QPainter(this).fillRect(event->rect(), fancy::color(fancy::PanelFill));
}

void FancySplitter::mousePressEvent(QMouseEvent* event)
{
    const bool onHandle = m_handle->isVisible() && m_handle->geometry().contains(event->pos());
    m_dragging = onHandle && event->button() == Qt::LeftButton;
    if (!m_dragging) {
        QWidget::mousePressEvent(event);
        return;
    }
    event->accept();
    m_gripped = event->pos().x() - m_handlePos;
}

void FancySplitter::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    setHandlePos(_draggedPos(event->pos().x() - m_gripped));
}

void FancySplitter::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_dragging || event->button() != Qt::LeftButton) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_dragging = false;
    _update();
}
