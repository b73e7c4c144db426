#include "ui/find/FindPanel.h"

#include "app/base/DayWatch.h"
#include "app/core/TaskCore.h"
#include "taskdb/search/TaskSearch.h"
#include "ui/controls/FancyLineEdit.h"
#include "ui/controls/StyleHelper.h"
#include "ui/controls/UndoKeys.h"
#include "ui/find/ResultList.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

constexpr int outerMargin = 8;
constexpr int shadow = 5; // on each side, inside of the widget
constexpr int widest = 640;
/// Where the area is narrower, the panel reaches beyond it as far as the window does.
constexpr int comfortable = 300;
constexpr int padding = 4;
constexpr int fieldMargin = 6;
constexpr int signSize = 16;
constexpr qreal cornerRadius = 5;
constexpr int longestText = 1000;
constexpr int storeIntervalMs = 100;

void drawSign(QPainter& painter, const QPointF& corner)
{
    painter.setPen(QPen(fancy::color(fancy::FrameStrong), 2, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QRectF(corner + QPointF(2, 2), QSizeF(8, 8)));
    painter.drawLine(corner + QPointF(9.5, 9.5), corner + QPointF(13.5, 13.5));
}

} // namespace

FindPanel::FindPanel(EMode mode, const std::function<QList<Command>()>& commands, QWidget* area)
    : LocalizedWidget(area->window())
    , m_mode(mode)
    , m_listCommands(commands)
    , m_area(area)
    , m_search(new TaskSearch(taskStorage(), this))
    , m_storeTimer(new QTimer(this))
    , m_modification(taskStorage().modification())
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_NoMousePropagation);
    _createWidgets();
    _rememberFocus();
    connect(m_search, &TaskSearch::found, this, &FindPanel::_onFound);
    connect(m_storeTimer, &QTimer::timeout, this, &FindPanel::_onStoreChanged);
    m_storeTimer->start(storeIntervalMs);
    connect(new DayWatch(this), &DayWatch::dayChanged, m_list, &ResultList::forgetTasks);
    FindPanel::retranslateUI();
    show();
    raise();
    m_field->setFocus(Qt::OtherFocusReason);
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget* /*from*/, const QWidget* to) { _onFocusMoved(to); });
    qApp->installEventFilter(this);
}

FindPanel::~FindPanel() = default;

void FindPanel::_createWidgets()
{
    m_field = new FancyLineEdit(this);
    m_field->setFrame(false);
    m_field->setMaxLength(longestText);
    passUnusedUndo(m_field);
    m_list = new ResultList(this);
    connect(m_field, &QLineEdit::textChanged, this, &FindPanel::_onTextChanged);
    connect(m_list, &ResultList::clicked, this, [this](int row) { _choose(row, false); });
}

void FindPanel::setMode(EMode mode)
{
    m_field->selectAll();
    if (mode == m_mode)
        return;
    m_mode = mode;
    retranslateUI();
}

void FindPanel::retranslateUI()
{
    const QString hint =
        m_mode == Commands ? tr("Find commands") : tr("Find tasks, groups and commands");
    m_field->setPlaceholderText(hint);
    m_field->setAccessibleName(hint);
    m_list->setAccessibleName(tr("Results"));
    m_commands = m_listCommands();
    _onTextChanged();
}

/// A line edit selects all when it gets the focus; what was selected is to be so again.
void FindPanel::_rememberFocus()
{
    m_focusBefore = window()->focusWidget();
    if (const auto* edit = qobject_cast<QLineEdit*>(m_focusBefore)) {
        m_cursorBefore = edit->cursorPosition();
        m_selectionBefore = edit->selectionStart();
        m_selectedBefore = static_cast<int>(edit->selectedText().size());
    }
}

void FindPanel::_giveFocusBack()
{
    if (!m_focusBefore)
        return;
    m_focusBefore->setFocus(Qt::OtherFocusReason);
    auto* edit = qobject_cast<QLineEdit*>(m_focusBefore);
    if (!edit)
        return;
    edit->setCursorPosition(m_cursorBefore);
    if (m_selectionBefore < 0)
        return;
    const bool backwards = m_cursorBefore == m_selectionBefore;
    edit->setSelection(backwards ? m_selectionBefore + m_selectedBefore : m_selectionBefore,
                       backwards ? -m_selectedBefore : m_selectedBefore);
}

void FindPanel::_onFocusMoved(const QWidget* to)
{
    if (to && isVisible() && to->window() == window() && !isAncestorOf(to))
        close();
}

