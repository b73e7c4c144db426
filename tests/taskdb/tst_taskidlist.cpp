// The ordered identifier list against a plain list that does the same slowly.

#include "taskdb/TaskIdList.h"

#include <QRandomGenerator>
#include <QTest>

namespace {

QList<QUuid> makeIds(int count)
{
    QList<QUuid> ids;
    for (int i = 0; i < count; ++i)
        ids.append(QUuid::createUuid());
    return ids;
}

TaskIdList listOf(const QList<QUuid>& ids)
{
    TaskIdList list;
    for (const QUuid& id : ids)
        list.append(id);
    return list;
}

/// The same rules on a plain list.
void reorderPlainly(QList<QUuid>& list, const QUuid& anchor, bool before, const QList<QUuid>& ids)
{
    for (const QUuid& id : ids)
        list.removeAll(id);
    qsizetype at = list.indexOf(anchor);
    if (at < 0)
        return;
    at += before ? 0 : 1;
    for (const QUuid& id : ids)
        list.insert(at++, id);
}

} // namespace

class TaskIdListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reorders_data()
    {
        QTest::addColumn<int>("anchor");
        QTest::addColumn<bool>("before");
        QTest::addColumn<QList<int>>("moved");
        QTest::addColumn<QList<int>>("expected");
        // Five entries, 0 to 4; 9 stands for the null identifier, 8 for one not in the list.
        QTest::newRow("before") << 1 << true << QList{4, 3} << QList{0, 4, 3, 1, 2};
        QTest::newRow("after") << 1 << false << QList{0, 3} << QList{1, 0, 3, 2, 4};
        QTest::newRow("after the last") << 4 << false << QList{0} << QList{1, 2, 3, 4, 0};
        QTest::newRow("null anchor") << 9 << true << QList{0} << QList{0, 1, 2, 3, 4};
        QTest::newRow("nothing moved") << 1 << true << QList<int>{} << QList{0, 1, 2, 3, 4};
        QTest::newRow("absent anchor loses them") << 8 << true << QList{0, 1} << QList{2, 3, 4};
        QTest::newRow("anchor among them") << 1 << true << QList{0, 1} << QList{2, 3, 4};
        QTest::newRow("given twice") << 0 << false << QList{3, 3} << QList{0, 3, 1, 2, 4};
    }

    void reorders()
    {
        QFETCH(int, anchor);
        QFETCH(bool, before);
        QFETCH(QList<int>, moved);
        QFETCH(QList<int>, expected);
        QList<QUuid> ids = makeIds(9);
        ids.append(QUuid());
        const auto pick = [&ids](const QList<int>& numbers) {
            QList<QUuid> picked;
            for (int number : numbers)
                picked.append(ids.at(number));
            return picked;
        };
        TaskIdList list = listOf(ids.first(5));
        list.reorder(ids.at(anchor), before, pick(moved));
        QCOMPARE(list.toList(), pick(expected));
    }

    void matchesAPlainListUnderRandomChanges()
    {
        QRandomGenerator random(20260101);
        const QList<QUuid> pool = makeIds(3000);
        const auto any = [&] { return pool.at(random.bounded(pool.size())); };
        TaskIdList list;
        QList<QUuid> plain;
        QList<std::pair<TaskIdList, QList<QUuid>>> copies;
        for (int step = 0; step < 20000; ++step) {
            const QUuid id = any();
            const int what = random.bounded(100);
            if (what < 50) {
                QCOMPARE(list.append(id), !plain.contains(id));
                if (!plain.contains(id))
                    plain.append(id);
            } else if (what < 97) {
                QCOMPARE(list.remove(id), plain.removeAll(id) > 0);
            } else if (!plain.isEmpty()) {
                const qsizetype count = random.bounded(qMin(plain.size(), qsizetype{700}));
                const QList<QUuid> moved = plain.first(count);
                const QUuid anchor = plain.constLast();
                list.reorder(anchor, (what & 1) != 0, moved);
                reorderPlainly(plain, anchor, (what & 1) != 0, moved);
            }
            if (step % 1000 == 0)
                copies.append({list, plain});
            QCOMPARE(list.size(), plain.size());
            QCOMPARE(list.contains(id), plain.contains(id));
        }
        QCOMPARE(list.toList(), plain);
        QVERIFY(std::equal(list.begin(), list.end(), plain.cbegin(), plain.cend()));
        // Copies taken on the way kept what they held.
        for (const auto& [copy, content] : std::as_const(copies))
            QCOMPARE(copy.toList(), content);
    }
};

QTEST_APPLESS_MAIN(TaskIdListTest)
#include "tst_taskidlist.moc"
