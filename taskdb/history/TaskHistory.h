// Undo and redo of whatever changes the store.
#pragma once

#include "taskdb/StoreDelta.h"

#include <QObject>

#include <deque>

class TaskStorage;

/// What the user did.
enum class EAction
{
    other, ///< a change that nobody announced
    newTask,
    editTask,
    tick,
    moveTasks,
    copyTasks,
    reorderTasks,
    deleteTasks,
    cleanUp,
    starterTasks,
    pasteTasks,
    addGroup,
    editGroup,
    moveGroup,
    removeGroup,
    emptyTrash,
    bringBack,
    returnToBackup,
};

/// What is told of a step before it is taken.
struct HistoryAction
{
    EAction kind = EAction::other;
    /// Where it happens; null if in no group.
    FocusGroup::Id group = {};
    /// What to show when it is undone, besides tasks that change or change groups.
    QList<TodoTask::Id> tasks = {};
    /// Of what, for who tells of it: how many tasks, or which group.
    qsizetype count = 0;
    QString name = {};
};

/// Something was undone, redone or applied as a whole.
struct HistoryChange
{
    enum EWay
    {
        undone,
        redone,
        applied
    };

    HistoryAction action;
    EWay way = undone;
    StoreDifference difference;

    /// The group in which the change is seen best; `shown` where that will do. Null if in none.
    [[nodiscard]] FocusGroup::Id groupToShow(const TaskStorage& store,
                                             const FocusGroup::Id& shown) const;
    /// Whether tasks have changed or come there.
    [[nodiscard]] bool isSeenIn(const FocusGroup& group) const;
    /// Those of the changed tasks that this group holds now.
    [[nodiscard]] QSet<TodoTask::Id> tasksToSelect(const TaskStorage& store,
                                                   const FocusGroup::Id& group) const;
};

/// Keeps what each of the last changes has replaced. A change between begin() and end() is part of
/// one step, any other is a step of its own, and what in the end changed nothing is none. Interface
/// thread; the store outlives it.
class TaskHistory : public QObject, private StoreJournal
{
    Q_OBJECT

public:
    /// `maxSteps`: how many steps can be undone; older ones are forgotten.
    explicit TaskHistory(TaskStorage& store, size_t maxSteps = 256);
    ~TaskHistory() override;
    Q_DISABLE_COPY_MOVE(TaskHistory)

    /// What changes from now on belongs to this step. A step begun within another one interrupts
    /// it: what comes after the inner one is a further step of the outer one's kind.
    void begin(const HistoryAction& action);
    void end();
    /// Makes one step of it; the delta holds what is to become. HistoryStep is no help there: going
    /// back to other content is no operation of the store.
    void apply(const HistoryAction& action, const StoreDelta& delta);

    /// Changes of the step that is running count as one.
    [[nodiscard]] size_t undoCount() const { return m_done.size() + (_changesNow() ? 1 : 0); }
    [[nodiscard]] bool canUndo() const { return undoCount() > 0; }
    [[nodiscard]] bool canRedo() const { return !m_undone.empty(); }
    /// What undo() would undo, and redo() redo.
    [[nodiscard]] EAction actionToUndo() const;
    [[nodiscard]] EAction actionToRedo() const;
    /// To be called outside of any step. Each does nothing where there is nothing to do.
    void undo();
    void redo();

Q_SIGNALS:
    /// The store was changed. With the store's lock held, for every single change.
    void touched();
    /// Another step begins within the one that is running.
    void interrupting();
    /// A step is complete. Not told of those that apply() makes.
    void stepDone(const HistoryAction& action);
    /// undo(), redo() or apply() have changed the store, also groups, of which it tells nothing.
    void replacedContent(const HistoryChange& change);

private:
    struct Step
    {
        HistoryAction action;
        StoreDelta delta;
    };

    void changeCounted() override;
    void _cut();
    [[nodiscard]] bool _changesNow() const;
    void _push(const Step& step);
    void _exchange(std::deque<Step>& from, std::deque<Step>& to, HistoryChange::EWay way);

    TaskStorage& m_store;
    size_t m_maxSteps;
    QList<HistoryAction> m_running; // the innermost last
    std::deque<Step> m_done;        // the latest last
    std::deque<Step> m_undone;
    bool m_exchanging = false;
};

/// A step for as long as the object lives.
class HistoryStep
{
public:
    HistoryStep(TaskHistory& history, const HistoryAction& action)
        : m_history(history)
    {
        m_history.begin(action);
    }
    ~HistoryStep() { m_history.end(); }
    Q_DISABLE_COPY_MOVE(HistoryStep)

private:
    TaskHistory& m_history;
};