void FindPanel::closeEvent(QCloseEvent* event)
{
    qApp->removeEventFilter(this);
    qApp->disconnect(this);
    m_storeTimer->stop();
    m_search->disconnect(this);
    if (isAncestorOf(window()->focusWidget()))
        _giveFocusBack();
    LocalizedWidget::closeEvent(event);
}

/// Of the whole program. Presses are only noticed: they reach what was clicked.
bool FindPanel::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (watched == m_field && _takeKey(*static_cast<QKeyEvent*>(event)))
            return true;
        break;
    case QEvent::MouseButtonPress:
        if (const auto* widget = qobject_cast<QWidget*>(watched);
            widget && widget->window() == window() && widget != this && !isAncestorOf(widget))
            close();
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if (watched == m_area)
            _place();
        break;
    case QEvent::Hide:
        if (watched == m_area && !event->spontaneous())
            close();
        break;
    default:
        break;
    }
    return LocalizedWidget::eventFilter(watched, event);
}

/// Tab stays in the field.
bool FindPanel::focusNextPrevChild(bool /*next*/)
{
    return true;
}

void FindPanel::keyPressEvent(QKeyEvent* event)
{
    event->accept();
}

void FindPanel::keyReleaseEvent(QKeyEvent* event)
{
    event->accept();
}

/// As wide as the area allows and as tall as the results need, at the most down to its end.
void FindPanel::_place()
{
    if (!m_area)
        return;
    const QRect area(m_area->mapTo(window(), QPoint()), m_area->size());
    const int room = qMax(area.width(), qMin(comfortable, window()->width()));
    const int wide = qMin(room - 2 * outerMargin, widest);
    const int centred = area.center().x() - wide / 2;
    const int left = qMax(outerMargin, qMin(centred, area.right() + 1 - outerMargin - wide));
    const int field = m_field->sizeHint().height() + 2 * fieldMargin;
    const int content = m_list->contentHeight();
    const int tall = field + (content > 0 ? content + 1 + 2 * padding : 0);
    const QRect frame(left, area.top() + outerMargin, wide,
                      qMax(field, qMin(tall, area.height() - 2 * outerMargin)));
    setGeometry(frame.adjusted(-shadow, -shadow, shadow, shadow));
}

void FindPanel::resizeEvent(QResizeEvent* event)
{
    LocalizedWidget::resizeEvent(event);
    const QRect frame = rect().adjusted(shadow, shadow, -shadow, -shadow);
    const int fieldHeight = m_field->sizeHint().height();
    const int textLeft = frame.left() + 2 * fieldMargin + signSize;
    m_field->setGeometry(textLeft, frame.top() + fieldMargin,
                         frame.right() - textLeft - fieldMargin, fieldHeight);
    const int listTop = m_field->geometry().bottom() + 1 + fieldMargin + 1 + padding;
    m_list->setGeometry(frame.left() + padding, listTop, frame.width() - 2 * padding,
                        qMax(0, frame.bottom() + 1 - padding - listTop));
}

void FindPanel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(shadow, shadow, -shadow, -shadow);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 10));
    for (int spread = 1; spread <= shadow; ++spread)
        painter.drawRoundedRect(frame.adjusted(-spread, -spread, spread, spread),
                                cornerRadius + spread, cornerRadius + spread);
    painter.setPen(QPen(fancy::color(fancy::Frame), 1));
    painter.setBrush(fancy::color(fancy::White));
    painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
    const QRect field = m_field->geometry();
    if (field.bottom() + 1 + fieldMargin < int(frame.bottom()) - 1) {
        painter.fillRect(
            QRectF(frame.left() + 1, field.bottom() + 1 + fieldMargin, frame.width() - 2, 1),
            fancy::color(fancy::Frame));
    }
    drawSign(painter, QPointF(frame.left() + fieldMargin + 2,
                              field.top() + (field.height() - signSize) / 2.0));
}

