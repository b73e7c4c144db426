// Drags inside the program: their registry, what takes them, and where rows land.
#include "tests/ui/WindowTest.h"
#include "ui/DragHelper.h"

#include <QDropEvent>
#include <QMimeData>

#include <boost/make_shared.hpp>

using namespace Qt::StringLiterals;

class DropsTest : public WindowTest
{
    Q_OBJECT

private:
    /// Selects the tasks of these names and puts them into a drag.
    boost::shared_ptr<DragGroup> dragOf(const QString& names)
    {
        const auto drag = boost::make_shared<DragGroup>(DragGroup::TasksDrag);
        for (qsizetype i = 0; i < list().rows().count(); ++i) {
            if (!names.contains(task(i).name()))
                continue;
            click(i, Qt::ControlModifier);
            drag->addTask(list().groupId(), list().rows().idAt(i));
        }
        return drag;
    }

    bool dropOnEntry(const boost::shared_ptr<DragGroup>& drag, qsizetype number)
    {
        const QPoint middle = entry(number)->rect().center();
        return drop(drag, panel().viewport(), {entry(number)->mapTo(panel().viewport(), middle)});
    }

    /// Drags over the widget along the points and drops at the last. Returns whether the drag was
    /// let in and dropped; refused, it must have been shown so all along.
    bool drop(const boost::shared_ptr<DragGroup>& drag, QWidget* target, const QList<QPoint>& way)
    {
        auto& registry = dynamic_singleton<DragHelper>::inst();
        const int id = registry.startDrag(drag);
        QMimeData data;
        data.setData(DragHelper::dragMimeType(), QByteArray::number(id));
        QDragEnterEvent enter(way.first(), Qt::MoveAction, &data, Qt::LeftButton, {});
        enter.ignore();
        QCoreApplication::sendEvent(target, &enter);
        bool allowed = enter.isAccepted() && enter.dropAction() == Qt::MoveAction;
        for (const QPoint& point : way) {
            QDragMoveEvent move(point, Qt::MoveAction, &data, Qt::LeftButton, {});
            QCoreApplication::sendEvent(target, &move);
            allowed = allowed && move.isAccepted();
        }
        QDropEvent event(way.last(), Qt::MoveAction, &data, Qt::LeftButton, {});
        event.ignore();
        QCoreApplication::sendEvent(target, &event);
        registry.dragDone(id);
        return allowed && event.isAccepted();
    }

private Q_SLOTS:
    void registryKnowsRunningDragsByNumber()
    {
        DragHelper drags;
        const auto first = boost::make_shared<DragGroup>(DragGroup::TasksDrag);
        const auto second = boost::make_shared<DragGroup>(DragGroup::GroupDrag);
        QCOMPARE(drags.startDrag(first), 0);
        QCOMPARE(drags.startDrag(second), 1);
        for (const char* data : {"2", "", "abc", "1x", "-1", "4294967296"})
            QVERIFY2(!drags.dragGroup(QByteArray(data)), data);
        drags.dragDone(0);
        QVERIFY(!drags.dragGroup(0));
        QVERIFY(drags.dragGroup("1") == second);
        QCOMPARE(drags.startDrag(first), 2);
        drags.dragDone(1);
        drags.dragDone(2);
        QCOMPARE(drags.startDrag(second), 0);
    }

    void reorders_data()
    {
        QTest::addColumn<QString>("selection");
        QTest::addColumn<int>("target"); // a row; -1: below the last one
        QTest::addColumn<QString>("order");
        QTest::newRow("up") << "d" << 1 << "a,d,b,c,e";
        QTest::newRow("down") << "a" << 3 << "b,c,a,d,e";
        QTest::newRow("below all") << "ac" << -1 << "b,d,e,a,c";
        QTest::newRow("scattered, onto one of them") << "bd" << 1 << "a,b,d,c,e";
        QTest::newRow("onto itself at the end") << "de" << 4 << "a,b,c,d,e";
        QTest::newRow("all of them") << "abcde" << 2 << "a,b,c,d,e";
    }

    void reorders()
    {
        QFETCH(QString, selection);
        QFETCH(int, target);
        QFETCH(QString, order);
        addTasks({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s});
        const auto drag = dragOf(selection);
        const QPoint point = target < 0 ? emptySpace() : middleOf(target);
        drop(drag, list().viewport(), {middleOf(0), point});
        QCOMPARE(shown(), order);
        QCOMPARE(inbox(), order);
        QCOMPARE(drag->result(), selection == u"abcde"_s ? 0 : 3);
        QCOMPARE(selected().remove(u','), selection);
    }

    void groupThatHoldsATaskTakesNoneOfTheDrag()
    {
        const FocusGroup::Id work = store().createGroup(u"Work"_s, {});
        panel().refresh();
        addTasks({u"a"_s, u"b"_s});
        store().addTask(work, task(1).id());
        const auto drag = dragOf(u"ab"_s);
        QVERIFY(!dropOnEntry(drag, 1));
        QCOMPARE(namesIn(work), u"b"_s);
        QCOMPARE(inbox(), u"a,b"_s);
    }

    void groupGoesOntoAnotherCustomGroupAndNowhereElse()
    {
        store().createGroup(u"Home"_s, {});
        const auto drag = boost::make_shared<DragGroup>(DragGroup::GroupDrag);
        drag->setGroupId(store().createGroup(u"Work"_s, {}));
        panel().refresh();
        QWidget* pane = panel().viewport();
        QVERIFY(!drop(drag, pane, {{20, pane->height() / 2}}));
        QVERIFY(!drop(drag, list().viewport(), {{50, 50}}));
        QList<int> takers;
        for (int i : {0, 4, 3, 2, 1}) {
            if (dropOnEntry(drag, i))
                takers += i;
        }
        QCOMPARE(takers, QList<int>{1});
        panel().refresh();
        QCOMPARE(groups(), u"Inbox,Work,Home,Completed,Trash"_s);
    }
};

QTEST_MAIN(DropsTest)
#include "tst_drops.moc"
