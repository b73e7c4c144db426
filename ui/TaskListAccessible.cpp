#include "ui/TaskListAccessible.h"

#include "app/core/TaskCore.h"
#include "ui/TaskRowPanel.h"
#include "ui/TaskWidget.h"
#include "ui/controls/AccessibleFactory.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QLocale>
#include <QPointer>

namespace {

/// A row, by its task: row widgets come and go and change their task, this stays.
class TaskRowAccessible final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    TaskRowAccessible(TaskRowPanel* list, const TodoTask::Id& id, qsizetype row)
        : m_list(list)
        , m_id(id)
        , m_row(row)
    {
    }

    /// The row's number now, or -1.
    [[nodiscard]] qsizetype row() const
    {
        if (!m_list)
            return -1;
        const TaskRows& rows = m_list->rows();
        if (!rows.isValid(m_row) || rows.idAt(m_row) != m_id)
            m_row = rows.indexOf(m_id);
        return m_row;
    }
    /// Where the row was when somebody last came by here.
    void remember(qsizetype row) { m_row = row; }

    bool isValid() const override { return row() >= 0; }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_list);
    }
    QAccessible::Role role() const override { return QAccessible::ListItem; }

    /// The form, while the row is being edited.
    QAccessibleInterface* child(int index) const override
    {
        return index == 0 ? QAccessible::queryAccessibleInterface(_form()) : nullptr;
    }
    int childCount() const override { return _form() ? 1 : 0; }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        return child && child->object() && child->object() == _form() ? 0 : -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        return rect().contains(x, y) ? child(0) : nullptr;
    }
    QAccessibleInterface* focusChild() const override
    {
        const QAccessibleInterface* form = child(0);
        return form ? form->focusChild() : nullptr;
    }

    QString text(QAccessible::Text kind) const override
    {
        const TodoTask task = taskStorage().get(m_id);
        if (kind == QAccessible::Name)
            return TaskWidget::shownName(task.name());
        if (kind != QAccessible::Description)
            return {};
        QStringList parts;
        if (task.timeDue().isValid())
            parts += QLocale().toString(task.timeDue().date(), QLocale::LongFormat);
        if (!task.notes().isEmpty())
            parts += task.notes();
        return parts.join(u'\n');
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}

    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QRect place = m_list->rowRect(m_row);
        return {m_list->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        const bool current = m_list->currentIndex() == m_row;
        state.selectable = true;
        state.multiSelectable = true;
        state.focusable = true;
        state.selected = m_list->rows().isSelected(m_row);
        state.focused = current && m_list->hasFocus();
        state.active = current;
        state.checkable = true;
        state.checked = taskStorage().get(m_id).completed();
        state.offscreen = !m_list->viewport()->rect().intersects(m_list->rowRect(m_row));
        state.invisible = !m_list->isVisible();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {toggleAction(), pressAction()}; }
    /// Toggling completes the task or opens it again; pressing starts editing it.
    void doAction(const QString& name) override
    {
        if (!isValid())
            return;
        if (name == toggleAction()) {
            const HistoryStep step(taskHistory(), {EAction::tick});
            TodoTask task = taskStorage().get(m_id);
            task.setCompleted(!task.completed());
        } else if (name == pressAction()) {
            m_list->editRow(m_row);
        }
    }
    QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

private:
    [[nodiscard]] TaskWidget* _form() const
    {
        const qsizetype number = row();
        return number >= 0 && number == m_list->rows().edited() ? m_list->rowWidget(number)
                                                                : nullptr;
    }

    QPointer<TaskRowPanel> m_list;
    TodoTask::Id m_id;
    mutable qsizetype m_row;
};

/// The list, with a child for every task.
class TaskListAccessible final : public QAccessibleWidget
{
public:
    explicit TaskListAccessible(TaskRowPanel* list)
        : QAccessibleWidget(list, QAccessible::List)
    {
    }
    ~TaskListAccessible() override { _forget(); }
    Q_DISABLE_COPY_MOVE(TaskListAccessible)

