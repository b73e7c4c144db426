#include "ui/MainWindow.h"

#include "app/base/ProductHelper.h"
#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "taskdb/TaskStorage.h"
#include "ui/ActionsHelper.h"
#include "ui/CommitStrip.h"
#include "ui/FocusGroupListWidget.h"
#include "ui/Shortcuts.h"
#include "ui/TaskListWidget.h"
#include "ui/Toolbar.h"
#include "ui/TrayIcon.h"
#include "ui/WindowCommands.h"
#include "ui/controls/FancySplitter.h"
#include "ui/icons/PictureIcon.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPropertyAnimation>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr int paneMinimumWidth = 100;
constexpr int animationMs = 300;
constexpr QSize firstSize(800, 450);

ProgramSettings& settings()
{
    return dynamic_singleton<ProgramSettings>::inst();
}

/// Window managers leave a dialog that was opened before the window was shown beneath it.
void raiseDialog()
{
    if (QWidget* dialog = QApplication::activeModalWidget()) {
        dialog->raise();
        dialog->activateWindow();
    }
}
} // namespace

MainWindow::MainWindow(QWidget* parent)
    : LocalizedDialog(parent, Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                  Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
                                  Qt::CustomizeWindowHint | Qt::WindowCloseButtonHint)
{
    _createLayout();
    _connectActions();
    new WindowCommands(this, m_taskList, m_groupList);
    _watchCommits();
    MainWindow::retranslateUI();
    _restoreGeometry();
    _setView(settings().compactView, true);
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
    m_toolbar = new Toolbar(m_rightPane);
    paneLayout->addWidget(m_toolbar, 0);

    m_splitter->addWidget(m_groupList);
    m_splitter->addWidget(m_rightPane);
    m_splitter->setStretchFactor(1, 1);
    m_taskList->raise();

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_splitter);

    m_animation = new QPropertyAnimation(m_rightPane, "geometry", this);
    m_animation->setDuration(animationMs);
    m_animation->setEasingCurve(QEasingCurve::InCubic);
    connect(m_animation, &QAbstractAnimation::finished, this,
            &MainWindow::_onSetViewAnimationFinished);
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
    connect(m_taskList, &TaskListWidget::highlightGroups, m_groupList,
            &FocusGroupListWidget::_onHighlightGroups);
    connect(m_taskList, &TaskListWidget::menuWanted, m_groupList, &FocusGroupListWidget::showMenu);
}

/// Queued: the store tells from its own thread, and nothing is shown before the program is up.
void MainWindow::_watchCommits()
{
    TaskStorage* storage = &taskStorage();
    connect(storage, &TaskStorage::commitStateChanged, this, &MainWindow::_onCommitStateChanged,
            Qt::QueuedConnection);
    QMetaObject::invokeMethod(
        this, [this, storage] { _onCommitStateChanged(storage->commitFailure()); },
        Qt::QueuedConnection);
}

void MainWindow::_restoreGeometry()
{
    const QRect frame = settings().mainWindowFrame;
    if (frame.left() <= frame.right() && frame.top() <= frame.bottom()) {
        setGeometry(frame);
        return;
    }
    resize(firstSize);
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        _centreOn(*screen);
}

/// In the middle of the screen, but never beyond what task bars leave of it.
void MainWindow::_centreOn(const QScreen& screen)
{
    const QRect room = screen.availableGeometry();
    // Not known before the window is shown, but there will be one.
    const int titleBar = style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QSize size = firstSize.boundedTo(room.size() - QSize(0, titleBar));
    const QRect area = screen.geometry();
    QPoint corner(area.left() + area.width() / 2 - size.width() / 2,
                  area.top() + area.height() / 2 - size.height() / 2);
    corner.rx() = qMax(room.left(), qMin(corner.x(), room.right() + 1 - size.width()));
    corner.ry() = qMax(room.top(), qMin(corner.y(), room.bottom() + 1 - size.height() - titleBar));
    resize(size);
    move(corner);
}

MainWindow::~MainWindow()
{
    m_taskList->endEditing();
    settings().mainWindowFrame = geometry();
    // In the compact view the panel is collapsed.
    if (!settings().compactView)
        _storePanelWidth();
}

void MainWindow::setPosition()
{
    const QSize area = QGuiApplication::primaryScreen()->availableGeometry().size();
    move(area.width() - frameGeometry().width(), area.height() - frameGeometry().height());
}

void MainWindow::setSidepanelWidth(float share)
{
    const auto width = static_cast<int>(static_cast<float>(settings().groupPanelWidth) * share);
    [[maybe_unused]] const QList<int> sizes = {width, m_rightPane->width() - width -
                                                          m_splitter->handleWidth()};
}

