// Writes a valid database of any size.
// Usage: makedb [--tasks N] [--groups N] [--per-task-groups N] [--seed N] FILE

#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageSnapsot.h"
#include "taskdb/TaskStorageWriter.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QRandomGenerator>

#include <array>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

/// The databases' today, 2026-11-01: the same seed gives the same file on any day.
constexpr qint64 now = Q_INT64_C(1'793'534'400'000);
constexpr qint64 dayMs = Q_INT64_C(86'400'000);

QUuid randomId(QRandomGenerator& random)
{
    std::array<quint32, 4> words{};
    random.fillRange(words.data(), words.size());
    // Version 4, variant 2, as every random identifier.
    words[1] = (words[1] & 0xFFFF'0FFFU) | 0x4000U;
    words[2] = (words[2] & 0x3FFF'FFFFU) | 0x8000'0000U;
    return {words[0],
            static_cast<ushort>(words[1] >> 16),
            static_cast<ushort>(words[1]),
            static_cast<uchar>(words[2] >> 24),
            static_cast<uchar>(words[2] >> 16),
            static_cast<uchar>(words[2] >> 8),
            static_cast<uchar>(words[2]),
            static_cast<uchar>(words[3] >> 24),
            static_cast<uchar>(words[3] >> 16),
            static_cast<uchar>(words[3] >> 8),
            static_cast<uchar>(words[3])};
}

QString randomText(QRandomGenerator& random, int words)
{
    static const QStringList vocabulary{
        u"call"_s,  u"write"_s,   u"the"_s,    u"garden"_s, u"report"_s, u"before"_s, u"Friday"_s,
        u"about"_s, u"tickets"_s, u"письмо"_s, u"and"_s,    u"new"_s,    u"check"_s,  u"music"_s,
        u"bread"_s, u"with"_s,    u"Anna"_s,   u"résumé"_s, u"house"_s,  u"again"_s};
    QStringList picked;
    for (int i = 0; i < words; ++i)
        picked += vocabulary.at(random.bounded(vocabulary.size()));
    return picked.join(u' ');
}

TodoTask randomTask(QRandomGenerator& random)
{
    const bool completed = random.bounded(5) == 0;
    const QString created = QString::number(now - random.bounded(qint64{700}) * dayMs);
    const QString due = random.bounded(2) == 0
                            ? QString()
                            : QString::number(now + (random.bounded(200) - 60) * dayMs);
    const QString notes =
        random.bounded(2) == 0 ? QString() : randomText(random, 10 + random.bounded(20));
    TodoTask task;
    task.load(randomId(random).toString(), randomText(random, 3 + random.bounded(5)), notes,
              completed ? u"yes" : u"no", due, created,
              completed ? QString::number(now) : QString(), {});
    return task;
}

QList<FocusGroup> makeGroups(QRandomGenerator& random, int count)
{
    QList<FocusGroup> groups;
    for (int i = 0; i < count; ++i) {
        const QString id =
            i == 0 ? TaskStorage::ms_inboxId.toString() : randomId(random).toString();
        FocusGroup group;
        group.load(id, i == 0 ? u"Inbox"_s : QString(u"Group "_s + QString::number(i)));
        groups.append(group);
    }
    return groups;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Writes a valid database of any size."_s);
    parser.addHelpOption();
    parser.addOptions(
        {{u"tasks"_s, u"How many tasks."_s, u"N"_s, u"1000"_s},
         {u"groups"_s, u"How many groups, the Inbox included."_s, u"N"_s, u"8"_s},
         {u"per-task-groups"_s, u"In how many groups each task stands."_s, u"N"_s, u"1"_s},
         {u"seed"_s, u"Seed of the random content."_s, u"N"_s, u"1"_s}});
    parser.addPositionalArgument(u"FILE"_s, u"The database to write."_s);
    parser.process(app);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);

    const auto number = [&parser](const QString& name) {
        bool ok = false;
        const int value = parser.value(name).toInt(&ok);
        if (!ok || value < 0) {
            std::fprintf(stderr, "makedb: --%s takes a number, 0 or more\n", qPrintable(name));
            std::exit(2);
        }
        return value;
    };
    QRandomGenerator random(static_cast<quint32>(number(u"seed"_s)));
    QList<FocusGroup> groups = makeGroups(random, qMax(1, number(u"groups"_s)));
    const qsizetype perTask = qMin(qsizetype{number(u"per-task-groups"_s)}, groups.size());

    TaskStorage store({});
    for (int i = 0; i < number(u"tasks"_s); ++i) {
        const TodoTask task = randomTask(random);
        store._addTask(task);
        for (qsizetype k = 0; k < perTask; ++k)
            groups[(i + k) % groups.size()]._add(task.id());
    }
    for (const FocusGroup& group : std::as_const(groups))
        store._addGroup(group);

    TaskStorageSnapsot snapshot;
    store.takeSnapshot(snapshot);
    QFile file(parser.positionalArguments().constFirst());
    if (!file.open(QIODevice::WriteOnly) || !TaskStorageWriter().write(&file, snapshot) ||
        !file.flush()) {
        std::fprintf(stderr, "makedb: %s: %s\n", qPrintable(file.fileName()),
                     qPrintable(file.errorString()));
        return 1;
    }
    return 0;
}