    int childCount() const override { return static_cast<int>(_list()->rows().count()); }

    QAccessibleInterface* child(int index) const override
    {
        const TaskRows& rows = _list()->rows();
        if (!rows.isValid(index))
            return nullptr;
        const TodoTask::Id id = rows.idAt(index);
        if (const auto known = m_rows.constFind(id); known != m_rows.cend()) {
            QAccessibleInterface* row = QAccessible::accessibleInterface(*known);
            static_cast<TaskRowAccessible*>(row)->remember(index);
            return row;
        }
        auto* row = new TaskRowAccessible(_list(), id, index);
        m_rows.insert(id, QAccessible::registerAccessibleInterface(row));
        return row;
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto* row = dynamic_cast<const TaskRowAccessible*>(child);
        return row ? static_cast<int>(row->row()) : -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        return child(
            static_cast<int>(_list()->rowAt(_list()->viewport()->mapFromGlobal(QPoint(x, y)))));
    }

    QAccessibleInterface* focusChild() const override
    {
        const TaskRows& rows = _list()->rows();
        if (rows.isValid(rows.edited()))
            return child(static_cast<int>(rows.edited()))->focusChild();
        return _list()->hasFocus() ? child(static_cast<int>(_list()->currentIndex())) : nullptr;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.multiSelectable = true;
        return state;
    }

    /// Rows have gone. Their interfaces are dropped once they outnumber those in use.
    void forgetGone()
    {
        if (m_rows.size() > 2 * childCount() + 100)
            _forget();
    }

private:
    [[nodiscard]] TaskRowPanel* _list() const { return static_cast<TaskRowPanel*>(widget()); }

    void _forget()
    {
        for (const QAccessible::Id id : std::as_const(m_rows))
            QAccessible::deleteAccessibleInterface(id);
        m_rows.clear();
    }

    mutable QHash<TodoTask::Id, QAccessible::Id> m_rows;
};

/// A row's form: a group of fields inside the row that it belongs to.
class TaskFormAccessible final : public QAccessibleWidget
{
public:
    explicit TaskFormAccessible(TaskWidget* row)
        : QAccessibleWidget(row, QAccessible::Grouping)
    {
    }

    QAccessibleInterface* parent() const override
    {
        QObject* ancestor = object()->parent();
        while (ancestor && !qobject_cast<TaskRowPanel*>(ancestor))
            ancestor = ancestor->parent();
        auto* list = qobject_cast<TaskRowPanel*>(ancestor);
        QAccessibleInterface* all = QAccessible::queryAccessibleInterface(list);
        return all ? all->child(static_cast<int>(list->rows().edited())) : nullptr;
    }
};

void announce(TaskRowPanel* list, QAccessible::Event what, qsizetype row)
{
    QAccessibleEvent event(list, what);
    event.setChild(static_cast<int>(row));
    QAccessible::updateAccessibility(&event);
}

} // namespace

void installTaskListAccessible()
{
    installAccessible<TaskRowPanel, TaskListAccessible>();
    installAccessible<TaskWidget, TaskFormAccessible>();
}

void announceSelection(TaskRowPanel* list)
{
    announce(list, QAccessible::SelectionWithin, -1);
    if (list->hasFocus() && list->rows().isValid(list->currentIndex()))
        announce(list, QAccessible::Focus, list->currentIndex());
}

void announceRow(TaskRowPanel* list, qsizetype row)
{
    if (!list->rows().isValid(row))
        return;
    announce(list, QAccessible::NameChanged, row);
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(list, changed);
    event.setChild(static_cast<int>(row));
    QAccessible::updateAccessibility(&event);
}

void announceRows(TaskRowPanel* list)
{
    if (QAccessible::isActive()) {
        auto* all = QAccessible::queryAccessibleInterface(list);
        static_cast<TaskListAccessible*>(all)->forgetGone();
    }
    announce(list, QAccessible::ObjectReorder, -1);
}
