#include "ui/find/ResultAccessible.h"

#include "ui/controls/AccessibleFactory.h"
#include "ui/find/ResultList.h"

#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

namespace {

class ResultRowAccessible final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    ResultRowAccessible(ResultList* list, int row)
        : m_list(list)
        , m_row(row)
    {
    }

    [[nodiscard]] int row() const { return m_row; }

    bool isValid() const override { return m_list && m_row < m_list->count(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_list);
    }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid() || (kind != QAccessible::Name && kind != QAccessible::Description))
            return {};
        return kind == QAccessible::Name ? m_list->spokenRow(m_row) : m_list->shownNotes(m_row);
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}

    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QRect place = m_list->rowRect(m_row);
        return {m_list->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }

    /// The current row counts as focused: the field, which has the focus, only drives it.
    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        const bool current = m_list->currentRow() == m_row;
        const Command* command = m_list->command(m_row);
        state.selectable = true;
        state.focusable = true;
        state.selected = current;
        state.focused = current;
        state.active = current;
        state.disabled = command && !command->enabled;
        state.offscreen = !m_list->viewport()->rect().intersects(m_list->rowRect(m_row));
        state.invisible = !m_list->isVisible();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override
    {
        if (isValid() && name == pressAction())
            Q_EMIT m_list->clicked(m_row);
    }
    QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

private:
    QPointer<ResultList> m_list;
    int m_row;
};

/// The column, with a child for every row.
class ResultListAccessible final : public QAccessibleWidget
{
public:
    explicit ResultListAccessible(ResultList* list)
        : QAccessibleWidget(list, QAccessible::List)
    {
    }
    ~ResultListAccessible() override { forget(); }
    Q_DISABLE_COPY_MOVE(ResultListAccessible)

    int childCount() const override { return _list()->count(); }

    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= childCount())
            return nullptr;
        QAccessible::Id& id = m_rows[index];
        if (id == 0) {
            id = QAccessible::registerAccessibleInterface(new ResultRowAccessible(_list(), index));
        }
        return QAccessible::accessibleInterface(id);
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto* row = dynamic_cast<const ResultRowAccessible*>(child);
        return row && row->isValid() ? row->row() : -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        return child(_list()->rowAt(_list()->viewport()->mapFromGlobal(QPoint(x, y))));
    }

    QAccessibleInterface* focusChild() const override { return child(_list()->currentRow()); }

    /// The rows are others now.
    void forget()
    {
        for (const QAccessible::Id id : std::as_const(m_rows))
            QAccessible::deleteAccessibleInterface(id);
        m_rows.clear();
    }

private:
    [[nodiscard]] ResultList* _list() const { return static_cast<ResultList*>(widget()); }

    mutable QHash<int, QAccessible::Id> m_rows;
};

} // namespace

void installResultAccessible()
{
    installAccessible<ResultList, ResultListAccessible>();
}

void announceCurrentResult(ResultList* list)
{
    QAccessibleEvent event(list, QAccessible::Focus);
    event.setChild(list->currentRow());
    QAccessible::updateAccessibility(&event);
}

void announceResults(ResultList* list)
{
    if (QAccessible::isActive())
        static_cast<ResultListAccessible*>(QAccessible::queryAccessibleInterface(list))->forget();
    QAccessibleEvent event(list, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}
