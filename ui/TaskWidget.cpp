#include "ui/TaskWidget.h"

#include "app/core/TaskCore.h"
#include "ui/ElidedLabel.h"
#include "ui/TaskRowHost.h"
#include "ui/controls/DateWidget.h"
#include "ui/controls/FancyLineEdit.h"
#include "ui/controls/HintedEdit.h"
#include "ui/controls/NotesTextEdit.h"
#include "ui/controls/StyleHelper.h"
#include "ui/controls/TaskCheckbox.h"
#include "ui/controls/UndoKeys.h"
#include "ui/icons/PictureIcon.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QStackedLayout>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
constexpr qreal cornerRadius = 5;
constexpr qreal completedOpacity = 0.6;
} // namespace

TaskWidget::TaskWidget(const TodoTask::Id& id, TaskRowHost* host, QWidget* parent)
    : QWidget(parent)
    , m_host(host)
{
    m_stack = new QStackedLayout(this);
    _createViewLayout();
    setFocusPolicy(Qt::NoFocus);
    setTask(id);
}

void TaskWidget::setTask(const TodoTask::Id& id)
{
    m_id = id;
    m_task = taskStorage().get(id);
    // A press that began on another task must not tick this one.
    m_viewCheckbox->setDown(false);
    setEditing(false, true, false);
}

void TaskWidget::reload()
{
    const TodoTask before = std::exchange(m_task, taskStorage().get(m_id));
    _setCheckboxes();
    if (m_editPage)
        _reloadEdits(before);
    _updateVisuals();
}

/// Brings the form into line with what changed elsewhere; what is being typed here is already in
/// the record, and its editor is left alone.
void TaskWidget::_reloadEdits(const TodoTask& before)
{
    if (m_task.name() != before.name())
        m_nameEdit->setUserText(m_task.name());
    if (m_task.notes() != before.notes())
        m_notesEdit->setUserText(m_task.notes());
    if (m_task.timeDue() != before.timeDue()) {
        const QSignalBlocker silent(m_dueDateEdit);
        m_dueDateEdit->setValue(m_task.timeDue());
    }
}

void TaskWidget::_createViewLayout()
{
    auto* page = new QWidget(this);
    auto* layout = new QHBoxLayout(page);
    layout->setContentsMargins(5, 5, 5, 4);
    layout->setSpacing(5);
    m_viewCheckbox = new TaskCheckbox(page);
    m_viewCheckbox->setFocusPolicy(Qt::NoFocus);
    m_nameLabel = new ElidedLabel(page);
    layout->addWidget(m_viewCheckbox);
    layout->addWidget(m_nameLabel);
    layout->addStretch(1);
    connect(m_viewCheckbox, &TaskCheckbox::stateChanged, this, &TaskWidget::_checkboxChanged);
    m_stack->addWidget(page);
}

void TaskWidget::_createEditLayout()
{
    m_editPage = new QWidget(this);
    // A click beside the editors leaves the focus with the one that has it.
    m_editPage->setFocusPolicy(Qt::ClickFocus);
    m_editCheckbox = new TaskCheckbox(m_editPage);
    m_editCheckbox->setFocusPolicy(Qt::NoFocus);
    _createNameEdit();
    m_notesEdit = new NotesTextEdit(m_task.notes(), tr("Notes"), m_editPage);
    m_dueDateEdit = new DateWidget(m_task.timeDue(), m_editPage);
    _retranslateEdits();

    auto* layout = new QGridLayout(m_editPage);
    layout->setContentsMargins(5, 2, 5, 2);
    layout->setSpacing(2);
    layout->addWidget(m_editCheckbox, 0, 0);
    layout->addWidget(m_nameEdit, 0, 1);
    QWidget* notesPicture = _pictureLabel(u":/icons/edit_note"_s);
    notesPicture->setContentsMargins(0, 2, 0, 0); // beside the first line
    layout->addWidget(notesPicture, 1, 0, Qt::AlignTop);
    layout->addWidget(m_notesEdit, 1, 1);
    layout->addWidget(_pictureLabel(u":/icons/edit_duedate"_s), 2, 0);
    layout->addWidget(m_dueDateEdit, 2, 1);
    _connectEdits();
    m_stack->addWidget(m_editPage);
}

void TaskWidget::_createNameEdit()
{
    m_nameEdit = new HintedEditT<FancyLineEdit>(m_task.name(), tr("Task name"), m_editPage);
    m_nameEdit->setFrame(false);
    m_nameEdit->setMaxLength(qMax(longestName, static_cast<int>(m_task.name().size())));
    m_nameEdit->setTextMargins(0, 0, 0, 0);
    m_nameEdit->setBaseColor(fancy::color(fancy::RowEdited));
}

