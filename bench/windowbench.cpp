// The whole window's speed with many groups, with a store from a database file.
// Usage: windowbench [--rounds N] FIGURE DATABASE   (with DISPLAY set)
// Figures: switch, complete, move, undo. Every group of the database must hold tasks. Prints lines
// of a table. The database is copied, never written.

#include "app/base/Clock.h"
#include "bench/windows.h"
#include "taskdb/TaskStorageSnapsot.h"
#include "ui/CountWidget.h"
#include "ui/ElidedLabel.h"
#include "ui/FocusGroupListWidget.h"
#include "ui/FocusGroupWidget.h"
#include "ui/MainWindow.h"
#include "ui/TaskListWidget.h"
#include "ui/TaskWidget.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>
#include <memory>
#include <numeric>
#include <vector>

using namespace Qt::StringLiterals;
using namespace bench;

namespace {

QList<FocusGroup::Id> groupIds()
{
    QList<FocusGroup::Id> ids;
    taskStorage().enumGroups(ids);
    return ids;
}

bool isOpen(const TodoTask::Id& id)
{
    return !taskStorage().get(id).completed();
}

qsizetype openIn(const FocusGroup::Id& group)
{
    const QList<TodoTask::Id> ids = idsOf(group);
    return std::count_if(ids.cbegin(), ids.cend(), isOpen);
}

/// What the numbers of an entry's bar come to.
qsizetype shownOpen(const FocusGroupWidget* entry)
{
    const auto* bar = entry->findChild<CountWidget*>();
    qsizetype sum = 0;
    for (int section = 0; section < bar->sectionsCount(); ++section)
        sum += bar->sectionValue(section);
    return sum;
}

struct ShownWindow
{
    MainWindow window;
    TaskListWidget& list;
    FocusGroupListWidget& panel;
    PaintCounter listPaints;
    PaintCounter panelPaints;

    ShownWindow()
        : list(*window.taskList())
        , panel(*window.groupList())
        , listPaints(list.viewport())
        , panelPaints(panel.viewport())
    {
        showWindow(window);
    }

    [[nodiscard]] const QList<FocusGroupWidget*>& entries() const { return panel.entries(); }
    [[nodiscard]] qsizetype customGroup() const { return entries().size() / 2; }

    /// Whether this is the group that both panes show, with its tasks.
    [[nodiscard]] bool shows(const FocusGroup::Id& group) const
    {
        if (panel.groupId() != group || !entries().at(panel.currentIndex())->selected() ||
            list.groupId() != group || !list.rows().matches(idsOf(group)))
            return false;
        if (list.rows().count() == 0)
            return true;
        const TaskWidget* row = list.rowWidget(0);
        const QString name = taskStorage().get(list.rows().idAt(0)).name();
        return row && row->isVisible() && row->findChild<ElidedLabel*>()->text() == name;
    }

