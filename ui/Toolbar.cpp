#include "ui/Toolbar.h"

#include "app/base/dynamic_singleton.h"
#include "ui/ActionsHelper.h"
#include "ui/controls/FancyToolBtn.h"
#include "ui/controls/StyleHelper.h"

#include <QEvent>
#include <QLayout>
#include <QPainter>

namespace {
constexpr int switchViewMinimumWidth = 60;
/// Of a button without text: four of them fit into the narrowest pane.
constexpr int narrowWidth = 24;
constexpr QMargins narrowMargins(1, 1, 1, 1);
} // namespace

Toolbar::Toolbar(QWidget* parent)
    : QToolBar(parent)
{
    setAutoFillBackground(false);
    setFloatable(false);
    setMovable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);

    auto& actions = dynamic_singleton<ActionsHelper>::inst();
    _addButton(actions.newTask());
    _addButton(actions.editTask());
    _addSpacer();
    _addButton(actions.cleanup());
    _addSpacer();
    _addButton(actions.switchView());
    m_margins = layout()->contentsMargins();
    m_spacing = qMax(0, layout()->spacing());
    _measureSwitchView();
    _showTexts(true);
}

FancyToolBtn* Toolbar::_addButton(QAction* action)
{
    auto* button = new FancyToolBtn(this);
    button->setDefaultAction(action);
    addWidget(button);
    m_buttons += button;
    return button;
}

void Toolbar::_addSpacer()
{
    auto* spacer = new QWidget(this);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    addWidget(spacer);
}

void Toolbar::_showTexts(bool shown)
{
    for (FancyToolBtn* button : std::as_const(m_buttons)) {
        button->setToolButtonStyle(shown ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonIconOnly);
        button->setMaximumWidth(shown ? QWIDGETSIZE_MAX : narrowWidth);
    }
    m_buttons.last()->setMinimumWidth(shown ? m_switchViewWidth : 0);
    layout()->setContentsMargins(shown ? m_margins : narrowMargins);
    layout()->setSpacing(shown ? m_spacing : 0);
}

/// Finds the width of the widest of the changing labels, so that the bar does not jump.
void Toolbar::_measureSwitchView()
{
    FancyToolBtn probe(this);
    probe.setIcon(m_buttons.last()->icon());
    probe.setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    m_switchViewWidth = switchViewMinimumWidth;
    const ViewLabels labels = ActionsHelper::viewLabels();
    for (const QString& label : {labels.neutral, labels.normal, labels.compact}) {
        probe.setText(label);
        m_switchViewWidth = qMax(m_switchViewWidth, probe.sizeHint().width());
    }
}

/// Texts only where all of them have room.
void Toolbar::_fit()
{
    _showTexts(true);
    int needed = m_margins.left() + m_margins.right() + (m_buttons.size() + 1) * m_spacing;
    for (const FancyToolBtn* button : std::as_const(m_buttons))
        needed += qMax(button->sizeHint().width(), button->minimumWidth());
    _showTexts(needed <= width());
}

void Toolbar::resizeEvent(QResizeEvent* event)
{
    _fit();
    QToolBar::resizeEvent(event);
}

void Toolbar::changeEvent(QEvent* event)
{
    QToolBar::changeEvent(event);
    // The window has set the texts by now.
    if (event->type() == QEvent::LanguageChange || event->type() == QEvent::FontChange) {
        _measureSwitchView();
        _fit();
    }
}

void Toolbar::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), fancy::color(fancy::ButtonFill));
    painter.fillRect(0, 0, width(), 1, fancy::color(fancy::Frame));
}
