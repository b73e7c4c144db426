// The core's speed and memory, as ratios against the bare work in the same run.
// Usage: bench_core DATABASE

#include "app/base/CSafeFileUpdate.h"
#include "app/base/Clock.h"
#include "app/base/LogHelper.h"
#include "bench/figures.h"
#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageReader.h"
#include "taskdb/TaskStorageSnapsot.h"
#include "taskdb/TaskStorageWriter.h"
#include "taskdb/history/TaskHistory.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <malloc.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;
using namespace bench;

namespace {

QString databasePath;

bool load(TaskStorage& store)
{
    QFile file(databasePath);
    return file.open(QIODevice::ReadOnly) &&
           TaskStorageReader(&store).read(&file) == TaskStorage::NoError;
}

/// The benchmarks' store, loaded once.
TaskStorage& loadedStore()
{
    static auto* store = [] {
        auto* fresh = new TaskStorage({});
        if (!load(*fresh))
            qFatal("the database does not load");
        return fresh;
    }();
    return *store;
}

const QList<TodoTask::Id>& taskIds()
{
    static const QList<TodoTask::Id> ids = [] {
        TaskStorageSnapsot snapshot;
        loadedStore().takeSnapshot(snapshot);
        QList<TodoTask::Id> all;
        for (const TodoTask& task : snapshot.tasks())
            all.append(task.id());
        std::shuffle(all.begin(), all.end(), QRandomGenerator(3));
        return all;
    }();
    return ids;
}

void tokenLoop()
{
    QFile file(databasePath);
    file.open(QIODevice::ReadOnly);
    QXmlStreamReader reader(&file);
    while (!reader.atEnd())
        benchmark::DoNotOptimize(reader.readNext());
}

void loadDatabase()
{
    // Kept to the end: a program loads into a fresh heap, not into one that a store was freed from.
    static std::vector<std::unique_ptr<TaskStorage>> kept;
    kept.push_back(std::make_unique<TaskStorage>(QString()));
    if (!load(*kept.back()))
        qFatal("the database does not load");
}

/// Every string of the document, as the bare loop writes them.
struct Strings
{
    struct Element
    {
        QString name;
        QString text;
        bool opens = false;
        bool closes = false;
        QXmlStreamAttributes attributes;
    };
    QList<Element> elements;

