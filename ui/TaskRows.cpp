#include "ui/TaskRows.h"

#include <QHash>

#include <algorithm>
#include <iterator>

qsizetype TaskRows::indexOf(const TodoTask::Id& id) const
{
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        if (m_rows.at(row).id == id)
            return row;
    }
    return -1;
}

void TaskRows::clear()
{
    m_rows.clear();
    m_selected = 0;
    m_edited = -1;
    setCurrent(-1);
}

/// Looks up only what has something to keep, and lies between the ends that stay as they are.
void TaskRows::assign(const QList<TodoTask::Id>& ids)
{
    const auto idOf = [this](qsizetype row) { return isValid(row) ? idAt(row) : TodoTask::Id(); };
    const TodoTask::Id edited = idOf(m_edited);
    const TodoTask::Id current = idOf(m_current);
    const auto same = [](const Row& row, const TodoTask::Id& id) { return row.id == id; };
    const auto head = std::mismatch(m_rows.cbegin(), m_rows.cend(), ids.cbegin(), ids.cend(), same);
    const auto tail = std::mismatch(m_rows.crbegin(), std::make_reverse_iterator(head.first),
                                    ids.crbegin(), std::make_reverse_iterator(head.second), same);
    QHash<TodoTask::Id, Row> marked;
    for (auto row = head.first; row != tail.first.base(); ++row) {
        if (row->selected || row->isNew)
            marked.insert(row->id, *row);
    }
    QList<Row> rows;
    rows.reserve(ids.size());
    std::copy(m_rows.cbegin(), head.first, std::back_inserter(rows));
    for (auto id = head.second; id != tail.second.base(); ++id)
        rows.append(marked.value(*id, Row{*id, false, false}));
    std::copy(tail.first.base(), m_rows.cend(), std::back_inserter(rows));
    m_rows = rows;
    m_selected = std::count_if(rows.cbegin(), rows.cend(), [](const Row& r) { return r.selected; });
    m_edited = edited.isNull() ? -1 : indexOf(edited);
    setCurrent(current.isNull() ? -1 : indexOf(current));
}

bool TaskRows::matches(const QList<TodoTask::Id>& ids) const
{
    return std::equal(m_rows.cbegin(), m_rows.cend(), ids.cbegin(), ids.cend(),
                      [](const Row& row, const TodoTask::Id& id) { return row.id == id; });
}

void TaskRows::setCurrent(qsizetype row)
{
    m_current = row;
    m_runStart = -1;
}

void TaskRows::setSelected(qsizetype row, bool selected)
{
    m_runStart = -1;
    _mark(row, selected);
}

void TaskRows::extendSelection(qsizetype row)
{
    const qsizetype from = m_current < 0 ? row : m_current;
    const qsizetype start = m_runStart < 0 ? from : m_runStart;
    const auto [first, last] = std::minmax(start, row);
    for (qsizetype i = qMin(from, row); i <= qMax(from, row); ++i)
        _mark(i, i >= first && i <= last);
    m_current = row;
    m_runStart = start;
}

void TaskRows::_mark(qsizetype row, bool selected)
{
    if (isSelected(row) == selected)
        return;
    m_rows[row].selected = selected;
    m_selected += selected ? 1 : -1;
}

void TaskRows::clearSelection()
{
    m_runStart = -1;
    if (m_selected == 0)
        return;
    for (Row& row : m_rows)
        row.selected = false;
    m_selected = 0;
}

TaskRows::DropPosition TaskRows::dropPositionAt(qint64 y, const DropPosition& current) const
{
    if (count() == 0)
        return current;
    const qsizetype last = count() - 1;
    if (y >= top(last) + height(last))
        return {last, false};
    const qsizetype row = rowAt(y);
    return row < 0 ? current : DropPosition{row, true};
}

TaskRows::DropPosition TaskRows::dropAnchor(const DropPosition& drop) const
{
    if (!isValid(drop.row))
        return {};
    for (qsizetype row = drop.row; row < count(); ++row) {
        if (!isSelected(row))
            return {row, drop.before};
    }
    for (qsizetype row = drop.row - 1; row >= 0; --row) {
        if (!isSelected(row))
            return {row, false};
    }
    return {};
}

void TaskRows::setEdited(qsizetype row, int height)
{
    m_edited = row;
    m_editedHeight = height;
}

qsizetype TaskRows::pageStep(int viewportHeight) const
{
    return qMax(1, (viewportHeight + spacing) / (m_rowHeight + spacing) - 1);
}

qint64 TaskRows::contentHeight() const
{
    return count() == 0 ? 2 * margin : top(count() - 1) + height(count() - 1) + margin;
}

int TaskRows::bodyHeight() const
{
    return static_cast<int>(qMin(contentHeight(), qint64{maxBodyHeight}));
}

qint64 TaskRows::top(qsizetype row) const
{
    const qint64 even = margin + qint64{row} * (m_rowHeight + spacing);
    return m_edited >= 0 && row > m_edited ? even + m_editedHeight - m_rowHeight : even;
}

int TaskRows::height(qsizetype row) const
{
    return row == m_edited ? m_editedHeight : m_rowHeight;
}

qsizetype TaskRows::rowAt(qint64 y) const
{
    const qsizetype row = _rowBelow(y);
    return isValid(row) && y >= top(row) && y < top(row) + height(row) ? row : -1;
}

TaskRows::Range TaskRows::visible(qint64 top, int height) const
{
    if (count() == 0 || height <= 0)
        return {};
    Range range;
    range.first = qBound(qsizetype{0}, _rowBelow(top), count() - 1);
    if (TaskRows::top(range.first) + TaskRows::height(range.first) <= top)
        ++range.first;
    range.last = qMin(_rowBelow(top + height - 1), count() - 1);
    return range;
}

/// The last row that begins at or above `y`; may be -1 or past the last row.
qsizetype TaskRows::_rowBelow(qint64 y) const
{
    const int step = m_rowHeight + spacing;
    const auto even = [step](qint64 offset) {
        return static_cast<qsizetype>(offset < 0 ? -1 : offset / step);
    };
    if (m_edited < 0 || y < top(m_edited))
        return even(y - margin);
    const qint64 afterEdited = top(m_edited) + m_editedHeight + spacing;
    return y < afterEdited ? m_edited : m_edited + 1 + even(y - afterEdited);
}

qint64 TaskRows::toLogical(int scroll, int viewportHeight) const
{
    const qint64 content = contentHeight() - viewportHeight;
    const qint64 body = bodyHeight() - viewportHeight;
    if (content == body || body <= 0)
        return scroll;
    return scroll * content / body;
}

int TaskRows::toScroll(qint64 logical, int viewportHeight) const
{
    const qint64 content = contentHeight() - viewportHeight;
    const qint64 body = bodyHeight() - viewportHeight;
    if (content == body || body <= 0)
        return static_cast<int>(logical);
    // Rounded up, so that mapping back never lands above the wanted position.
    return static_cast<int>((logical * body + content - 1) / content);
}