void TaskWidget::_connectEdits()
{
    connect(m_editCheckbox, &TaskCheckbox::stateChanged, this, &TaskWidget::_checkboxChanged);
    passUnusedUndo(m_nameEdit);
    passUnusedUndo(m_notesEdit);
    connect(m_nameEdit, &QLineEdit::returnPressed, this, &TaskWidget::_stopEditing);
    connect(m_nameEdit, &QLineEdit::textEdited, this, &TaskWidget::_nameTextChanged);
    connect(m_nameEdit, &FancyLineEdit::gotFocus, this, &TaskWidget::_someEditGotFocus);
    connect(m_notesEdit, &QTextEdit::textChanged, this, &TaskWidget::_notesTextChanged);
    connect(m_notesEdit, &QTextEdit::cursorPositionChanged, this, &TaskWidget::_showCursor);
    connect(m_notesEdit, &NotesTextEdit::gotFocus, this, &TaskWidget::_someEditGotFocus);
    connect(m_dueDateEdit, &DateWidget::valueChanged, this, &TaskWidget::_dueDateChanged);
    connect(qApp, &QApplication::focusChanged, m_editPage,
            [this](QWidget* from, QWidget* to) { _onFocusMoved(from, to); });
}

QWidget* TaskWidget::_pictureLabel(const QString& picture) const
{
    auto* label = new QLabel(m_editPage);
    label->setPixmap(icons::fromPictures({picture}).pixmap(QSize(16, 16), devicePixelRatio()));
    return label;
}

/// From here on the row ignores what the editors signal.
void TaskWidget::disconnectEdits()
{
    for (QObject* editor :
         {static_cast<QObject*>(m_editCheckbox), static_cast<QObject*>(m_nameEdit),
          static_cast<QObject*>(m_notesEdit), static_cast<QObject*>(m_dueDateEdit)})
        editor->disconnect(this);
}

void TaskWidget::_removeEditLayout()
{
    if (!m_editPage)
        return;
    m_stack->removeWidget(m_editPage);
    m_editPage->hide();
    m_editPage->deleteLater();
    disconnectEdits();
    m_dueDateEdit->showCalendarPopup(false);
    m_editPage = nullptr;
    m_editCheckbox = nullptr;
    m_nameEdit = nullptr;
    m_notesEdit = nullptr;
    m_dueDateEdit = nullptr;
}

void TaskWidget::setEditing(bool editing, bool force, bool noFocus)
{
    if (!force && editing == isEditing())
        return;
    if (editing) {
        if (!m_editPage)
            _createEditLayout();
        m_stack->setCurrentIndex(1);
        m_state |= editingBit;
        if (!noFocus)
            m_nameEdit->setFocus(Qt::OtherFocusReason);
    } else {
        m_stack->setCurrentIndex(0);
        m_state &= ~editingBit;
        _removeEditLayout();
    }
    _setCheckboxes();
    _updateVisuals();
    fixHeight();
}

void TaskWidget::fixHeight()
{
    setFixedHeight(faceHeight());
}

int TaskWidget::faceHeight() const
{
    return m_stack->currentWidget()->minimumSizeHint().height();
}

void TaskWidget::setSelected(bool selected)
{
    if (selected == this->selected())
        return;
    m_state ^= selectedBit;
    update();
}

bool TaskWidget::completed() const
{
    return !m_id.isNull() && m_task.completed();
}

void TaskWidget::setCompleted(bool completed)
{
    if (m_id.isNull() || completed == m_task.completed())
        return;
    {
        // In the form it is a part of the edit.
        std::optional<HistoryStep> step;
        if (!isEditing())
            step.emplace(taskHistory(), HistoryAction{EAction::tick});
        m_task.setCompleted(completed);
    }
    if (completed && isEditing())
        m_host->stopEditing(this, false);
    _updateVisuals();
    update();
}

bool TaskWidget::isPressed() const
{
    return m_viewCheckbox->isDown() || (m_editCheckbox && m_editCheckbox->isDown());
}

void TaskWidget::_stopEditing()
{
    m_host->stopEditing(this, true);
}

void TaskWidget::_nameTextChanged(const QString& /*text*/)
{
    _showCursor();
    m_task.rename(m_nameEdit->userText());
}

void TaskWidget::_notesTextChanged()
{
    m_notesEdit->updateGeometry();
    if (faceHeight() != height()) {
        fixHeight();
        m_host->rowHeightChanged(this);
        _showCursor();
    }
    m_task.setNotes(m_notesEdit->userText());
}

void TaskWidget::_dueDateChanged(const QDateTime& time)
{
    m_task.setTimeDue(time);
}

void TaskWidget::_someEditGotFocus(bool got)
{
    if (got && m_dueDateEdit)
        m_dueDateEdit->showCalendarPopup(false);
}

void TaskWidget::_onFocusMoved(QWidget* /*from*/, QWidget* to)
{
    if (!m_editPage || !to || to == m_editPage || !m_editPage->isAncestorOf(to))
        return;
    m_editPage->setFocusProxy(to);
    _showCursor();
}