    Strings()
    {
        QFile file(databasePath);
        file.open(QIODevice::ReadOnly);
        QXmlStreamReader reader(&file);
        while (!reader.atEnd()) {
            const auto token = reader.readNext();
            if (token == QXmlStreamReader::StartElement) {
                elements.append({reader.name().toString(), {}, true, false, reader.attributes()});
            } else if (token == QXmlStreamReader::Characters) {
                elements.last().text += reader.text();
            } else if (token == QXmlStreamReader::EndElement) {
                if (elements.constLast().opens && !elements.constLast().closes)
                    elements.last().closes = true;
                else
                    elements.append({{}, {}, false, true, {}});
            }
        }
    }
};

void writerLoop()
{
    static const Strings strings;
    static const QTemporaryDir dir;
    QFile file(dir.filePath(u"bare.xml"_s));
    file.open(QIODevice::WriteOnly);
    QXmlStreamWriter writer(&file);
    writer.writeStartDocument();
    for (const Strings::Element& element : strings.elements) {
        if (!element.opens) {
            writer.writeEndElement();
        } else if (element.closes && element.attributes.isEmpty()) {
            writer.writeTextElement(element.name, element.text);
        } else {
            writer.writeStartElement(element.name);
            writer.writeAttributes(element.attributes);
            if (element.closes)
                writer.writeEndElement();
        }
    }
    writer.writeEndDocument();
}

/// What the commit thread does with its snapshot: write, sync to the disk, swap.
void commitDatabase()
{
    static const QTemporaryDir dir;
    TaskStorageSnapsot snapshot;
    loadedStore().takeSnapshot(snapshot);
    const SafeWriteResult result =
        replaceFileSafely(dir.filePath(u"database.xml"_s), [&snapshot](QIODevice& device) {
            return TaskStorageWriter().write(&device, snapshot);
        });
    if (result.state != ESafeWrite::done)
        qFatal("the commit failed");
}

/// What a store does to save itself, from the lock to the file and, if asked for, to the backup:
/// each time that of another day, which is the dearest.
void saveStore(bool backups)
{
    static const QTemporaryDir dir;
    const QString path = dir.filePath(backups ? u"with.xml"_s : u"without.xml"_s);
    static std::map<bool, std::unique_ptr<TaskStorage>> stores;
    std::unique_ptr<TaskStorage>& store = stores[backups];
    if (!store) {
        QFile::copy(databasePath, path);
        store = std::make_unique<TaskStorage>(path);
        store->setBackups(backups);
        if (store->init() != TaskStorage::NoError)
            qFatal("the database does not load");
    }
    static qint64 now = Clock::nowMs();
    constexpr qint64 day = 86'400'000;
    Clock::freeze(QDateTime::fromMSecsSinceEpoch(now += day));
    (void)store->createTask(TaskStorage::ms_inboxId);
    store->saveStateRequest();
    Clock::release();
}

void saveWithBackups()
{
    saveStore(true);
}

void saveWithoutBackups()
{
    saveStore(false);
}

/// The median ratio of the times of two functions that take turns, so that a slow moment of the
/// machine hits both.
double pairedRatio(const char* name, void (*measured)(), void (*bare)())
{
    constexpr int rounds = 11;
    std::vector<double> ratios;
    std::vector<double> times;
    bare();
    measured();
    for (int round = 0; round < rounds; ++round) {
        const double bareTime = milliseconds(bare);
        times.push_back(milliseconds(measured));
        ratios.push_back(times.back() / bareTime);
    }
    std::printf("%-28s %8.0f ms (median of %d)\n", name, median(times), rounds);
    return median(ratios);
}

void takeSnapshot(benchmark::State& state)
{
    TaskStorageSnapsot snapshot;
    for (auto _ : state)
        loadedStore().takeSnapshot(snapshot);
}

/// The worst change right after a snapshot: a task into the largest group.
void changeAfterSnapshot(benchmark::State& state)
{
    TaskStorage& store = loadedStore();
    TaskStorageSnapsot snapshot;
    for (auto _ : state) {
        state.PauseTiming();
        store.takeSnapshot(snapshot);
        benchmark::DoNotOptimize(snapshot.tasks().size());
        state.ResumeTiming();
        benchmark::DoNotOptimize(store.createTask(TaskStorage::ms_inboxId));
    }
}

/// Other names for tasks from all over the store.
void rename(benchmark::State& state, const std::function<void(TodoTask::Id, const QString&)>& edit)
{
    const QList<TodoTask::Id>& ids = taskIds();
    const std::array<QString, 2> names{u"One name"_s, u"Another name"_s};
    qsizetype i = 0;
    for (auto _ : state) {
        const qsizetype round = i / ids.size();
        edit(ids.at(i % ids.size()), names.at(static_cast<size_t>(round & 1)));
        ++i;
    }
}

void renameTask(benchmark::State& state)
{
    TaskStorage& store = loadedStore();
    rename(state,
           [&store](const TodoTask::Id& id, const QString& name) { store.renameTask(id, name); });
}

void renameAndKeep(benchmark::State& state)
{
    TaskStorage& store = loadedStore();
    TaskHistory history(store);
    rename(state, [&](const TodoTask::Id& id, const QString& name) {
        const HistoryStep step(history, {EAction::editTask, TaskStorage::ms_inboxId, {}});
        store.renameTask(id, name);
    });
}

void completeTask(benchmark::State& state)
{
    TaskStorage& store = loadedStore();
    const QList<TodoTask::Id>& ids = taskIds();
    const QDateTime time = Clock::now();
    qsizetype i = 0;
    for (auto _ : state) {
        store.completeTask(ids.at(i % ids.size()), (i / ids.size()) % 2 == 0, time);
        ++i;
    }
}

void addTask(benchmark::State& state)
{
    TaskStorage store({});
    load(store);
    for (auto _ : state)
        benchmark::DoNotOptimize(store.createTask(TaskStorage::ms_inboxId));
}

double usedHeap()
{
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

/// Mebibytes that 200 steps keep, each a new task in the largest group and its name: the dearest.
double historyMemory()
{
    TaskStorage& store = loadedStore();
    const auto edit = [&store] {
        for (int i = 0; i < 200; ++i)
            store.renameTask(store.createTask(TaskStorage::ms_inboxId), u"A new task"_s);
    };
    edit();
    const double before = usedHeap();
    edit();
    const double without = usedHeap();
    TaskHistory history(store, 400);
    edit();
    return (usedHeap() - without - (without - before)) / (1024 * 1024);
}

/// Bytes on the heap of a loaded store, against the bytes of the texts in it.
std::pair<double, double> memory()
{
    const double before = usedHeap();
    TaskStorage store({});
    load(store);
    const double after = usedHeap();
    TaskStorageSnapsot snapshot;
    store.takeSnapshot(snapshot);
    qsizetype characters = 0;
    for (const TodoTask& task : snapshot.tasks())
        characters += task.name().size() + task.notes().size();
    return {after - before, static_cast<double>(characters * 2)};
}

/// Collects the results, in milliseconds of processor time.
class Collector : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration)
                continue;
            m_ms[run.run_name.function_name] =
                run.cpu_accumulated_time / static_cast<double>(run.iterations) * 1e3;
        }
        ConsoleReporter::ReportRuns(runs);
    }

    [[nodiscard]] double ms(const std::string& name) const
    {
        const auto found = m_ms.find(name);
        return found == m_ms.end() ? 0 : found->second;
    }

