#include "ui/TaskWidget.h"

#include "app/core/TaskCore.h"
#include "ui/ElidedLabel.h"
#include "ui/TaskListWidget.h"
#include "ui/controls/FancyLineEdit.h"
#include "ui/controls/StyleHelper.h"
#include "ui/controls/TaskCheckbox.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QStackedLayout>

#include <utility>

namespace {
constexpr qreal cornerRadius = 5;
constexpr qreal completedOpacity = 0.6;
/// In UTF-16 code units: more than anybody means to paste. A longer stored name sets its own limit.
constexpr int longestName = 1'000'000;
} // namespace

TaskWidget::TaskWidget(const TodoTask::Id& id, TaskListWidget* list, QWidget* parent)
    : QWidget(parent)
    , m_list(list)
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
    setEditing(false, true, false);
}

void TaskWidget::reload()
{
    m_task = taskStorage().get(m_id);
    _setCheckboxes();
    if (m_nameEdit && m_nameEdit->text() != m_task.name())
        m_nameEdit->setText(m_task.name());
    _updateVisuals();
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
    auto* layout = new QGridLayout(m_editPage);
    layout->setContentsMargins(5, 2, 5, 2);
    layout->setSpacing(2);
    m_editCheckbox = new TaskCheckbox(m_editPage);
    m_editCheckbox->setFocusPolicy(Qt::NoFocus);
    m_nameEdit = new FancyLineEdit(m_task.name(), m_editPage);
    m_nameEdit->setPlaceholderText(tr("Task name"));
    m_nameEdit->setAccessibleName(tr("Task name"));
    m_nameEdit->setFrame(false);
    m_nameEdit->setMaxLength(qMax(longestName, static_cast<int>(m_task.name().size())));
    m_nameEdit->setTextMargins(0, 0, 0, 0);
    QPalette colours = m_nameEdit->palette();
    colours.setColor(QPalette::Base, fancy::color(fancy::RowEdited));
    m_nameEdit->setPalette(colours);
    layout->addWidget(m_editCheckbox, 0, 0);
    layout->addWidget(m_nameEdit, 0, 1);
    connect(m_editCheckbox, &TaskCheckbox::stateChanged, this, &TaskWidget::_checkboxChanged);
    connect(m_nameEdit, &QLineEdit::returnPressed, this, &TaskWidget::_stopEditing);
    connect(m_nameEdit, &QLineEdit::textEdited, this, &TaskWidget::_nameTextChanged);
    m_stack->addWidget(m_editPage);
}

void TaskWidget::_removeEditLayout()
{
    if (!m_editPage)
        return;
    m_stack->removeWidget(m_editPage);
    m_editPage->hide();
    m_editPage->deleteLater();
    m_editPage = nullptr;
    m_editCheckbox = nullptr;
    m_nameEdit = nullptr;
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
    m_task.setCompleted(completed);
    if (completed && isEditing())
        m_list->_stopEditing(this, false);
    _updateVisuals();
    update();
}

bool TaskWidget::isPressed() const
{
    return m_viewCheckbox->isDown() || (m_editCheckbox && m_editCheckbox->isDown());
}

void TaskWidget::_stopEditing()
{
    m_list->_stopEditing(this, true);
}

void TaskWidget::_nameTextChanged(const QString& text)
{
    m_task.rename(text);
}

void TaskWidget::_checkboxChanged(int state)
{
    if (m_settingCheckbox)
        return;
    m_settingCheckbox = true;
    setCompleted(state == 1);
    m_settingCheckbox = false;
    _setCheckboxes();
    // The click on the box gave the list the focus; the form goes on where it was.
    if (m_nameEdit)
        m_nameEdit->setFocus(Qt::PopupFocusReason);
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

void TaskWidget::_updateVisuals()
{
    const bool unnamed = m_task.name().isEmpty();
    const QString shown = unnamed ? tr("<Unnamed task>") : m_task.name();
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

void TaskWidget::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        _updateVisuals();
    QWidget::changeEvent(event);
}
