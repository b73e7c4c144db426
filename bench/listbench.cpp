// The task list's speed and memory in a real window, with a store from a database file.
// Usage: listbench [--rounds N] FIGURE DATABASE   (with DISPLAY set)
// Figures: open, memory, scroll, keystroke, select, delete, cleanup, reorder. All tasks of the
// database must be in the Inbox. Prints lines of a table. The database is copied, never written.

#include "bench/windows.h"
#include "ui/DragHelper.h"
#include "ui/TaskListWidget.h"

#include <QAbstractListModel>
#include <QDropEvent>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <boost/make_shared.hpp>

#include <array>
#include <malloc.h>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace bench;

namespace {

// References, since the identifiers may not be made yet.
const FocusGroup::Id& inbox = TaskStorage::ms_inboxId;
const FocusGroup::Id& emptyGroup = TaskStorage::ms_trashId;
constexpr QSize windowSize(600, 450);

void press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers, const QString& text = {})
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, modifiers, text);
        QCoreApplication::sendEvent(&widget, &event);
    }
}

void click(QWidget& widget, const QPoint& point, Qt::KeyboardModifiers modifiers = {})
{
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const bool down = type == QEvent::MouseButtonPress;
        QMouseEvent event(type, point, widget.mapToGlobal(QPointF(point)), Qt::LeftButton,
                          down ? Qt::LeftButton : Qt::NoButton, modifiers);
        QCoreApplication::sendEvent(&widget, &event);
    }
}

/// The list in a window of its own.
struct ShownList
{
    TaskListWidget list;
    PaintCounter paints;

    explicit ShownList(const FocusGroup::Id& group, const QPoint& place = {})
        : list(group)
        , paints(list.viewport())
    {
        list.setGeometry(QRect(place, windowSize));
        showWindow(list);
        list.setFocus();
        settle();
    }

    [[nodiscard]] qsizetype count() const { return list.rows().count(); }
    void key(int key, Qt::KeyboardModifiers modifiers = {}) { press(list, key, modifiers); }
    void scrollTo(int value)
    {
        list.verticalScrollBar()->setValue(value);
        settle();
    }
    void scrollToEnd() { scrollTo(list.verticalScrollBar()->maximum()); }
    /// A point on the row whose margin is the viewport's top: the first, when scrolled to the top.
    [[nodiscard]] static QPoint firstRow() { return {windowSize.width() / 2, 12}; }
    /// A point on the last row, when scrolled to the end.
    [[nodiscard]] QPoint lastRow() const
    {
        return {windowSize.width() / 2, list.viewport()->height() - 12};
    }

    void open(const FocusGroup::Id& group)
    {
        const int before = paints.count();
        list.setGroup(group);
        settle();
        if (paints.count() == before)
            list.viewport()->repaint();
    }
};

/// The tasks' names, held ready.
class NamesModel : public QAbstractListModel
{
public:
    NamesModel()
    {
        for (const TodoTask::Id& id : idsOf(inbox))
            m_names.append(taskStorage().get(id).name());
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_names.size());
    }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override
    {
        return role == Qt::DisplayRole ? QVariant(m_names.at(index.row())) : QVariant();
    }

private:
    QStringList m_names;
};

class TrivialDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        painter->drawText(option.rect, Qt::AlignVCenter, index.data().toString());
    }

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& /*option*/,
                                 const QModelIndex& /*index*/) const override
    {
        return {100, 26};
    }
};

/// The barest view of as many rows, which knows that they are all alike.
struct BareView
{
    QListView view;
    PaintCounter paints;

    explicit BareView(const QPoint& place)
        : paints(view.viewport())
    {
        view.setItemDelegate(new TrivialDelegate(&view));
        view.setUniformItemSizes(true);
        view.setGeometry(QRect(place, windowSize));
        showWindow(view);
    }

    void open(QAbstractItemModel* model)
    {
        const int before = paints.count();
        view.setModel(model);
        settle();
        if (paints.count() == before)
            view.viewport()->repaint();
    }
};

