// The search's speed in the real window, with a store from a database file.
// Usage: findbench [--rounds N] find DATABASE   (with DISPLAY set)
// Types words of makedb's vocabulary. Prints lines of a table. The database is copied, never
// written.

#include "bench/windows.h"
#include "taskdb/search/TaskSearch.h"
#include "ui/MainWindow.h"
#include "ui/TaskListWidget.h"
#include "ui/find/FindPanel.h"
#include "ui/find/ResultList.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

#include <array>

using namespace Qt::StringLiterals;
using namespace bench;

namespace {

const QStringList& texts()
{
    static const QStringList all{u"report"_s, u"письмо а"_s, u"an gard be"_s, u"e"_s, u"resumé!"_s};
    return all;
}

double elapsedMs(const QElapsedTimer& since)
{
    return double(since.nsecsElapsed()) / 1'000'000;
}

/// The longest time for which the event loop did not come round.
class HoldWatch
{
public:
    HoldWatch()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            m_longest = std::max(m_longest, elapsedMs(m_since));
            m_since.restart();
        });
        m_since.start();
        m_timer.start(0);
    }
    [[nodiscard]] double longest() const { return m_longest; }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    double m_longest = 0;
};

QList<Command> noCommands()
{
    return {};
}

QWidget* paneOf(const MainWindow& window)
{
    return window.taskList()->parentWidget();
}

/// The panel over the window's task list.
struct ShownPanel
{
    FindPanel panel;
    QLineEdit* field = panel.findChild<QLineEdit*>();
    ResultList* list = panel.findChild<ResultList*>();
    PaintCounter paints{list->viewport()};
    int answers = 0;
    int paintsBefore = 0;
    bool complete = false;

    explicit ShownPanel(const MainWindow& window)
        : panel(FindPanel::Everything, noCommands, paneOf(window))
    {
        panel.setAttribute(Qt::WA_DeleteOnClose, false);
        QObject::connect(panel.findChild<TaskSearch*>(), &TaskSearch::found, &panel,
                         [this](const QList<TodoTask::Id>& /*ids*/, bool last) {
                             if (++answers == 1)
                                 paintsBefore = paints.count();
                             complete = last;
                         });
        waitUntil([this] { return complete; });
    }

    static void waitUntil(const std::function<bool()>& done)
    {
        while (!done())
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }

    void type(const QString& text)
    {
        QKeyEvent event(QEvent::KeyPress, 0, {}, text);
        answers = 0;
        complete = false;
        QCoreApplication::sendEvent(field, &event);
    }

    /// Whether what the first answer brought has been painted.
    [[nodiscard]] bool isPainted() const { return answers > 0 && paints.count() > paintsBefore; }
};

/// What a round of typing takes, one value for each key.
struct Times
{
    std::vector<double> first; // infinite where nothing was found
    std::vector<double> all;
    double hold = 0;
};

Times typeText(ShownPanel& shown, const QString& text)
{
    shown.field->clear();
    settle();
    Times times;
    const HoldWatch watch;
    for (const QChar letter : text) {
        QElapsedTimer since;
        since.start();
        shown.type(letter);
        ShownPanel::waitUntil([&shown] { return shown.isPainted(); });
        times.first.push_back(shown.list->count() > 0 ? elapsedMs(since) : qInf());
        ShownPanel::waitUntil([&shown] { return shown.complete; });
        settle();
        times.all.push_back(elapsedMs(since));
    }
    times.hold = watch.longest();
    return times;
}

/// The slowest key's median over all rounds.
double slowest(const std::vector<Times>& taken, std::vector<double> Times::*figure)
{
    double result = 0;
    for (std::size_t key = 0; key < (taken.front().*figure).size(); ++key) {
        std::vector<double> times;
        for (const Times& round : taken)
            times.push_back((round.*figure)[key]);
        if (const double time = median(times); qIsFinite(time))
            result = std::max(result, time);
    }
    return result;
}

void find()
{
    MainWindow window;
    showWindow(window);
    const auto done = [] { return true; };
    const double open = medianTime([] {}, [&window] { const ShownPanel shown(window); }, done);
    // Nothing of it may wait for the thread that is reading the store.
    const double openAndClose = medianTime(
        [] {},
        [&window] { const FindPanel panel(FindPanel::Everything, noCommands, paneOf(window)); },
        done);
    ShownPanel shown(window);
    double slowestFirst = 0;
    double slowestAll = 0;
    std::vector<double> holds;
    for (const QString& text : texts()) {
        std::vector<Times> taken;
        for (int round = -1; round < rounds; ++round) {
            const Times times = typeText(shown, text);
            // The first round warms up.
            if (round < 0)
                continue;
            taken.push_back(times);
            holds.push_back(times.hold);
        }
        slowestFirst = std::max(slowestFirst, slowest(taken, &Times::first));
        slowestAll = std::max(slowestAll, slowest(taken, &Times::all));
    }
    line("open the search, ready for words", open, 0, "ms");
    line("open it and close it at once", openAndClose, 8, "ms");
    line("key to first results, the slowest", slowestFirst, 16, "ms");
    line("key to all results, the slowest", slowestAll, 120, "ms");
    line("  longest hold of the interface, median", median(holds), 8, "ms");
    line("  the longest of all", *std::max_element(holds.cbegin(), holds.cend()), 8, "ms");
}

constexpr std::array<Figure, 1> figures{{{"find", find}}};

bool hasTasks()
{
    return !idsOf(TaskStorage::ms_inboxId).isEmpty();
}

} // namespace

int main(int argc, char** argv)
{
    return measureFigure(argc, argv, figures, hasTasks);
}