/// Results of the former text stay until there are new ones, so that nothing flickers.
void FindPanel::_onTextChanged()
{
    if (m_list->isChosen()) {
        // Screen readers went to the rows, and follow the typing again.
        QAccessibleEvent event(m_field, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
    m_query = TaskQuery(m_field->text());
    m_waiting.clear();
    const bool wantsTasks = m_mode == Everything && !m_query.isEmpty();
    m_hasResults = false;
    m_isComplete = !wantsTasks;
    // Without words this readies the search for the first of them.
    m_search->start(wantsTasks ? m_field->text() : QString());
    if (wantsTasks)
        return;
    m_tasks.clear();
    _showResults(false);
}

void FindPanel::_onFound(const QList<TodoTask::Id>& ids, bool complete)
{
    // The end of a search without words; and, after a change of the store, fewer than are shown.
    if (m_mode == Commands || m_query.isEmpty() ||
        (m_hasResults && !complete && ids.size() < m_tasks.size()))
        return;
    m_tasks = ids;
    m_isComplete = complete;
    _showResults(m_hasResults);
    if (complete)
        _obeyWaiting();
}

/// Group operations emit no signal, but everything counts.
void FindPanel::_onStoreChanged()
{
    const qint32 modification = taskStorage().modification();
    if (modification == std::exchange(m_modification, modification))
        return;
    m_commands = m_listCommands();
    m_list->forgetTasks();
    if (m_hasResults)
        _showResults(true);
    if (m_mode == Commands || m_query.isEmpty())
        return;
    m_isComplete = false;
    m_search->start(m_field->text());
}

/// All of them, without words to look for; else the best first, and groups before others.
QList<Command> FindPanel::_matchingCommands() const
{
    if (m_query.isEmpty())
        return m_commands;
    QList<std::tuple<TaskQuery::ERank, bool, qsizetype>> matches;
    for (qsizetype i = 0; i < m_commands.size(); ++i) {
        const TaskQuery::ERank rank = m_query.match(m_commands.at(i).text);
        if (rank != TaskQuery::NoMatch)
            matches.append({rank, m_commands.at(i).group.isNull(), i});
    }
    std::sort(matches.begin(), matches.end());
    QList<Command> commands;
    for (const auto& [rank, isNoGroup, place] : std::as_const(matches))
        commands.append(m_commands.at(place));
    return commands;
}

/// Groups that begin with the text stand before the tasks. No command does: Return after the name
/// of a task must not run one.
qsizetype FindPanel::_leading(const QList<Command>& commands) const
{
    const auto other = std::find_if(commands.cbegin(), commands.cend(), [this](const auto& one) {
        return one.group.isNull() || m_query.match(one.text) != TaskQuery::StartsName;
    });
    return other - commands.cbegin();
}

void FindPanel::_showResults(bool sameText)
{
    m_hasResults = true;
    m_list->setEmptyText(m_isComplete ? tr("Nothing found") : QString());
    const QList<Command> commands = _matchingCommands();
    m_list->setResults(commands, _leading(commands), m_tasks, m_query, sameText);
    _place();
}

bool FindPanel::_takeKey(const QKeyEvent& event)
{
    const bool control = (event.modifiers() & Qt::ControlModifier) != 0;
    const auto key = static_cast<Qt::Key>(event.key());
    switch (key) {
    case Qt::Key_Escape:
        close();
        return true;
    case Qt::Key_Home:
    case Qt::Key_End:
        if (!control)
            return false;
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        break;
    default:
        return false;
    }
    const QKeyCombination combination(control ? Qt::ControlModifier : Qt::NoModifier, key);
    if (_mustWait(combination))
        m_waiting.append(combination);
    else
        _obey(combination);
    return true;
}

/// Whoever types fast means what will be found, not what still stands there: a move needs some of
/// the new results, and what is best is known at the end only.
bool FindPanel::_mustWait(QKeyCombination key) const
{
    const bool isReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    return !m_waiting.isEmpty() || !m_hasResults ||
           (isReturn && !m_isComplete && !m_list->isChosen());
}

void FindPanel::_obeyWaiting()
{
    const QList<QKeyCombination> keys = std::exchange(m_waiting, {});
    for (const QKeyCombination key : keys) {
        if (isVisible())
            _obey(key);
    }
}

void FindPanel::_obey(QKeyCombination key)
{
    const int row = m_list->currentRow();
    switch (key.key()) {
    case Qt::Key_Up:
        m_list->setCurrentRow(row - 1);
        break;
    case Qt::Key_Down:
        m_list->setCurrentRow(row + 1);
        break;
    case Qt::Key_PageUp:
        m_list->setCurrentRow(row - m_list->pageRows());
        break;
    case Qt::Key_PageDown:
        m_list->setCurrentRow(row + m_list->pageRows());
        break;
    case Qt::Key_Home:
        m_list->setCurrentRow(0);
        break;
    case Qt::Key_End:
        m_list->setCurrentRow(m_list->count() - 1);
        break;
    default:
        _choose(row, key.keyboardModifiers() == Qt::ControlModifier);
    }
}

/// What is chosen happens in the window as it was before the panel.
void FindPanel::_choose(int row, bool edit)
{
    if (const Command* command = m_list->command(row)) {
        if (!command->enabled)
            return;
        const std::function<void()> run = command->run;
        close();
        run();
        return;
    }
    const TodoTask::Id id = m_list->taskId(row);
    if (id.isNull())
        return;
    close();
    Q_EMIT taskChosen(id, edit);
}
