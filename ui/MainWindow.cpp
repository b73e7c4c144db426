#include "ui/MainWindow.h"

#include "app/base/ProductHelper.h"
#include "app/base/dynamic_singleton.h"
#include "taskdb/TaskStorage.h"
#include "ui/ActionsHelper.h"
#include "ui/FocusGroupListWidget.h"
#include "ui/TaskListWidget.h"
#include "ui/Toolbar.h"
#include "ui/controls/FancySplitter.h"
#include "ui/icons/PictureIcon.h"

#include <QHBoxLayout>
#include <QScreen>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr int paneMinimumWidth = 100;
constexpr QSize firstSize(800, 450);
constexpr QSize smallestSize(320, 200);
} // namespace

MainWindow::MainWindow(QWidget* parent)
    : LocalizedDialog(parent, Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                  Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
                                  Qt::CustomizeWindowHint | Qt::WindowCloseButtonHint)
{
    _createLayout();
    _connectActions();
    MainWindow::retranslateUI();
    _restoreGeometry();
    _setView(m_compact);
    m_taskList->setFocus(Qt::OtherFocusReason);
}

void MainWindow::_createLayout()
{
    m_splitter = new FancySplitter(Qt::Horizontal, this);
    m_groupList = new FocusGroupListWidget(m_splitter);
    m_groupList->setMinimumWidth(paneMinimumWidth);

    m_rightPane = new QWidget(m_splitter);
    m_rightPane->setMinimumWidth(paneMinimumWidth);
    auto* paneLayout = new QVBoxLayout(m_rightPane);
    paneLayout->setContentsMargins(0, 0, 0, 0);
    paneLayout->setSpacing(0);
    m_taskList = new TaskListWidget(TaskStorage::ms_inboxId, m_rightPane);
    paneLayout->addWidget(m_taskList, 1);
    paneLayout->addWidget(new Toolbar(m_rightPane), 0);

    m_splitter->addWidget(m_groupList);
    m_splitter->addWidget(m_rightPane);
    m_splitter->setStretchFactor(1, 1);
    m_taskList->raise();

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_splitter);
}

void MainWindow::_connectActions()
{
    auto& actions = dynamic_singleton<ActionsHelper>::inst();
    connect(actions.newTask(), &QAction::triggered, this, &MainWindow::_onNewTask);
    connect(actions.editTask(), &QAction::triggered, this, &MainWindow::_onEditTask);
    connect(actions.cleanup(), &QAction::triggered, this, &MainWindow::_onCleanup);
    connect(actions.switchView(), &QAction::triggered, this, &MainWindow::_onSwitchView);
    connect(m_groupList, &FocusGroupListWidget::activated, this, &MainWindow::_onGroupSelected);
    connect(m_groupList, &FocusGroupListWidget::changed, this, &MainWindow::_onGroupChanged);
}

void MainWindow::_restoreGeometry()
{
    setMinimumSize(smallestSize);
    resize(firstSize);
    if (const QScreen* screen = this->screen()) {
        const QRect area = screen->geometry();
        move(area.left() + area.width() / 2 - firstSize.width() / 2,
             area.top() + area.height() / 2 - firstSize.height() / 2);
    }
}

void MainWindow::show()
{
    setWindowOpacity(1.0);
    setVisible(true);
}

/// The view toggle gets back its neutral text, until the view is switched again.
void MainWindow::retranslateUI()
{
    setWindowTitle(ProductHelper::productDisplayName());
    dynamic_singleton<ActionsHelper>::inst().retranslateUI();
}

void MainWindow::_onNewTask()
{
    m_taskList->newTask();
}

void MainWindow::_onEditTask()
{
    m_taskList->editTask();
}

void MainWindow::_onCleanup()
{
    m_taskList->cleanup();
}

void MainWindow::_onSwitchView()
{
    if (!m_compact)
        m_groupPanelWidth = m_groupList->width();
    m_compact = !m_compact;
    _setView(m_compact);
}

/// Shows or hides the group panel. The toggle names the view that a click will switch to.
void MainWindow::_setView(bool compact)
{
    QAction* toggle = dynamic_singleton<ActionsHelper>::inst().switchView();
    toggle->setIcon(
        icons::fromPictures({compact ? u":/icons/view_normal"_s : u":/icons/view_compact"_s}));
    toggle->setText(compact ? tr("Normal") : tr("Compact"));
    m_splitter->setHandlePos(compact ? 0 : m_groupPanelWidth);
}

void MainWindow::_onGroupSelected(const FocusGroup::Id& id)
{
    const bool takesTasks = id != TaskStorage::ms_trashId && id != TaskStorage::ms_completedId;
    auto& actions = dynamic_singleton<ActionsHelper>::inst();
    actions.newTask()->setEnabled(takesTasks);
    actions.cleanup()->setEnabled(takesTasks);
    m_taskList->setGroup(id);
    m_taskList->setFocus(Qt::OtherFocusReason);
}

void MainWindow::_onGroupChanged(const FocusGroup::Id& id)
{
    if (id.isNull() || id != m_taskList->groupId())
        return;
    m_taskList->updateGroup();
    m_taskList->setFocus(Qt::OtherFocusReason);
}

void MainWindow::moveEvent(QMoveEvent* event)
{
    LocalizedDialog::moveEvent(event);
    Q_EMIT widgetMoved();
}

void MainWindow::showEvent(QShowEvent* event)
{
    LocalizedDialog::showEvent(event);
    raise();
    activateWindow();
}