/// The two take turns, so that a slow moment of the machine hits both; many turns, since each is
/// over so soon. `fresh`: in new windows each time, so that no row is left over from the round
/// before.
void measureOpening(NamesModel& names, bool fresh)
{
    const QPoint beside(windowSize.width() + 50, 0);
    std::vector<double> times;
    std::vector<double> ratios;
    std::unique_ptr<ShownList> shown;
    std::unique_ptr<BareView> bare;
    for (int round = -1; round < 3 * rounds; ++round) {
        if (fresh || !shown) {
            shown = std::make_unique<ShownList>(emptyGroup);
            bare = std::make_unique<BareView>(beside);
        }
        bare->open(nullptr);
        shown->open(emptyGroup);
        const double bareTime = settledMilliseconds([&] { bare->open(&names); });
        const double time = settledMilliseconds([&] { shown->open(inbox); });
        if (round < 0)
            continue;
        times.push_back(time);
        ratios.push_back(time / bareTime);
    }
    const QString how = fresh ? u" tasks, first time"_s : u" tasks"_s;
    const QString what = u"open "_s + QString::number(names.rowCount({})) + how;
    line(what, median(times), 0, "ms");
    line(what + u" / QListView"_s, median(ratios), 2, "x");
}

void open()
{
    NamesModel names;
    measureOpening(names, false);
    measureOpening(names, true);
}

void memory()
{
    ShownList shown(emptyGroup);
    const auto used = [] {
        const auto info = mallinfo2();
        return static_cast<double>(info.uordblks + info.hblkhd) / (1024 * 1024);
    };
    const double before = used();
    shown.open(inbox);
    for (int page = 0; page < 20; ++page) {
        shown.list.verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
        settle();
    }
    shown.key(Qt::Key_A, Qt::ControlModifier);
    settle();
    line(u"memory of the list, "_s + QString::number(shown.count()) + u" tasks"_s, used() - before,
         10, "MiB");
}

void scroll()
{
    constexpr int steps = 20;
    ShownList shown(inbox);
    QScrollBar* bar = shown.list.verticalScrollBar();
    int before = 0;
    int paints = 0;
    const double time = medianTime(
        [&] {
            shown.scrollTo(bar->maximum() / 2);
            before = bar->value();
            paints = shown.paints.count();
        },
        [&] {
            for (int step = 0; step < steps; ++step) {
                bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
                settle();
            }
        },
        [&] { return bar->value() > before && shown.paints.count() >= paints + steps; });
    line(u"scroll step, "_s + QString::number(shown.count()) + u" tasks"_s, time / steps, 4, "ms");
}

void keystroke()
{
    constexpr int strokes = 20;
    ShownList shown(inbox);
    click(*shown.list.viewport(), ShownList::firstRow());
    shown.list.editTask();
    settle();
    auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    if (!field) {
        line(u"keystroke: no field has the focus"_s, qInf(), 2, "ms");
        return;
    }
    const QString name = field->text();
    const double time = medianTime(
        [&] {
            // The whole name is selected at first.
            press(*field, Qt::Key_End, {});
            while (field->text().size() > name.size())
                press(*field, Qt::Key_Backspace, {});
        },
        [&] {
            for (int stroke = 0; stroke < strokes; ++stroke) {
                press(*field, Qt::Key_X, {}, u"x"_s);
                settle();
            }
        },
        [&] {
            const TodoTask task = taskStorage().get(shown.list.rows().idAt(0));
            return task.name().size() == name.size() + strokes;
        });
    line(u"keystroke in a name, "_s + QString::number(shown.count()) + u" tasks"_s, time / strokes,
         2, "ms");
}

void selectAll()
{
    ShownList shown(inbox);
    const double time =
        medianTime([&] { click(*shown.list.viewport(), ShownList::firstRow()); },
                   [&] { shown.key(Qt::Key_A, Qt::ControlModifier); },
                   [&] { return shown.list.rows().selectedCount() == shown.count(); });
    line(u"Ctrl+A, "_s + QString::number(shown.count()) + u" tasks"_s, time, 50, "ms");
}

