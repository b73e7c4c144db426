// The ordered list of a group's tasks.
#pragma once

#include <QHash>
#include <QList>
#include <QUuid>

#include <iterator>
#include <utility>

/// An ordered list of identifiers without duplicates or null identifiers, as an implicitly shared
/// value. Copying takes constant time; membership is O(1). Changing one entry looks through the
/// list of blocks, a 256th of the whole, and changes one of them; the first change after a copy
/// was taken duplicates the index of all identifiers, a millisecond or two for a hundred thousand.
class TaskIdList
{
    struct Block
    {
        quint32 number = 0;
        QList<QUuid> ids;

        /// The same for copies that share their identifiers.
        [[nodiscard]] std::pair<const QUuid*, quint32> key() const
        {
            return {ids.constData(), number};
        }
    };

public:
    /// The order alone, as a shared copy. Unlike a copy of the list it does not have the next
    /// change of that duplicate the index.
    class Order
    {
    public:
        /// Blocks that both share are not looked into.
        [[nodiscard]] bool operator==(const Order& other) const;

    private:
        friend class TaskIdList;
        QList<Block> m_blocks;
    };

    /// Visits the identifiers in order; invalidated by any change of the list.
    class const_iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = QUuid;
        using difference_type = qptrdiff;
        using pointer = const QUuid*;
        using reference = const QUuid&;

        const_iterator() = default;
        reference operator*() const { return m_blocks->at(m_block).ids.at(m_pos); }
        pointer operator->() const { return &**this; }
        const_iterator& operator++();
        const_iterator operator++(int);
        bool operator==(const const_iterator& other) const = default;

    private:
        friend class TaskIdList;
        const_iterator(const QList<Block>* blocks, qsizetype block)
            : m_blocks(blocks)
            , m_block(block)
        {
        }

        const QList<Block>* m_blocks = nullptr;
        qsizetype m_block = 0;
        qsizetype m_pos = 0;
    };

    [[nodiscard]] qsizetype size() const { return m_blockNumbers.size(); }
    [[nodiscard]] bool isEmpty() const { return m_blockNumbers.isEmpty(); }
    [[nodiscard]] bool contains(const QUuid& id) const { return m_blockNumbers.contains(id); }
    [[nodiscard]] QList<QUuid> toList() const;
    [[nodiscard]] const_iterator begin() const { return {&m_blocks, 0}; }
    [[nodiscard]] const_iterator end() const { return {&m_blocks, m_blocks.size()}; }

    /// Appends unless null or present; returns whether the list changed.
    bool append(const QUuid& id);
    // By value: what goes may be named by an entry of this list.

    /// Returns whether the identifier was there.
    bool remove(QUuid id);
    /// Takes the given identifiers out and puts them back as one block, in their given order,
    /// directly before or after the anchor. Without the anchor among the rest they stay out.
    /// Does nothing for a null anchor or an empty list.
    void reorder(QUuid anchor, bool before, const QList<QUuid>& ids);
    void clear();

    [[nodiscard]] Order order() const;
    /// Takes over an order, of any list, and leaves the present one in its place. Returns which
    /// identifiers are new to the list. Costs as much as the blocks that the two do not share.
    QList<QUuid> exchange(Order& other);

private:
    [[nodiscard]] qsizetype _positionOf(quint32 number) const;
    void _mergeSmall(qsizetype block);
    void _splitLarge(qsizetype block);
    void _insertAt(qsizetype block, qsizetype pos, const QList<QUuid>& ids);

    QList<Block> m_blocks;                // none of them empty
    QHash<QUuid, quint32> m_blockNumbers; // by identifier
    quint32 m_nextNumber = 0;
};
