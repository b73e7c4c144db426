// The ordered identifier list against a plain list that does the same slowly.

#include "taskdb/TaskIdList.h"

#include <QRandomGenerator>
#include <QTest>

namespace {

/// The rules of reorder(), on a plain list.
void reorderPlainly(QList<QUuid>& list, const QUuid& anchor, bool before, const QList<QUuid>& ids)
{
    if (anchor.isNull() || ids.isEmpty())
        return;
    for (const QUuid& id : ids)
        list.removeAll(id);
    qsizetype at = list.indexOf(anchor);
    if (at < 0)
        return;
    at += before ? 0 : 1;
    for (const QUuid& id : ids) {
        if (!id.isNull() && !list.contains(id))
            list.insert(at++, id);
    }
}

} // namespace

class TaskIdListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void matchesAPlainListUnderRandomChanges()
    {
        QRandomGenerator random(20260101);
        QList<QUuid> pool{QUuid()};
        while (pool.size() < 1000)
            pool += QUuid::createUuid();
        const auto any = [&] { return pool.at(random.bounded(pool.size())); };
        TaskIdList list;
        QList<QUuid> plain;
        for (int step = 0; step < 20000; ++step) {
            const QUuid id = any();
            const int what = random.bounded(1000);
            // It grows and shrinks by turns, so that blocks fill, split and merge.
            if (what < (step / 2000 % 2 == 0 ? 800 : 150)) {
                const bool isNew = !id.isNull() && !plain.contains(id);
                QCOMPARE(list.append(id), isNew);
                if (isNew)
                    plain.append(id);
            } else if (what < 995) {
                QCOMPARE(list.remove(id), plain.removeAll(id) > 0);
            } else {
                // A long block, and a few that may be absent, given twice or the anchor.
                QList<QUuid> moved = plain.mid(0, random.bounded(700));
                for (int i = random.bounded(3); i > 0; --i)
                    moved += any();
                const QUuid last = plain.isEmpty() ? QUuid() : plain.constLast();
                const QUuid anchor = step % 8 == 0 ? any() : last;
                list.reorder(anchor, (step & 1) != 0, moved);
                reorderPlainly(plain, anchor, (step & 1) != 0, moved);
            }
            QCOMPARE(list.size(), plain.size());
            QCOMPARE(list.contains(id), plain.contains(id));
        }
        QCOMPARE(list.toList(), plain);
        QVERIFY(std::equal(list.begin(), list.end(), plain.cbegin(), plain.cend()));
    }
};

QTEST_APPLESS_MAIN(TaskIdListTest)
#include "tst_taskidlist.moc"
