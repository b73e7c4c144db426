// The registry of drags and what a drag carries.

#include "ui/DragHelper.h"

#include <QTest>

#include <boost/make_shared.hpp>

using namespace Qt::StringLiterals;

class DragHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void numbers()
    {
        DragHelper drags;
        const auto first = boost::make_shared<DragGroup>(DragGroup::TasksDrag);
        const auto second = boost::make_shared<DragGroup>(DragGroup::GroupDrag);
        QCOMPARE(drags.startDrag(first), 0);
        QCOMPARE(drags.startDrag(second), 1);
        QVERIFY(drags.dragGroup(0) == first);
        drags.dragDone(0);
        drags.dragDone(7);
        QVERIFY(!drags.dragGroup(0));
        QVERIFY(drags.dragGroup(1) == second);
        QCOMPARE(drags.startDrag(first), 2);
        drags.dragDone(1);
        drags.dragDone(2);
        QCOMPARE(drags.startDrag(second), 0);
    }

    static void content_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<int>("id");
        QTest::newRow("zero") << QByteArray("0") << 0;
        QTest::newRow("two digits") << QByteArray("10") << 10;
        QTest::newRow("not registered") << QByteArray("11") << -1;
        for (const char* data : {"", "abc", "1x", "-1", "0x1", "1.0", "4294967296"})
            QTest::addRow("\"%s\"", data) << QByteArray(data) << -1;
    }
    static void content()
    {
        QFETCH(QByteArray, data);
        QFETCH(int, id);
        DragHelper drags;
        for (int i = 0; i <= 10; ++i)
            (void)drags.startDrag(boost::make_shared<DragGroup>(DragGroup::TasksDrag));
        QVERIFY(drags.dragGroup(data) == drags.dragGroup(id));
        QCOMPARE(drags.dragGroup(data) != nullptr, id >= 0);
    }

    static void tasksBySource()
    {
        const FocusGroup::Id work = FocusGroup::Id::createUuid();
        const FocusGroup::Id home = FocusGroup::Id::createUuid();
        QList<TodoTask::Id> ids;
        DragGroup drag(DragGroup::TasksDrag);
        for (int i = 0; i < 4; ++i) {
            ids.append(TodoTask::Id::createUuid());
            drag.addTask(i == 1 ? home : work, ids.constLast());
        }
        QCOMPARE(drag.tasks().value(work), (QList{ids.at(0), ids.at(2), ids.at(3)}));
        QCOMPARE(drag.tasks().value(home), QList{ids.at(1)});
        QVERIFY(drag.hasTask(ids.at(1)) && drag.hasTask(ids.at(3)));
        QVERIFY(!drag.hasTask(TodoTask::Id::createUuid()));
        QCOMPARE(drag.result(), int{DragGroup::NotDropped});
        QVERIFY(!drag.isCopy() && drag.groupId().isNull());
    }
};

QTEST_GUILESS_MAIN(DragHelperTest)
#include "tst_draghelper.moc"