    [[nodiscard]] bool countsAll() const
    {
        return std::all_of(entries().cbegin(), entries().cend(), [](const auto* entry) {
            return shownOpen(entry) == openIn(entry->groupId());
        });
    }
};

QList<TodoTask> allTasks()
{
    TaskStorageSnapsot snapshot;
    taskStorage().takeSnapshot(snapshot);
    return snapshot.tasks();
}

/// Tells the database's groups in the labels, without Completed and Trash.
QString howGrouped()
{
    const QList<FocusGroup::Id> groups = groupIds();
    const qsizetype places =
        std::accumulate(groups.cbegin(), groups.cend(), qsizetype(0),
                        [](qsizetype sum, const auto& id) { return sum + idsOf(id).size(); });
    return u", "_s + QString::number(groups.size() - 2) + u" groups, tasks in "_s +
           QString::number(places / allTasks().size());
}

void switchGroup()
{
    ShownWindow shown;
    std::vector<double> times;
    const qsizetype groups = shown.entries().size();
    // The first is current already.
    for (qsizetype i = 1; i <= groups; ++i) {
        const FocusGroupWidget* entry = shown.entries().at(i % groups);
        const int listPaints = shown.listPaints.count();
        const int panelPaints = shown.panelPaints.count();
        const double time = settledMilliseconds([&] {
            shown.panel.setCurrentIndex(i % groups);
            shown.window.repaint();
        });
        const bool done = shown.shows(entry->groupId()) && shown.listPaints.count() > listPaints &&
                          shown.panelPaints.count() > panelPaints;
        times.push_back(done ? time : qInf());
    }
    const bool counted = shown.countsAll();
    line(u"switch to a group"_s + howGrouped(), median(times), 0, "ms");
    line(u"  the slowest of all"_s,
         counted ? *std::max_element(times.cbegin(), times.cend()) : qInf(), 50, "ms");
}

/// Each time another of the rows in view.
void complete()
{
    constexpr int perRound = 25;
    ShownWindow shown;
    shown.panel.setCurrentIndex(shown.customGroup());
    settle();
    const FocusGroupWidget* entry = shown.entries().at(shown.customGroup());
    const int height = shown.list.viewport()->height();
    qsizetype inView = 0;
    while (inView < shown.list.rows().count() && shown.list.rowRect(inView).bottom() < height)
        ++inView;
    if (inView == 0 || !shown.countsAll()) {
        line(u"complete a task: the window does not show it"_s, qInf(), 1, "ms");
        return;
    }

    PaintCounter entryPaints(shown.entries().at(shown.customGroup()));
    std::unique_ptr<PaintCounter> rowPaints;
    qsizetype row = 0;
    TodoTask::Id id;
    bool completed = false;
    qsizetype open = 0;
    int entryPaintsBefore = 0;
    const double time = medianTime(
        [&] {
            row = (row + 1) % inView;
            id = shown.list.rows().idAt(row);
            completed = isOpen(id);
            open = shownOpen(entry);
            rowPaints = std::make_unique<PaintCounter>(shown.list.rowWidget(row));
            entryPaintsBefore = entryPaints.count();
        },
        [&] { taskStorage().completeTask(id, completed, Clock::now()); },
        [&] {
            return isOpen(id) != completed && shownOpen(entry) == open + (completed ? -1 : 1) &&
                   rowPaints->count() > 0 && entryPaints.count() > entryPaintsBefore;
        },
        perRound * rounds);
    line(u"complete a task"_s + howGrouped(), shown.countsAll() ? time : qInf(), 1, "ms");
}

/// Puts a tenth of all tasks into the group, if it has not so many, whichever groups hold them.
void fill(const FocusGroup::Id& group)
{
    const QList<TodoTask> all = allTasks();
    const FocusGroup record = taskStorage().getGroup(group);
    qsizetype missing = all.size() / 10 - record.tasks().size();
    QList<TodoTask::Id> added;
    for (const TodoTask& task : all) {
        if (missing > 0 && !record.contains(task.id())) {
            added.append(task.id());
            --missing;
        }
    }
    taskStorage().addTasks(group, added);
}

/// All of a group's tasks, out of every group that holds them.
void moveToTrash()
{
    ShownWindow shown;
    const FocusGroup::Id trash = TaskStorage::ms_trashId;
    const FocusGroup::Id source = shown.entries().at(shown.customGroup())->groupId();
    const QString label = howGrouped();
    fill(source);
    const QList<TodoTask::Id> ids = idsOf(source);
    const QSet<TodoTask::Id> moved(ids.cbegin(), ids.cend());
    QHash<FocusGroup::Id, QList<TodoTask::Id>> places;
    for (const FocusGroup::Id& group : groupIds()) {
        for (const TodoTask::Id& id : idsOf(group)) {
            if (moved.contains(id))
                places[group].append(id);
        }
    }
    shown.panel.setCurrentGroup(source);
    int listPaints = 0;
    int panelPaints = 0;
    const double time = medianTime(
        [&] {
            taskStorage().moveTasks(trash, source, ids);
            for (auto place = places.cbegin(); place != places.cend(); ++place)
                taskStorage().addTasks(place.key(), place.value());
            settle();
            listPaints = shown.listPaints.count();
            panelPaints = shown.panelPaints.count();
        },
        [&] { taskStorage().moveTasks(source, trash, ids); },
        [&] {
            return idsOf(trash) == ids && idsOf(source).isEmpty() && shown.shows(source) &&
                   shown.countsAll() && shown.listPaints.count() > listPaints &&
                   shown.panelPaints.count() > panelPaints;
        });
    line(u"move "_s + QString::number(ids.size()) + u" to Trash"_s + label, time, 500, "ms");
}

/// All of a group's tasks come back from the Trash, are selected and counted.
void undoDeletion()
{
    ShownWindow shown;
    const FocusGroup::Id source = shown.entries().at(shown.customGroup())->groupId();
    const QString label = howGrouped();
    fill(source);
    const QList<TodoTask::Id> ids = idsOf(source);
    shown.panel.setCurrentGroup(source);
    const double time = medianTime(
        [&] {
            shown.list.selectAll();
            shown.list.deleteTasks();
        },
        [] { taskHistory().undo(); },
        [&] {
            return idsOf(source) == ids && shown.shows(source) && shown.countsAll() &&
                   shown.list.rows().selectedCount() == ids.size();
        });
    line(u"undo the deletion of "_s + QString::number(ids.size()) + label, time, 150, "ms");
}

constexpr std::array<Figure, 4> figures{{{"switch", switchGroup},
                                         {"complete", complete},
                                         {"move", moveToTrash},
                                         {"undo", undoDeletion}}};

bool allHoldTasks()
{
    const QList<FocusGroup::Id> groups = groupIds();
    return std::all_of(groups.cbegin(), groups.cend(), [](const FocusGroup::Id& id) {
        return id == TaskStorage::ms_completedId || id == TaskStorage::ms_trashId ||
               !idsOf(id).isEmpty();
    });
}

} // namespace

int main(int argc, char** argv)
{
    return measureFigure(argc, argv, figures, allHoldTasks);
}