/// Fills the Inbox with exactly these tasks.
void putBack(ShownList& shown, const QList<TodoTask::Id>& ids)
{
    TaskStorage& store = taskStorage();
    store.moveTasks(inbox, TaskStorage::ms_trashId, ids);
    store.moveTasks(TaskStorage::ms_trashId, inbox, ids);
    shown.list.refresh();
    settle();
}

/// Selects the rows from `first` to the end by mouse.
void selectFrom(ShownList& shown, qsizetype first)
{
    const TaskRows& rows = shown.list.rows();
    const qint64 top = rows.top(first) - TaskRows::margin;
    shown.scrollTo(rows.toScroll(top, shown.list.viewport()->height()));
    click(*shown.list.viewport(), ShownList::firstRow());
    shown.scrollToEnd();
    click(*shown.list.viewport(), shown.lastRow(), Qt::ShiftModifier);
}

void deleteHalf()
{
    ShownList shown(inbox);
    const QList<TodoTask::Id> all = idsOf(inbox);
    const qsizetype kept = all.size() / 2;
    const double time = medianTime(
        [&] {
            putBack(shown, all);
            selectFrom(shown, kept);
        },
        [&] { shown.key(Qt::Key_Delete); },
        [&] { return shown.count() == kept && idsOf(inbox) == all.first(kept); });
    line(u"delete "_s + QString::number(all.size() - kept) + u" of "_s +
             QString::number(all.size()),
         time, 300, "ms");
}

void cleanUp()
{
    ShownList shown(inbox);
    const QList<TodoTask::Id> all = idsOf(inbox);
    for (qsizetype i = 0; i < all.size(); ++i)
        taskStorage().completeTask(all.at(i), i % 2 == 0, QDateTime::currentDateTime());
    const qsizetype open = all.size() / 2;
    const double time =
        medianTime([&] { putBack(shown, all); }, [&] { shown.list.cleanup(); },
                   [&] { return shown.count() == open && idsOf(inbox).size() == open; });
    line(u"clean up "_s + QString::number(all.size() - open) + u" done of "_s +
             QString::number(all.size()),
         time, 500, "ms");
}

/// Sends a drag's entry, motion and drop at one point.
void drop(QWidget& target, const QPoint& point, const QMimeData& data)
{
    QDragEnterEvent enter(point, Qt::MoveAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&target, &enter);
    QDragMoveEvent move(point, Qt::MoveAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&target, &move);
    QDropEvent dropped(point, Qt::MoveAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&target, &dropped);
}

/// From the first place to one before the last.
void reorder()
{
    ShownList shown(inbox);
    auto& drags = dynamic_singleton<DragHelper>::inst();
    const auto drag = boost::make_shared<DragGroup>(DragGroup::TasksDrag);
    const int number = drags.startDrag(drag);
    QMimeData data;
    data.setData(DragHelper::dragMimeType(), QByteArray::number(number));
    TodoTask::Id dragged;
    const double time = medianTime(
        [&] {
            shown.scrollTo(0);
            click(*shown.list.viewport(), ShownList::firstRow());
            dragged = shown.list.rows().idAt(0);
            *drag = DragGroup(DragGroup::TasksDrag);
            drag->addTask(inbox, dragged);
            shown.scrollToEnd();
        },
        [&] { drop(*shown.list.viewport(), shown.lastRow(), data); },
        [&] {
            const qsizetype place = shown.count() - 2;
            return shown.list.rows().idAt(place) == dragged && idsOf(inbox).at(place) == dragged &&
                   drag->result() == DragGroup::Reordered;
        });
    drags.dragDone(number);
    line(u"reorder one of "_s + QString::number(shown.count()), time, 16, "ms");
}

constexpr std::array<Figure, 8> figures{{{"open", open},
                                         {"memory", memory},
                                         {"scroll", scroll},
                                         {"keystroke", keystroke},
                                         {"select", selectAll},
                                         {"delete", deleteHalf},
                                         {"cleanup", cleanUp},
                                         {"reorder", reorder}}};

} // namespace

int main(int argc, char** argv)
{
    return measureFigure(argc, argv, figures, [] { return idsOf(inbox).size() >= 100; });
}
