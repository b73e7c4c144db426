// Drops onto the task list, sent to it directly: what it takes, and where rows land.
#include "tests/ui/RegisteredDrag.h"
#include "tests/ui/WindowTest.h"

#include <QDropEvent>
#include <QScrollBar>

#include <boost/make_shared.hpp>

using namespace Qt::StringLiterals;

class TaskDropsTest : public WindowTest
{
    Q_OBJECT

private:
    boost::shared_ptr<DragGroup> dragOfSelection()
    {
        const auto drag = boost::make_shared<DragGroup>(DragGroup::TasksDrag);
        for (qsizetype i = 0; i < list().rows().count(); ++i) {
            if (list().rows().isSelected(i))
                drag->addTask(list().groupId(), list().rows().idAt(i));
        }
        return drag;
    }

    /// Drags the data over the list along the points and drops it at the last. Returns whether it
    /// was let in and dropped.
    bool drop(const QMimeData& data, const QList<QPoint>& way)
    {
        QWidget* viewport = list().viewport();
        QDragEnterEvent enter(way.first(), Qt::MoveAction, &data, Qt::LeftButton, {});
        enter.ignore();
        QCoreApplication::sendEvent(viewport, &enter);
        for (const QPoint& point : way) {
            QDragMoveEvent move(point, Qt::MoveAction, &data, Qt::LeftButton, {});
            QCoreApplication::sendEvent(viewport, &move);
        }
        QDropEvent event(way.last(), Qt::MoveAction, &data, Qt::LeftButton, {});
        event.ignore();
        QCoreApplication::sendEvent(viewport, &event);
        return enter.isAccepted() && event.isAccepted();
    }

    void select(const QString& names)
    {
        for (qsizetype i = 0; i < list().rows().count(); ++i) {
            if (names.contains(store().get(list().rows().idAt(i)).name()))
                click(i, Qt::ControlModifier);
        }
    }

private Q_SLOTS:
    void reorders_data()
    {
        QTest::addColumn<QString>("selection");
        QTest::addColumn<int>("target"); // a row; -1: below the last one
        QTest::addColumn<QString>("order");
        QTest::newRow("up") << "d" << 1 << "a,d,b,c,e";
        QTest::newRow("down") << "a" << 3 << "b,c,a,d,e";
        QTest::newRow("to the top") << "ce" << 0 << "c,e,a,b,d";
        QTest::newRow("below all") << "ac" << -1 << "b,d,e,a,c";
        QTest::newRow("onto itself") << "b" << 1 << "a,b,c,d,e";
        QTest::newRow("scattered, onto one of them") << "bd" << 1 << "a,b,d,c,e";
        QTest::newRow("onto itself at the end") << "de" << 4 << "a,b,c,d,e";
        QTest::newRow("below all, the last selected") << "be" << -1 << "a,c,d,b,e";
        QTest::newRow("all of them") << "abcde" << 2 << "a,b,c,d,e";
    }

    void reorders()
    {
        QFETCH(QString, selection);
        QFETCH(int, target);
        QFETCH(QString, order);
        addTasks({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s});
        select(selection);
        const auto drag = dragOfSelection();
        const RegisteredDrag dragged(drag);
        const QPoint point = target < 0 ? emptySpace() : middleOf(target);
        drop(dragged.data, {middleOf(0), point});
        QCOMPARE(shown(), order);
        QCOMPARE(inbox(), order);
        QCOMPARE(drag->result(), selection == u"abcde"_s ? 0 : 3);
        QCOMPARE(selected().remove(u','), selection);
        QCoreApplication::processEvents();
        QCOMPARE(shown(), order);
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("text") << "text/plain" << QByteArray("0");
        QTest::newRow("no number") << "mvr/drag-id" << QByteArray("abc");
        QTest::newRow("a drag that is over") << "mvr/drag-id" << QByteArray("7");
        QTest::newRow("a group") << "mvr/drag-id" << QByteArray("0");
    }

    void refuses()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, content);
        addTasks({u"a"_s, u"b"_s});
        click(1);
        const RegisteredDrag group(boost::make_shared<DragGroup>(DragGroup::GroupDrag));
        QCOMPARE(group.id, 0);
        QMimeData data;
        data.setData(format, content);
        QVERIFY(!drop(data, {middleOf(0)}));
        QCOMPARE(shown(), u"a,b"_s);
    }

    void gapsAndMarginsKeepThePosition()
    {
        addTasks({u"a"_s, u"b"_s, u"c"_s});
        click(2);
        const RegisteredDrag dragged(dragOfSelection());
        drop(dragged.data, {middleOf(1), {2, middleOf(0).y()}});
        QCOMPARE(shown(), u"a,c,b"_s);
    }

    /// The line lies in the gap between rows, where nothing paints over it, and goes with the drag.
    void lineShowsThePlace()
    {
        addTasks({u"a"_s, u"b"_s, u"c"_s});
        click(2);
        const RegisteredDrag dragged(dragOfSelection());
        const auto colourAbove = [this](qsizetype number) {
            const QRect place = list().rowRect(number);
            return list().viewport()->grab().toImage().pixelColor(place.center().x(),
                                                                  place.top() - 1);
        };
        const QColor line(0x1B, 0x75, 0xBB);
        QDragEnterEvent enter(middleOf(1), Qt::MoveAction, &dragged.data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(list().viewport(), &enter);
        QCOMPARE(colourAbove(1), line);
        QVERIFY(colourAbove(2) != line);
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(list().viewport(), &leave);
        QVERIFY(colourAbove(1) != line);
    }

    void listScrollsUnderADragAtItsEdge()
    {
        QStringList names;
        for (int i = 0; i < 100; ++i)
            names += QString::number(i);
        addTasks(names);
        click(0);
        const RegisteredDrag dragged(dragOfSelection());
        const QPoint low(30, list().viewport()->height() - 1);
        QDragEnterEvent enter(low, Qt::MoveAction, &dragged.data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(list().viewport(), &enter);
        QScrollBar* bar = list().verticalScrollBar();
        QTRY_COMPARE(bar->value(), bar->maximum());
        QDropEvent event(low, Qt::MoveAction, &dragged.data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(list().viewport(), &event);
        QCOMPARE(store().get(list().rows().idAt(99)).name(), u"0"_s);
    }
};

QTEST_MAIN(TaskDropsTest)
#include "tst_taskdrops.moc"
