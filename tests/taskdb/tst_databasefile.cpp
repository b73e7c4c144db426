// The database file: what is written, what is read, and what is refused and stays.

#include "app/base/Clock.h"
#include "taskdb/TaskStorageReader.h"
#include "taskdb/TaskStorageSnapsot.h"
#include "taskdb/TaskStorageWriter.h"
#include "tests/base/Files.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QBuffer>
#include <QDir>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray written(const TaskStorage& store)
{
    TaskStorageSnapsot snapshot;
    store.takeSnapshot(snapshot);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return TaskStorageWriter().write(&buffer, snapshot) ? buffer.data() : "(not written)"_ba;
}

TaskStorage::ErrorType restore(TaskStorage& store, QByteArray document)
{
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    return TaskStorageReader(&store).read(&buffer);
}

/// One row for each file of a folder, with the columns that its table has for it.
void addRows(const QString& folder)
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("expected");
    QHash<QString, QStringList> columns;
    const QString table = QString::fromUtf8(contentsOf(folder + u"/expected.tsv"_s));
    for (const QString& line : table.split(u'\n', Qt::SkipEmptyParts))
        columns.insert(line.section(u'\t', 0, 0), line.split(u'\t').mid(1));
    for (const QFileInfo& file : QDir(folder).entryInfoList({u"*.xml"_s}, QDir::Files)) {
        QTest::newRow(qPrintable(file.baseName()))
            << file.filePath() << columns.value(file.baseName());
    }
}

/// What an odd file holds besides the built-in groups: as "Group/icon:task,task", and
/// each task as "name|notes|done|due|created".
QString described(const TaskStorage& store)
{
    QStringList lines;
    TaskStorageSnapsot snapshot;
    store.takeSnapshot(snapshot);
    for (const FocusGroup& group : snapshot.groups()) {
        if (!group.isCustom())
            continue;
        QStringList names;
        for (const TodoTask::Id& id : group.tasks())
            names += store.get(id).name();
        lines += group.name() + u'/' + group.iconName() + u':' + names.join(u',');
    }
    QStringList tasks;
    const auto raw = [](qint64 time) {
        return time == TodoTask::noTime ? u"none"_s : QString::number(time);
    };
    for (const TodoTask& task : snapshot.tasks()) {
        const TodoTask::RawTimes times = task.rawTimes();
        tasks += task.name() + u'|' + task.notes() + u'|' + (task.completed() ? u"yes" : u"no") +
                 u'|' + raw(times.due) + u'|' + raw(times.created);
    }
    tasks.sort();
    return (lines + tasks).join(u';').replace(u'\n', u"\\n"_s);
}

} // namespace

class DatabaseFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// The sample has every element and attribute that there is.
    void sampleSurvivesTheRoundTrip()
    {
        const LogWatch log;
        const StoreBuilder builder(QFINDTESTDATA("../data/sample.xml"));
        QCOMPARE(builder.result, TaskStorage::NoError);
        QCOMPARE(builder.store.modification(), 0);
        // The order of the tasks is free; ours keeps the file's.
        QCOMPARE(written(builder.store), contentsOf(QFINDTESTDATA("../data/sample.xml")));
    }

    void anyTextComesBack()
    {
        const LogWatch log;
        const QString same = u" \n\na \t b\n <b>&amp;]]>\"'</b><!-- -->🎹 क्षि שלום\uE000\uFEFF "_s;
        const QList<std::pair<QString, QString>> texts{
            {same, same},
            {u"a\r\nb\rc"_s, u"a\nb\nc"_s},
            {u"a\0\x1Bz"_s, u"a\uFFFD\uFFFDz"_s},
            {u"a\xDC00\xD800z"_s, u"a\uFFFD\uFFFDz"_s},
            {u"a\xFFFE\xFFFFz"_s, u"a\uFFFD\uFFFDz"_s},
            {u"a\xD83C"_s, u"a\uFFFD"_s},
        };
        for (const auto& [text, back] : texts) {
            StoreBuilder builder;
            const FocusGroup::Id group = builder.store.createGroup(text, text);
            const FocusGroup::Id nameless = builder.store.createGroup({}, {});
            const TodoTask::Id id = builder.task(group, text);
            builder.store.attachNotesToTask(id, text);
            TaskStorage second({});
            QCOMPARE(restore(second, written(builder.store)), TaskStorage::NoError);
            QCOMPARE(second.get(id).name(), back);
            QCOMPARE(second.get(id).notes(), back);
            QCOMPARE(second.getGroup(group).iconName(), back);
            // Attributes keep carriage returns.
            QString name = second.getGroup(group).name();
            QCOMPARE(name.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n'), back);
            QCOMPARE(second.getGroup(nameless).name(), QString(QChar::ReplacementCharacter));
        }
    }

    void damagedFilesAreRefusedAndStay_data() { addRows(QFINDTESTDATA("../data/damaged")); }
    void damagedFilesAreRefusedAndStay()
    {
        QFETCH(QString, path);
        QFETCH(QStringList, expected);
        LogWatch log;
        {
            StoreBuilder builder(path, 1);
            QCOMPARE(QString::number(builder.result), expected.value(0));
            // Whatever happens to such a store, the file stays and nothing is put beside it.
            (void)builder.store.createTask(TaskStorage::ms_inboxId);
            (void)builder.store.createGroup(u"x"_s, {});
            builder.store.saveStateRequest();
            QCOMPARE(QDir(builder.folder()).entryList(QDir::Files), QStringList{u"database.xml"_s});
            QCOMPARE(contentsOf(builder.path()), contentsOf(path));
        }
        QStringList lines = log.take();
        QVERIFY(lines.size() >= 2);
        QCOMPARE(lines.takeLast(), u"Critical Database failed to load"_s);
        QVERIFY(lines.takeLast().startsWith(u"Critical Xml reader failed: "_s));
        QCOMPARE(lines.join(u'\n'), expected.value(1));
    }

    void oddFilesLoad_data() { addRows(QFINDTESTDATA("../data/odd")); }
    void oddFilesLoad()
    {
        QFETCH(QString, path);
        QFETCH(QStringList, expected);
        const LogWatch log;
        // What says nothing of its creation was created now.
        Clock::freeze(QDateTime::fromMSecsSinceEpoch(7));
        const StoreBuilder builder(path);
        Clock::release();
        QCOMPARE(builder.result, TaskStorage::NoError);
        QCOMPARE(builder.store.modification(), 0);
        QCOMPARE(QStringList{described(builder.store)}, expected);
    }

    void orphansAreRemovedAndTheRepairIsWritten()
    {
        LogWatch log;
        StoreBuilder builder(QFINDTESTDATA("../data/orphans.xml"), 1);
        QCOMPARE(builder.result, TaskStorage::NoError);
        QCOMPARE(builder.store.modification(), 1);
        QCOMPARE(described(builder.store), u"Home/:"_s);
        const QString line = u"Warning Removing orphaned task id {%1} from Home "
                             "{11111111-1111-4111-8111-111111111111}"_s;
        QCOMPARE(log.take(), (QStringList{line.arg(u"bbbbbbbb-bbbb-4bbb-8bbb-bbbbbbbbbbbb"),
                                          line.arg(u"aaaaaaaa-aaaa-4aaa-8aaa-aaaaaaaaaaaa")}));
        QTRY_VERIFY(!contentsOf(builder.path()).contains("<tid>"));
    }

    void onlyAMissingFileStartsEmpty()
    {
        LogWatch log;
        const QTemporaryDir dir;
        QDir(dir.path()).mkdir(u"folder"_s);
        QFile::link(u"/nowhere/at/all"_s, dir.filePath(u"dangling"_s));
        QFile::link(dir.filePath(u"loop"_s), dir.filePath(u"loop"_s));
        QCOMPARE(::mkfifo(QFile::encodeName(dir.filePath(u"pipe"_s)).constData(), 0600), 0);
        for (const QString& entry : {u"nothing"_s, u"no-folder/database.xml"_s}) {
            TaskStorage store(dir.filePath(entry));
            QCOMPARE(store.init(), TaskStorage::NoError);
        }
        // A folder that leads nowhere may be a volume that is not mounted.
        for (const QString& entry :
             {u"folder"_s, u"dangling"_s, u"pipe"_s, u"loop"_s, u"dangling/database.xml"_s}) {
            TaskStorage store(dir.filePath(entry));
            QCOMPARE(store.init(), TaskStorage::ReadFailure);
            QCOMPARE(log.take(), QStringList{u"Critical Database failed to load"_s});
        }
    }
};

QTEST_GUILESS_MAIN(DatabaseFileTest)
#include "tst_databasefile.moc"
