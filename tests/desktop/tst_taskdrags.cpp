// Drags of tasks in the toolkit's own drag loop, on a real desktop.
#include "tests/desktop/DragTest.h"
#include "ui/DragHelper.h"
#include "ui/TaskDrag.h"

#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

/// Takes drags of tasks, as an entry of the group panel does, and notes what they bring.
class Target : public QWidget
{
public:
    std::function<void(DragGroup&)> act = [](DragGroup&) {};
    int drops = 0;
    bool copy = false;
    QString text;

    explicit Target(QWidget* parent)
        : QWidget(parent)
    {
        setAcceptDrops(true);
    }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override { event->acceptProposedAction(); }
    void dropEvent(QDropEvent* event) override
    {
        const auto drag = taskdrag::find(event->mimeData());
        if (!drag)
            return;
        ++drops;
        copy = drag->isCopy();
        text = event->mimeData()->text();
        act(*drag);
        event->acceptProposedAction();
    }
};

/// Somebody else's text to be dragged.
class ForeignSource : public QWidget
{
public:
    using QWidget::QWidget;
    Qt::DropAction result = Qt::MoveAction;

protected:
    void mousePressEvent(QMouseEvent* event) override { event->accept(); }
    void mouseMoveEvent(QMouseEvent* /*event*/) override
    {
        auto* drag = new QDrag(this);
        auto* text = new QMimeData;
        text->setText(u"0"_s);
        drag->setMimeData(text);
        result = drag->exec(Qt::MoveAction | Qt::CopyAction);
    }
};

} // namespace

class TaskDragsTest : public DragTest
{
    Q_OBJECT

private:
    Target* m_target = nullptr;

    QPoint targetPoint() { return m_target->mapTo(m_window.get(), m_target->rect().center()); }

private Q_SLOTS:
    void init()
    {
        DragTest::init();
        addTasks({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
        m_target = new Target(m_window.get());
        m_target->setGeometry(0, 200, 150, 100);
        m_target->show();
        m_target->raise();
    }
    void cleanup() { DragTest::cleanup(); }

    void reordersInPlace()
    {
        QSignalSpy highlights(&list(), &TaskListWidget::highlightGroups);
        const TodoTask::Id a = list().rows().idAt(0);
        drag(inWindow(0), inWindow(2));
        QCOMPARE(shown(), u"b,a,c,d"_s);
        QCOMPARE(inbox(), u"b,a,c,d"_s);
        QCOMPARE(selected(), u"a"_s);
        QCOMPARE(highlights, (QList<QVariantList>{{a}, {TodoTask::Id()}}));
        // And again, with the same number, as the first is over.
        drag(inWindow(3), inWindow(0));
        QCOMPARE(shown(), u"d,b,a,c"_s);
        // The button is up: moving on starts nothing.
        QTest::mouseMove(m_window->windowHandle(), inWindow(1));
        QCOMPARE(selected(), u"d"_s);
    }

    void selectionGoesAlong_data()
    {
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("left");
        QTest::newRow("moved") << 2 << "b,d";
        QTest::newRow("copied") << 1 << "a,b,c,d";
    }

    void selectionGoesAlong()
    {
        QFETCH(int, result);
        QFETCH(QString, left);
        store().attachNotesToTask(list().rows().idAt(2), u"note"_s);
        click(0);
        click(2, Qt::ControlModifier);
        m_target->act = [this, result](DragGroup& group) {
            const auto from = group.tasks().cbegin();
            if (result == 2)
                store().moveTasks(from.key(), TaskStorage::ms_completedId, from.value());
            else
                store().addTasks(TaskStorage::ms_completedId, from.value());
            group.setResult(result);
        };
        drag(inWindow(2), targetPoint());
        QCOMPARE(m_target->drops, 1);
        QCOMPARE(m_target->text, u"a\r\nc (note)"_s);
        QCOMPARE(shown(), left);
        QCOMPARE(selected(), result == 2 ? QString() : u"a,c"_s);
        QCOMPARE(namesIn(TaskStorage::ms_completedId), u"a,c"_s);
    }

    void controlAsksForACopyButNotFromAnArchive_data()
    {
        QTest::addColumn<FocusGroup::Id>("group");
        QTest::addColumn<bool>("control");
        QTest::addColumn<bool>("copy");
        QTest::newRow("plain") << TaskStorage::ms_inboxId << false << false;
        QTest::newRow("control") << TaskStorage::ms_inboxId << true << true;
        QTest::newRow("from the Trash") << TaskStorage::ms_trashId << true << false;
        QTest::newRow("from Completed") << TaskStorage::ms_completedId << true << false;
    }

    void controlAsksForACopyButNotFromAnArchive()
    {
        QFETCH(FocusGroup::Id, group);
        QFETCH(bool, control);
        QFETCH(bool, copy);
        addTasks({u"x"_s}, group);
        list().setGroup(group);
        drag(inWindow(0), targetPoint(), control ? Qt::ControlModifier : Qt::NoModifier);
        QCOMPARE(m_target->drops, 1);
        QCOMPARE(m_target->copy, copy);
    }

    void foreignDataIsRefused()
    {
        auto* source = new ForeignSource(m_window.get());
        source->setGeometry(0, 320, 150, 60);
        source->show();
        source->raise();
        drag(source->geometry().center(), inWindow(1));
        QCOMPARE(source->result, Qt::IgnoreAction);
        QCOMPARE(shown(), u"a,b,c,d"_s);
    }

    void nothingIsDraggedWhileEditing()
    {
        edit(1);
        drag(inWindow(0), targetPoint());
        QCOMPARE(m_target->drops, 0);
        QVERIFY(!row(1)->isEditing());
    }
};

QTEST_MAIN(TaskDragsTest)
#include "tst_taskdrags.moc"
