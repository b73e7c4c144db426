// What the benchmarks of the interface share: a shown window, its paint events, timed actions.
#pragma once

#include "app/base/PathHelper.h"
#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "bench/figures.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QTemporaryDir>
#include <QWidget>

#include <algorithm>
#include <functional>
#include <span>
#include <vector>

namespace bench {

/// How often each figure is taken.
inline int rounds = 11;

/// Handles everything that has piled up, paint requests included.
inline void settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

/// Up to the last thing that the action has piled up.
inline double settledMilliseconds(const std::function<void()>& action)
{
    return milliseconds([&action] {
        action();
        settle();
    });
}

/// The median time of an action, each time after `restore`, which is not timed, and followed by a
/// check that it did what it is timed for; infinity if it ever did not.
inline double medianTime(const std::function<void()>& restore, const std::function<void()>& action,
                         const std::function<bool()>& done, int times = rounds)
{
    std::vector<double> taken;
    for (int round = -1; round < times; ++round) {
        restore();
        settle();
        const double time = settledMilliseconds(action);
        if (!done())
            return qInf();
        // The first round warms up.
        if (round >= 0)
            taken.push_back(time);
    }
    return median(taken);
}

inline void line(const QString& what, double figure, double limit, const char* unit)
{
    line(qPrintable(what), figure, limit, unit);
}

/// Counts the paint events of a widget.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }
    [[nodiscard]] int count() const { return m_count; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

private:
    int m_count = 0;
};

/// Returns when the window is active and painted.
inline void showWindow(QWidget& window)
{
    constexpr int patienceMs = 10'000;
    window.show();
    window.activateWindow();
    QElapsedTimer patience;
    patience.start();
    while (!window.isActiveWindow() && patience.elapsed() < patienceMs)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    settle();
}

inline QList<TodoTask::Id> idsOf(const FocusGroup::Id& group)
{
    QList<TodoTask::Id> ids;
    taskStorage().enumGroup(group, ids);
    return ids;
}

struct Figure
{
    const char* name;
    void (*measure)();
};

/// A program's whole work: FIGURE and DATABASE are its arguments. `fits`: whether the figures can
/// be taken with the store as loaded.
inline int measureFigure(int argc, char** argv, std::span<const Figure> figures, bool (*fits)())
{
    using namespace Qt::StringLiterals;
    const QTemporaryDir home;
    if (!home.isValid() || !qputenv("HOME", QFile::encodeName(home.path())))
        qFatal("no place for a home");
    const QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addOption({u"rounds"_s, u"How often each figure is taken."_s, u"N"_s, u"11"_s});
    parser.addPositionalArgument(u"FIGURE"_s, u"What to measure."_s);
    parser.addPositionalArgument(u"DATABASE"_s, u"Copied, never written."_s);
    parser.process(app);
    rounds = qMax(1, parser.value(u"rounds"_s).toInt());
    const QStringList arguments = parser.positionalArguments();
    const auto figure =
        std::find_if(figures.begin(), figures.end(), [&arguments](const Figure& candidate) {
            return QString::fromLatin1(candidate.name) == arguments.value(0);
        });
    if (arguments.size() != 2 || figure == figures.end())
        parser.showHelp(2);

    if (!QFile::copy(arguments.at(1), PathHelper::databaseFile()) ||
        dynamic_singleton<TaskCore>::inst().init() != TaskStorage::NoError)
        qFatal("the database does not load");
    if (!fits())
        qFatal("the figures need another database");
    figure->measure();
    dynamic_singleton<TaskCore>::destroy();
    return 0;
}

} // namespace bench