/// Has the list scroll to where the typing goes on, which in long notes may be far from the name.
void TaskWidget::_showCursor()
{
    if (!m_editPage)
        return;
    const QWidget* editor = m_editPage->focusProxy();
    if (!editor || !editor->hasFocus())
        return;
    QRect place = editor->rect();
    if (editor == m_notesEdit)
        place = m_notesEdit->cursorRect();
    m_host->showPartOfRow(this, place.translated(editor->mapTo(this, QPoint(0, 0))));
}

void TaskWidget::placePopup()
{
    if (m_dueDateEdit)
        m_dueDateEdit->placePopup();
}

/// Tab goes round inside the form.
bool TaskWidget::focusNextPrevChild(bool next)
{
    if (!m_editPage)
        return QWidget::focusNextPrevChild(next);
    const std::array<QWidget*, 3> editors = {m_nameEdit, m_notesEdit, m_dueDateEdit};
    const auto holds = [](const QWidget* editor) {
        return editor == QApplication::focusWidget() ||
               editor->isAncestorOf(QApplication::focusWidget());
    };
    const auto current = std::find_if(editors.cbegin(), editors.cend(), holds);
    const size_t count = editors.size();
    const auto index = static_cast<size_t>(current - editors.cbegin()) % count;
    editors.at((index + (next ? 1 : count - 1)) % count)
        ->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void TaskWidget::_checkboxChanged(int state)
{
    if (m_settingCheckbox)
        return;
    m_settingCheckbox = true;
    setCompleted(state == 1);
    m_settingCheckbox = false;
    _setCheckboxes();
}

/// Brings the checkboxes into line with the task, without hearing from them.
void TaskWidget::_setCheckboxes()
{
    const bool wasSetting = std::exchange(m_settingCheckbox, true);
    m_viewCheckbox->setChecked(completed());
    if (m_editCheckbox)
        m_editCheckbox->setChecked(completed());
    m_settingCheckbox = wasSetting;
}

QString TaskWidget::shownName(const QString& name)
{
    return name.isEmpty() ? tr("<Unnamed task>") : name;
}

void TaskWidget::_updateVisuals()
{
    const bool unnamed = m_task.name().isEmpty();
    const QString shown = shownName(m_task.name());
    m_nameLabel->setText(shown);
    m_viewCheckbox->setAccessibleName(shown);
    setAccessibleName(shown);

    QFont font = m_nameLabel->font();
    font.setStrikeOut(completed());
    m_nameLabel->setFont(font);
    m_viewCheckbox->setIconOpacity(completed() ? completedOpacity : 1.0);
    QPalette colours = m_nameLabel->palette();
    colours.setColor(QPalette::WindowText,
                     unnamed || completed() ? QColor(Qt::darkGray) : QColor(Qt::black));
    m_nameLabel->setPalette(colours);
    update();
}

QColor TaskWidget::_backgroundCol() const
{
    const int days = m_id.isNull() ? TodoTask::noDueDate : m_task.daysToEvent();
    if (days <= 0)
        return fancy::color(fancy::DueNow);
    return fancy::color(days <= 3 ? fancy::DueSoon : fancy::RowPlain);
}

void TaskWidget::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isEditing()) {
        painter.setPen(QPen(fancy::color(fancy::Frame), 1));
        painter.setBrush(fancy::color(fancy::RowEdited));
        painter.drawRoundedRect(QRectF(1, 1, width() - 2, height() - 2), cornerRadius,
                                cornerRadius);
        return;
    }
    painter.setPen(Qt::NoPen);
    if (selected())
        painter.setBrush(fancy::color(fancy::RowSelected));
    else
        painter.setBrush(completed() ? fancy::color(fancy::RowCompleted) : _backgroundCol());
    painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
}

void TaskWidget::mousePressEvent(QMouseEvent* event)
{
    event->setAccepted(isEditing());
}

void TaskWidget::mouseReleaseEvent(QMouseEvent* event)
{
    event->ignore();
}

void TaskWidget::mouseMoveEvent(QMouseEvent* event)
{
    event->ignore();
}

void TaskWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->ignore();
}

void TaskWidget::keyPressEvent(QKeyEvent* event)
{
    event->ignore();
}

void TaskWidget::_retranslateEdits()
{
    m_nameEdit->setHintText(tr("Task name"));
    m_nameEdit->setAccessibleName(tr("Task name"));
    m_editCheckbox->setAccessibleName(tr("Completed"));
    m_notesEdit->setHintText(tr("Notes"));
    m_notesEdit->setAccessibleName(tr("Notes"));
}

void TaskWidget::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        _updateVisuals();
        if (m_editPage)
            _retranslateEdits();
    }
    QWidget::changeEvent(event);
}
