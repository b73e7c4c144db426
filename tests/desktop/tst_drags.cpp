// Drags of tasks and groups in the toolkit's own drag loop, on a real desktop.
#include "tests/ui/WindowTest.h"
#include "ui/DragHelper.h"

#include <QDrag>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::StringLiterals;

class DragsTest : public WindowTest
{
    Q_OBJECT

private:
    QPoint rowPoint(qsizetype number)
    {
        return list().viewport()->mapTo(m_window.get(), middleOf(number));
    }
    QPoint entryPoint(int number)
    {
        return entry(number)->mapTo(m_window.get(), entry(number)->rect().center());
    }

    /// Presses at one point of the window, moves to the other and lets go there once `letsGo`
    /// holds, while the drag's own loop runs.
    void drag(
        const QPoint& from, const QPoint& to, Qt::KeyboardModifiers keys = {},
        const std::function<bool()>& letsGo = [] { return true; })
    {
        QWindow* window = m_window->windowHandle();
        int step = 0;
        bool released = false;
        constexpr int steps = 6;
        QTimer walk;
        connect(&walk, &QTimer::timeout, this, [&] {
            if (++step <= steps) {
                QTest::mouseEvent(QTest::MouseMove, window, Qt::NoButton, keys,
                                  from + (to - from) * step / steps);
            } else if (letsGo()) {
                walk.stop();
                released = true;
                QTest::mouseRelease(window, Qt::LeftButton, keys, to);
            }
        });
        QTimer guard;
        connect(&guard, &QTimer::timeout, this, &QDrag::cancel);
        guard.start(10000);
        QTest::mousePress(window, Qt::LeftButton, keys, from);
        walk.start(15);
        // The drag's loop runs inside this: no timer that starts it would tick in there.
        const QPoint far(QApplication::startDragDistance() + 1, 0);
        QTest::mouseEvent(QTest::MouseMove, window, Qt::NoButton, keys, from + far);
        QTRY_VERIFY_WITH_TIMEOUT(released, 15000);
        QTRY_VERIFY(!dynamic_singleton<DragHelper>::inst().dragGroup(0));
    }

private Q_SLOTS:
    void init()
    {
        WindowTest::init();
        store().createGroup(u"Home"_s, {});
        store().createGroup(u"Work"_s, {});
        panel().refresh();
        addTasks({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    }

    void reordersInPlace()
    {
        QSignalSpy highlights(&list(), &TaskListWidget::highlightGroups);
        const TodoTask::Id a = list().rows().idAt(0);
        drag(rowPoint(0), rowPoint(2));
        QCOMPARE(shown(), u"b,a,c,d"_s);
        QCOMPARE(inbox(), u"b,a,c,d"_s);
        QCOMPARE(selected(), u"a"_s);
        QCOMPARE(highlights, (QList<QVariantList>{{a}, {TodoTask::Id()}}));
        // And again, with the same number, as the first is over.
        drag(rowPoint(3), rowPoint(0));
        QCOMPARE(shown(), u"d,b,a,c"_s);
        // The button is up: moving on starts nothing.
        QTest::mouseMove(m_window->windowHandle(), rowPoint(1));
        QCOMPARE(selected(), u"d"_s);
    }

    void undoTakesBackTheDragOnceItIsOver()
    {
        drag(rowPoint(0), entryPoint(1), {}, [this] {
            QTest::keyClick(m_window->windowHandle(), Qt::Key_Z, Qt::ControlModifier);
            return true;
        });
        QCOMPARE(namesIn(entry(1)->groupId()), u"a"_s);
        QCOMPARE(inbox(), u"b,c,d"_s);
        key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(inbox(), u"a,b,c,d"_s);
        QCOMPARE(selected(), u"a"_s);
        drag(entryPoint(1), entryPoint(2));
        QCOMPARE(groups(), u"Inbox,Work,Home,Completed,Trash"_s);
        key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(groups(), u"Inbox,Home,Work,Completed,Trash"_s);
    }

    void selectionGoesIntoAGroup_data()
    {
        QTest::addColumn<FocusGroup::Id>("source");
        QTest::addColumn<int>("target"); // Inbox, Home, Work, Completed, Trash
        QTest::addColumn<bool>("control");
        QTest::addColumn<QString>("left");
        const QString both = u"b,d"_s;
        const QString all = u"a,b,c,d"_s;
        QTest::newRow("moved") << TaskStorage::ms_inboxId << 1 << false << both;
        QTest::newRow("copied") << TaskStorage::ms_inboxId << 1 << true << all;
        QTest::newRow("no copy in the Trash") << TaskStorage::ms_inboxId << 4 << true << both;
        QTest::newRow("no copy of Completed") << TaskStorage::ms_completedId << 1 << true << both;
        QTest::newRow("back onto its own group") << TaskStorage::ms_inboxId << 0 << false << all;
    }

    void selectionGoesIntoAGroup()
    {
        QFETCH(FocusGroup::Id, source);
        QFETCH(int, target);
        QFETCH(bool, control);
        QFETCH(QString, left);
        if (source != TaskStorage::ms_inboxId) {
            addTasks({u"a"_s, u"b"_s, u"c"_s, u"d"_s}, source);
            list().setGroup(source);
        }
        store().attachNotesToTask(list().rows().idAt(2), u"note"_s);
        click(0);
        click(2, Qt::ControlModifier);
        const auto keys = control ? Qt::ControlModifier : Qt::NoModifier;
        QString text;
        drag(rowPoint(2), entryPoint(target), keys, [this, &text] {
            text = list().findChild<QDrag*>()->mimeData()->text();
            return true;
        });
        QCOMPARE(text, u"a\r\nc (note)"_s);
        QCOMPARE(namesIn(source), left);
        QCOMPARE(shown(), left);
        QCOMPARE(selected(), left == u"b,d"_s ? QString() : u"a,c"_s);
        QCOMPARE(namesIn(entry(target)->groupId()), target == 0 ? left : u"a,c"_s);
        for (const FocusGroupWidget* one : panel().entries())
            QVERIFY(!one->highlighted());
    }

    /// The drop goes to the group below the pointer, wherever the drag came in.
    void dropAfterScrolling()
    {
        for (int i = 0; i < 40; ++i)
            store().createGroup(QString::number(i), {});
        panel().refresh();
        QCoreApplication::processEvents();
        QScrollBar* bar = panel().verticalScrollBar();
        const QPoint low = panel().viewport()->mapTo(m_window.get(),
                                                     QPoint(40, panel().viewport()->height() - 15));
        drag(rowPoint(0), low, {}, [bar] { return bar->value() == bar->maximum(); });
        QCOMPARE(namesIn(TaskStorage::ms_trashId), u"a"_s);
    }

    void groupMovesAndStaysTheCurrentOne()
    {
        drag(entryPoint(2), entryPoint(1));
        QCOMPARE(groups(), u"Inbox,Work,Home,Completed,Trash"_s);
        QVERIFY(entry(1)->selected());
        panel().refresh();
        QCOMPARE(groups(), u"Inbox,Work,Home,Completed,Trash"_s);
    }
};

QTEST_MAIN(DragsTest)
#include "tst_drags.moc"
