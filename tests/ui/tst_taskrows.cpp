// Rows of the task list without widgets: geometry at any size, selection, order.

#include "ui/TaskRows.h"

#include <QTest>

namespace {

constexpr int rowHeight = 26;

QList<TodoTask::Id> makeIds(qsizetype count)
{
    QList<TodoTask::Id> ids;
    for (qsizetype i = 0; i < count; ++i)
        ids.append(QUuid(static_cast<uint>(i + 1), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    return ids;
}

TaskRows makeRows(qsizetype count)
{
    TaskRows rows;
    rows.setRowHeight(rowHeight);
    rows.assign(makeIds(count));
    return rows;
}

} // namespace

class TaskRowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Every pixel belongs to the row that lies there, or to none in the margins and gaps.
    void geometry()
    {
        TaskRows rows = makeRows(10);
        for (const int edited : {-1, 5, 9}) {
            rows.setEdited(edited, 90);
            qint64 y = TaskRows::margin;
            for (qsizetype row = 0; row < rows.count(); ++row) {
                QCOMPARE(rows.top(row), y);
                QCOMPARE(rows.rowAt(y - 1), -1);
                QCOMPARE(rows.rowAt(y), row);
                QCOMPARE(rows.rowAt(y + rows.height(row) - 1), row);
                const auto range = rows.visible(y - 1, 2);
                QCOMPARE(range.first, row);
                QCOMPARE(range.last, row);
                y += rows.height(row) + TaskRows::spacing;
            }
            QCOMPARE(rows.rowAt(y - TaskRows::spacing), -1);
            QCOMPARE(rows.contentHeight(), y - TaskRows::spacing + TaskRows::margin);
        }
    }

    void selectionAndEditFollowTheirRows()
    {
        TaskRows rows = makeRows(6);
        rows.setSelected(1, true);
        rows.setSelected(4, true);
        rows.setNew(4, true);
        rows.setEdited(4, 90);
        QList<TodoTask::Id> ids = makeIds(6);
        const auto take = [&] {
            rows.assign(ids);
            for (qsizetype row = 0; row < rows.count(); ++row)
                QCOMPARE(rows.idAt(row), ids.at(row));
        };
        ids.removeAt(0);
        take();
        QVERIFY(rows.isSelected(0) && rows.isSelected(3) && rows.isNew(3));
        QCOMPARE(rows.edited(), 3);
        ids.move(3, 1);
        ids.append(makeIds(7).last());
        take();
        QVERIFY(rows.isSelected(0) && rows.isSelected(1) && !rows.isNew(5));
        QCOMPARE(rows.height(1), 90);
        ids.removeAt(1);
        take();
        QCOMPARE(rows.selectedCount(), 1);
        QCOMPARE(rows.edited(), -1);
    }
};

QTEST_APPLESS_MAIN(TaskRowsTest)
#include "tst_taskrows.moc"
