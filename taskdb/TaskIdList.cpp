#include "taskdb/TaskIdList.h"

#include <QSet>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {
constexpr qsizetype blockSize = 256;
}

TaskIdList::const_iterator& TaskIdList::const_iterator::operator++()
{
    if (++m_pos == m_blocks->at(m_block).ids.size()) {
        ++m_block;
        m_pos = 0;
    }
    return *this;
}

TaskIdList::const_iterator TaskIdList::const_iterator::operator++(int)
{
    const const_iterator old = *this;
    ++*this;
    return old;
}

QList<QUuid> TaskIdList::toList() const
{
    QList<QUuid> ids;
    ids.reserve(size());
    for (const Block& block : m_blocks)
        ids.append(block.ids);
    return ids;
}

bool TaskIdList::append(const QUuid& id)
{
    if (id.isNull() || contains(id))
        return false;
    if (m_blocks.isEmpty() || m_blocks.constLast().ids.size() >= blockSize)
        m_blocks.append(Block{m_nextNumber++, {}});
    Block& last = m_blocks.last();
    m_blockNumbers.insert(id, last.number);
    last.ids.append(id);
    return true;
}

bool TaskIdList::remove(QUuid id)
{
    const auto found = m_blockNumbers.constFind(id);
    if (found == m_blockNumbers.constEnd())
        return false;
    const qsizetype position = _positionOf(*found);
    m_blockNumbers.erase(found);
    Block& block = m_blocks[position];
    block.ids.removeOne(id);
    if (block.ids.isEmpty())
        m_blocks.removeAt(position);
    else
        _mergeSmall(position);
    return true;
}

void TaskIdList::clear()
{
    *this = {};
}

void TaskIdList::reorder(QUuid anchor, bool before, const QList<QUuid>& ids)
{
    if (anchor.isNull() || ids.isEmpty())
        return;
    for (const QUuid& id : ids)
        remove(id);
    const auto found = m_blockNumbers.constFind(anchor);
    if (found == m_blockNumbers.constEnd())
        return;

    const quint32 number = *found;
    const qsizetype block = _positionOf(number);
    const qsizetype pos = m_blocks.at(block).ids.indexOf(anchor) + (before ? 0 : 1);
    QList<QUuid> moved;
    moved.reserve(ids.size());
    for (const QUuid& id : ids) {
        if (id.isNull() || contains(id))
            continue;
        m_blockNumbers.insert(id, number);
        moved.append(id);
    }
    _insertAt(block, pos, moved);
}

TaskIdList::Order TaskIdList::order() const
{
    Order order;
    order.m_blocks = m_blocks;
    return order;
}

bool TaskIdList::Order::operator==(const Order& other) const
{
    const_iterator left(&m_blocks, 0);
    const_iterator right(&other.m_blocks, 0);
    const const_iterator leftEnd(&m_blocks, m_blocks.size());
    const const_iterator rightEnd(&other.m_blocks, other.m_blocks.size());
    while (left != leftEnd && right != rightEnd) {
        if (left.m_pos == 0 && right.m_pos == 0 &&
            m_blocks.at(left.m_block).key() == other.m_blocks.at(right.m_block).key()) {
            ++left.m_block;
            ++right.m_block;
        } else if (*left++ != *right++) {
            return false;
        }
    }
    return left == leftEnd && right == rightEnd;
}

/// An identifier is in one block at most, on either side: what blocks on both sides hold keeps its
/// place in the index.
QList<QUuid> TaskIdList::exchange(Order& other)
{
    std::swap(m_blocks, other.m_blocks);
    QSet<std::pair<const QUuid*, quint32>> before;
    for (const Block& block : std::as_const(other.m_blocks))
        before.insert(block.key());
    QList<QUuid> added;
    QList<const Block*> fresh;
    for (const Block& block : std::as_const(m_blocks)) {
        m_nextNumber = qMax(m_nextNumber, block.number + 1);
        if (before.remove(block.key()))
            continue;
        fresh.append(&block);
        std::copy_if(block.ids.cbegin(), block.ids.cend(), std::back_inserter(added),
                     [this](const QUuid& id) { return !contains(id); });
    }
    for (const Block& block : std::as_const(other.m_blocks)) {
        if (!before.contains(block.key()))
            continue;
        for (const QUuid& id : block.ids)
            m_blockNumbers.remove(id);
    }
    for (const Block* block : std::as_const(fresh)) {
        for (const QUuid& id : block->ids)
            m_blockNumbers.insert(id, block->number);
    }
    return added;
}

qsizetype TaskIdList::_positionOf(quint32 number) const
{
    qsizetype position = 0;
    while (m_blocks.at(position).number != number)
        ++position;
    return position;
}

void TaskIdList::_mergeSmall(qsizetype block)
{
    const qsizetype left = block > 0 ? block - 1 : block;
    const qsizetype right = left + 1;
    if (right >= m_blocks.size() ||
        m_blocks.at(left).ids.size() + m_blocks.at(right).ids.size() > blockSize / 2)
        return;
    const QList<QUuid> moved = m_blocks.at(right).ids;
    m_blocks.removeAt(right);
    Block& target = m_blocks[left];
    target.ids.append(moved);
    for (const QUuid& id : moved)
        m_blockNumbers.insert(id, target.number);
}

void TaskIdList::_insertAt(qsizetype block, qsizetype pos, const QList<QUuid>& ids)
{
    QList<QUuid>& target = m_blocks[block].ids;
    const QList<QUuid> tail = target.mid(pos);
    target.resize(pos);
    target.append(ids);
    target.append(tail);
    if (target.size() > blockSize)
        _splitLarge(block);
}

void TaskIdList::_splitLarge(qsizetype block)
{
    const QList<QUuid> all = m_blocks.at(block).ids;
    QList<Block> pieces;
    for (qsizetype start = 0; start < all.size(); start += blockSize / 2) {
        const quint32 number = start == 0 ? m_blocks.at(block).number : m_nextNumber++;
        pieces.append(Block{number, all.mid(start, blockSize / 2)});
        for (const QUuid& id : pieces.constLast().ids)
            m_blockNumbers.insert(id, number);
    }
    m_blocks = m_blocks.first(block) + pieces + m_blocks.sliced(block + 1);
}
