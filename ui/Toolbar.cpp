#include "ui/Toolbar.h"

#include "app/base/dynamic_singleton.h"
#include "ui/ActionsHelper.h"
#include "ui/controls/FancyToolBtn.h"
#include "ui/controls/StyleHelper.h"

#include <QPainter>

namespace {
/// Wide enough for each of the changing labels, so that the bar does not jump.
constexpr int switchViewWidth = 60;
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
    _addButton(actions.switchView())->setMinimumWidth(switchViewWidth);
}

QWidget* Toolbar::_addButton(QAction* action)
{
    auto* button = new FancyToolBtn(this);
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    addWidget(button);
    return button;
}

void Toolbar::_addSpacer()
{
    auto* spacer = new QWidget(this);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    addWidget(spacer);
}

void Toolbar::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), fancy::color(fancy::ButtonFill));
    painter.fillRect(0, 0, width(), 1, fancy::color(fancy::Frame));
}
