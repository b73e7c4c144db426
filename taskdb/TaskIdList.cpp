#include "taskdb/TaskIdList.h"

#include <utility>

namespace {
constexpr qsizetype blockSize = 256;
constexpr qsizetype shardLoad = 256;
} // namespace

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

bool TaskIdList::contains(const QUuid& id) const
{
    return !isEmpty() && m_shards.at(_shardOf(id)).contains(id);
}

QList<QUuid> TaskIdList::toList() const
{
    QList<QUuid> ids;
    ids.reserve(m_size);
    for (const Block& block : m_blocks)
        ids.append(block.ids);
    return ids;
}

bool TaskIdList::append(const QUuid& id)
{
    if (id.isNull())
        return false;
    _growFor(m_size + 1);
    Shard& shard = m_shards[_shardOf(id)];
    const qsizetype known = shard.size();
    quint32& number = shard[id];
    if (shard.size() == known)
        return false;
    if (m_blocks.isEmpty() || m_blocks.constLast().ids.size() >= blockSize)
        m_blocks.append(Block{m_nextNumber++, {}});
    Block& last = m_blocks.last();
    last.ids.append(id);
    number = last.number;
    ++m_size;
    return true;
}

bool TaskIdList::remove(const QUuid& id)
{
    if (isEmpty())
        return false;
    const qsizetype shard = _shardOf(id);
    const auto found = m_shards.at(shard).constFind(id);
    if (found == m_shards.at(shard).constEnd())
        return false;
    const qsizetype position = _blockAt(*found);
    m_shards[shard].remove(id);
    Block& block = m_blocks[position];
    block.ids.removeOne(id);
    --m_size;
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

void TaskIdList::reorder(const QUuid& anchor, bool before, const QList<QUuid>& ids)
{
    if (anchor.isNull() || ids.isEmpty())
        return;
    for (const QUuid& id : ids)
        remove(id);
    if (!contains(anchor))
        return;

    const qsizetype block = _blockAt(m_shards.at(_shardOf(anchor)).value(anchor));
    const qsizetype pos = m_blocks.at(block).ids.indexOf(anchor) + (before ? 0 : 1);
    QList<QUuid> moved;
    moved.reserve(ids.size());
    const quint32 number = m_blocks.at(block).number;
    for (const QUuid& id : ids) {
        if (id.isNull() || contains(id))
            continue;
        _growFor(++m_size);
        _index(id, number);
        moved.append(id);
    }
    _insertAt(block, pos, moved);
}

qsizetype TaskIdList::_shardOf(const QUuid& id) const
{
    // The tables use the low bits of the hash themselves, so the shard takes mixed high ones.
    const quint64 mixed = static_cast<quint64>(qHash(id)) * Q_UINT64_C(0x9E3779B97F4A7C15);
    return static_cast<qsizetype>(mixed >> 40) & (m_shards.size() - 1);
}

qsizetype TaskIdList::_blockAt(quint32 number) const
{
    qsizetype position = 0;
    while (m_blocks.at(position).number != number)
        ++position;
    return position;
}

void TaskIdList::_index(const QUuid& id, quint32 number)
{
    m_shards[_shardOf(id)].insert(id, number);
}

void TaskIdList::_growFor(qsizetype size)
{
    if (size <= m_shards.size() * shardLoad)
        return;
    const QList<Shard> old = std::exchange(m_shards, {});
    m_shards.resize(qMax(qsizetype{1}, old.size() * 4));
    if (m_shards.size() > 1) {
        for (Shard& shard : m_shards)
            shard.reserve(shardLoad / 2);
    }
    for (const Shard& shard : old) {
        for (auto it = shard.cbegin(); it != shard.cend(); ++it)
            m_shards[_shardOf(it.key())].insert(it.key(), it.value());
    }
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
        _index(id, target.number);
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
            _index(id, number);
    }
    m_blocks = m_blocks.first(block) + pieces + m_blocks.sliced(block + 1);
}
