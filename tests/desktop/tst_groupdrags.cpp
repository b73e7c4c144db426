// Drags onto the group panel, and of groups within it, on a real desktop.
#include "tests/desktop/DragTest.h"
#include "ui/FocusGroupListWidget.h"
#include "ui/FocusGroupWidget.h"

#include <QScrollBar>

using namespace Qt::StringLiterals;

class GroupDragsTest : public DragTest
{
    Q_OBJECT

private:
    FocusGroupListWidget& panel() { return *m_window->groupList(); }
    /// The middle of the n-th entry from the top, in the window.
    QPoint entryPoint(int number)
    {
        const FocusGroupWidget* entry = panel().entries().at(number);
        return entry->mapTo(m_window.get(), entry->rect().center());
    }
    QString tasksOf(int number) { return namesIn(panel().entries().at(number)->groupId()); }

private Q_SLOTS:
    void init()
    {
        DragTest::init();
        store().createGroup(u"Home"_s, {});
        const FocusGroup::Id work = store().createGroup(u"Work"_s, {});
        panel().refresh();
        addTasks({u"a"_s, u"b"_s});
        store().addTask(work, list().rows().idAt(1));
        QTRY_COMPARE(tasksOf(2), u"b"_s);
    }
    void cleanup() { DragTest::cleanup(); }

    void tasks_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("entry"); // Inbox, Home, Work, Completed, Trash
        QTest::addColumn<bool>("control");
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("there");
        QTest::newRow("moved") << 0 << 1 << false << "b"
                               << "a";
        QTest::newRow("copied") << 0 << 1 << true << "a,b"
                                << "a";
        QTest::newRow("into the Trash") << 0 << 4 << true << "b"
                                        << "a";
        QTest::newRow("into Completed") << 0 << 3 << true << "b"
                                        << "a";
        QTest::newRow("where it is already") << 1 << 2 << false << "a,b"
                                             << "b";
        QTest::newRow("back onto its own group") << 0 << 0 << false << "a,b"
                                                 << "a,b";
    }

    void tasks()
    {
        QFETCH(int, row);
        QFETCH(int, entry);
        QFETCH(bool, control);
        QFETCH(QString, left);
        QFETCH(QString, there);
        drag(inWindow(row), entryPoint(entry), control ? Qt::ControlModifier : Qt::NoModifier);
        QCOMPARE(inbox(), left);
        QCOMPARE(shown(), left);
        QCOMPARE(tasksOf(entry), there);
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
        drag(inWindow(0), low, {}, [bar] { return bar->value() == bar->maximum(); });
        QCOMPARE(namesIn(TaskStorage::ms_trashId), u"a"_s);
    }

    void groups_data()
    {
        QTest::addColumn<int>("target");
        QTest::addColumn<QString>("ordered");
        QTest::newRow("onto a group") << 1 << "Inbox,Work,Home,Completed,Trash";
        QTest::newRow("onto Inbox") << 0 << "Inbox,Home,Work,Completed,Trash";
        QTest::newRow("onto Trash") << 4 << "Inbox,Home,Work,Completed,Trash";
    }

    void groups()
    {
        QFETCH(int, target);
        QFETCH(QString, ordered);
        drag(entryPoint(2), entryPoint(target));
        QStringList names;
        for (const FocusGroupWidget* entry : panel().entries())
            names += entry->group().name();
        QCOMPARE(names.join(u','), ordered);
        // The pressed group is the current one, wherever it stands now.
        QCOMPARE(panel().entries().at(panel().currentIndex())->group().name(), u"Work"_s);
        QCOMPARE(store().getGroup(panel().groupId()).name(), u"Work"_s);
        panel().refresh();
        QCOMPARE(panel().entries().at(1)->group().name(), ordered.section(u',', 1, 1));
    }
};

QTEST_MAIN(GroupDragsTest)
#include "tst_groupdrags.moc"