private:
    std::map<std::string, double> m_ms;
};

struct Named
{
    const char* name;
    void (*function)(benchmark::State&);
};

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::fputs("usage: bench_core [benchmark options] DATABASE\n", stderr);
        return 2;
    }
    databasePath = QString::fromLocal8Bit(argv[1]);
    const double loadRatio = pairedRatio("load", loadDatabase, tokenLoop);
    const auto [heap, text] = memory();
    (void)taskIds();

    const double commitRatio = pairedRatio("commit", commitDatabase, writerLoop);
    const double backupRatio =
        pairedRatio("save with backups", saveWithBackups, saveWithoutBackups);

    for (const auto& [name, function] :
         std::initializer_list<Named>{{"takeSnapshot", takeSnapshot},
                                      {"renameTask", renameTask},
                                      {"renameAndKeep", renameAndKeep},
                                      {"completeTask", completeTask},
                                      {"addTask", addTask}})
        benchmark::RegisterBenchmark(name, function)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("changeAfterSnapshot", changeAfterSnapshot)
        ->Unit(benchmark::kMicrosecond)
        ->Iterations(50);
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);

    std::printf("\n%lld tasks, %lld bytes of XML\n", static_cast<long long>(taskIds().size()),
                static_cast<long long>(QFile(databasePath).size()));
    line("load / bare token loop", loadRatio, 1.3, "x");
    line("commit / bare writer loop", commitRatio, 1.3, "x");
    line("save with backups / without", backupRatio, 1.1, "x");
    line("snapshot under the lock", collector.ms("takeSnapshot"), 1, "ms");
    line("first change after a snapshot", collector.ms("changeAfterSnapshot"), 10, "ms");
    line("store memory / text it holds (UTF-16)", heap / text, 3, "x");
    line("rename", collector.ms("renameTask") * 1e3, 3, "us");
    line("rename and keep a step - rename",
         (collector.ms("renameAndKeep") - collector.ms("renameTask")) * 1e3, 3, "us");
    line("200 steps, heap", historyMemory(), 12, "MiB");
    line("complete", collector.ms("completeTask") * 1e3, 3, "us");
    line("add", collector.ms("addTask") * 1e3, 3, "us");
    return 0;
}