void MainWindow::setTrayIcon(TrayIcon* trayIcon)
{
    m_trayIcon = trayIcon;
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
    if (m_trayIcon)
        m_trayIcon->retranslateUI();
    dynamic_singleton<ActionsHelper>::inst().retranslateUI();
    // Keys without a button or an entry are mentioned by the tool tips of the areas between these.
    m_groupList->viewport()->setToolTip(tr("Previous and next group: %1, %2")
                                            .arg(shortcuts::textOf(shortcuts::previousGroup),
                                                 shortcuts::textOf(shortcuts::nextGroup)));
    m_toolbar->setToolTip(
        tr("Hide the window: %1\nQuit: %2")
            .arg(shortcuts::textOf(shortcuts::hideWindow), shortcuts::textOf(shortcuts::quit)));
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
    settings().compactView = !settings().compactView;
    _setView(settings().compactView, false);
}

/// The width that the panel is to have, brought into the range in which both panes can be seen: the
/// file may hold anything, and the window may be narrower than it was. The tasks come first.
int MainWindow::_panelWidth() const
{
    const int widest = width() - paneMinimumWidth - m_splitter->handleWidth();
    return qMax(0, qMin(qMax(m_panelWidth, paneMinimumWidth), widest));
}

void MainWindow::_showPanel()
{
    m_shownPanelWidth = _panelWidth();
    m_splitter->setHandlePos(m_shownPanelWidth);
}

/// Where the handle stands is what the panel is to be from now on, unless the window put it there.
void MainWindow::_takePanelWidth()
{
    if (m_splitter->handlePos() != m_shownPanelWidth)
        m_panelWidth = m_splitter->handlePos();
}

void MainWindow::_storePanelWidth()
{
    _takePanelWidth();
    settings().groupPanelWidth = m_panelWidth;
}

void MainWindow::_setView(bool compact, bool immediate)
{
    m_animation->stop();
    if (!compact)
        m_panelWidth = settings().groupPanelWidth;
    if (immediate) {
        if (compact)
            m_rightPane->setGeometry(rect());
        _onSetViewAnimationFinished();
    } else if (compact) {
        _storePanelWidth();
        _animatePane(m_rightPane->x(), 0);
    } else {
        m_groupList->resize(_panelWidth(), m_groupList->height());
        _showPanel();
        _animatePane(0, _panelWidth() + m_splitter->handleWidth());
    }
}

/// Moves the left edge of the right pane; its right edge stays at the window's.
void MainWindow::_animatePane(int fromLeft, int toLeft)
{
    const QRect pane = m_rightPane->geometry();
    const auto withLeft = [this, pane](int left) {
        return QRect(QPoint(left, pane.top()), QPoint(width() - 1, pane.bottom()));
    };
    // Over the splitter's line, which it passes.
    m_rightPane->raise();
    m_animation->setStartValue(withLeft(fromLeft));
    m_animation->setEndValue(withLeft(toLeft));
    m_animation->start(QAbstractAnimation::KeepWhenStopped);
}

/// The toggle names the view that a click will switch to.
void MainWindow::_onSetViewAnimationFinished()
{
    const bool compact = settings().compactView;
    auto& actions = dynamic_singleton<ActionsHelper>::inst();
    actions.switchView()->setIcon(
        icons::fromPictures({compact ? u":/icons/view_normal"_s : u":/icons/view_compact"_s}));
    const ViewLabels labels = actions.viewLabels();
    actions.switchView()->setText(compact ? labels.normal : labels.compact);
    if (compact)
        m_splitter->setHandlePos(0);
    else
        _showPanel();
}

void MainWindow::_onGroupSelected(const FocusGroup::Id& id)
{
    const bool takesTasks = !TaskStorage::isArchive(id);
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

/// Shows the strip above the toolbar, or takes it away; neither moves the focus or the tasks.
void MainWindow::_onCommitStateChanged(const CommitFailure& failure)
{
    if (failure.cause == CommitFailure::none) {
        _removeCommitStrip();
        return;
    }
    if (!m_commitStrip) {
        m_commitStrip = new CommitStrip(m_rightPane);
        m_commitStrip->setFailure(failure);
        auto* layout = static_cast<QBoxLayout*>(m_rightPane->layout());
        layout->insertWidget(layout->indexOf(m_toolbar), m_commitStrip);
        m_commitStrip->insertIntoTabOrder(m_taskList);
        return;
    }
    m_commitStrip->setFailure(failure);
}

void MainWindow::_removeCommitStrip()
{
    if (!m_commitStrip)
        return;
    if (m_commitStrip->isAncestorOf(focusWidget()))
        m_taskList->setFocus(Qt::OtherFocusReason);
    m_commitStrip->hide();
    m_commitStrip->deleteLater();
    m_commitStrip = nullptr;
}

void MainWindow::moveEvent(QMoveEvent* event)
{
    LocalizedDialog::moveEvent(event);
    Q_EMIT widgetMoved();
}

void MainWindow::resizeEvent(QResizeEvent* event)
{
    LocalizedDialog::resizeEvent(event);
    if (settings().compactView || m_animation->state() == QAbstractAnimation::Running)
        return;
    _takePanelWidth();
    _showPanel();
}

void MainWindow::showEvent(QShowEvent* event)
{
    LocalizedDialog::showEvent(event);
    raise();
    activateWindow();
    QMetaObject::invokeMethod(this, &raiseDialog, Qt::QueuedConnection);
}

bool MainWindow::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        raiseDialog();
    return LocalizedDialog::event(event);
}
