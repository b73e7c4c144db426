// Reading and writing the database file, whole, odd and damaged.

#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageReader.h"
#include "taskdb/TaskStorageSnapsot.h"
#include "taskdb/TaskStorageWriter.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QBuffer>
#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

QByteArray written(const TaskStorage& store)
{
    TaskStorageSnapsot snapshot;
    store.takeSnapshot(snapshot);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!TaskStorageWriter().write(&buffer, snapshot))
        return "(not written)";
    return buffer.data();
}

void restore(TaskStorage& store, const QByteArray& document)
{
    QBuffer buffer;
    buffer.setData(document);
    buffer.open(QIODevice::ReadOnly);
    QCOMPARE(TaskStorageReader(&store).read(&buffer), TaskStorage::NoError);
}

QString withCode(int first, int second = 0)
{
    QString text = u"a"_s + QChar(first);
    if (second != 0)
        text += QChar(second);
    return text + u'z';
}

const QString someTask = u"{aaaaaaaa-aaaa-4aaa-8aaa-aaaaaaaaaaaa}"_s;

/// What an odd file holds besides the built-in groups: "Group/icon:task,task … name|notes|done".
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
    for (const TodoTask& task : snapshot.tasks())
        tasks += task.name() + u'|' + task.notes() + u'|' + (task.completed() ? u"yes" : u"no");
    tasks.sort();
    return (lines + tasks).join(u';');
}

} // namespace

class DatabaseFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sampleSurvivesTheRoundTrip()
    {
        LogWatch log;
        const StoreBuilder builder(QFINDTESTDATA("../data/sample.xml"));
        QCOMPARE(builder.result, TaskStorage::NoError);
        QCOMPARE(builder.store.modification(), 0);
        TaskStorageSnapsot snapshot;
        builder.store.takeSnapshot(snapshot);
        QCOMPARE(snapshot.groups().size(), 8);
        QCOMPARE(snapshot.tasks().size(), 64);
        // The order of the tasks is free; ours keeps the file's.
        QCOMPARE(written(builder.store), contentOf(QFINDTESTDATA("../data/sample.xml")));
        QCOMPARE(log.take(), QStringList());
    }

    void everyFieldIsWritten()
    {
        const LogWatch log;
        TaskStorage store({});
        TodoTask task;
        task.load(someTask, u"Name"_s, u"Line 1\nLine 2"_s, u"yes", u"1000", u"2000", u"3000",
                  u"-4000");
        store._addTask(task);
        TodoTask bare;
        bare.load(u"{bbbbbbbb-bbbb-4bbb-8bbb-bbbbbbbbbbbb}", {}, {}, u"no", {}, u"5", {}, {});
        store._addTask(bare);
        FocusGroup group;
        group.load(u"{11111111-1111-4111-8111-111111111111}", u"<G&\">"_s);
        group._setIconName(u"home"_s);
        group._add(task.id());
        store._addGroup(group);
        QCOMPARE(written(store),
                 "<?xml version=\"1.0\" encoding=\"UTF-8\"?><taskdb version=\"1\"><groups>"
                 "<g name=\"&lt;G&amp;&quot;&gt;\" id=\"{11111111-1111-4111-8111-111111111111}\">"
                 "<icon>home</icon><tid>{aaaaaaaa-aaaa-4aaa-8aaa-aaaaaaaaaaaa}</tid></g></groups>"
                 "<todos><t><id>{aaaaaaaa-aaaa-4aaa-8aaa-aaaaaaaaaaaa}</id><name>Name</name>"
                 "<notes>Line 1\nLine 2</notes><completed>yes</completed><due>1000</due>"
                 "<tcrt>2000</tcrt><tcmpl>3000</tcmpl><tdel>-4000</tdel></t>"
                 "<t><id>{bbbbbbbb-bbbb-4bbb-8bbb-bbbbbbbbbbbb}</id><completed>no</completed>"
                 "<tcrt>5</tcrt></t></todos></taskdb>\n");
    }

    void anyTextComesBack_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("back");
        const QString twiceLost = u"a\uFFFD\uFFFDz"_s;
        const auto same = [](const char* name, const QString& text) {
            QTest::newRow(name) << text << text;
        };
        same("markup", u"<b>&amp;]]>\"'</b><!-- -->"_s);
        same("blanks and line breaks", u" \n\na \t b\n "_s);
        same("scripts and byte-order mark", u"🎹 क्षि שלום 日本\uE000\uFEFF"_s);
        same("long", QString(300000, u'x') + u"€"_s + QString(300000, u'й'));
        QTest::newRow("carriage return") << u"a\r\nb\rc"_s << u"a\nb\nc"_s;
        QTest::newRow("controls") << withCode(0, 0x1B) << twiceLost;
        QTest::newRow("lone surrogate") << withCode(0xD800) << u"a\uFFFDz"_s;
        QTest::newRow("reversed pair") << withCode(0xDC00, 0xD800) << twiceLost;
        QTest::newRow("noncharacters") << withCode(0xFFFE, 0xFFFF) << twiceLost;
        QTest::newRow("surrogate at the end") << u"a"_s + QChar(0xD83C) << u"a\uFFFD"_s;
    }

    void anyTextComesBack()
    {
        QFETCH(QString, text);
        QFETCH(QString, back);
        LogWatch log;
        StoreBuilder builder;
        const FocusGroup::Id group = builder.store.createGroup(text, text);
        const TodoTask::Id id = builder.task(group, text);
        builder.store.attachNotesToTask(id, text);

        TaskStorage second({});
        restore(second, written(builder.store));
        QCOMPARE(second.get(id).name(), back);
        QCOMPARE(second.get(id).notes(), back);
        QCOMPARE(second.getGroup(group).iconName(), back);
        // Attributes keep carriage returns.
        QCOMPARE(second.getGroup(group).name().replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n'),
                 back);
        QCOMPARE(second.getGroup(group).tasks().toList(), QList{id});
        QCOMPARE(log.take(), QStringList());
    }

    void versions_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<int>("error");
        QTest::newRow("leading zeros") << u"0001"_s << 0;
        QTest::newRow("beyond 32 bits") << u"4294967297"_s << 1;
        QTest::newRow("beyond 64 bits") << u"99999999999999999999999"_s << 1;
        QTest::newRow("sign") << u"+1"_s << 2;
        QTest::newRow("blank") << u" 1"_s << 2;
    }

    void versions()
    {
        QFETCH(QString, version);
        QFETCH(int, error);
        LogWatch log;
        TaskStorage store({});
        QBuffer buffer;
        buffer.setData("<taskdb version=\"" + version.toUtf8() + "\"/>");
        buffer.open(QIODevice::ReadOnly);
        QCOMPARE(int{TaskStorageReader(&store).read(&buffer)}, error);
        QCOMPARE(log.take().isEmpty(), error == 0);
    }

    void namelessGroupStaysReadable()
    {
        const LogWatch log;
        StoreBuilder builder;
        const FocusGroup::Id group = builder.store.createGroup({}, {});
        TaskStorage second({});
        restore(second, written(builder.store));
        QCOMPARE(second.getGroup(group).name(), QString(QChar::ReplacementCharacter));
    }

    void damagedFilesAreRefusedAndStay_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<QString>("reason");
        const QHash<QString, std::pair<int, QString>> special{
            {u"version-missing"_s, {2, u"Critical Database version is missing"_s}},
            {u"version-text"_s, {2, u"Critical Database version is corrupted: \"abc\""_s}},
            {u"version-negative"_s, {2, u"Critical Database version is corrupted: \"-1\""_s}},
            {u"version-empty"_s, {2, u"Critical Database version is corrupted: \"\""_s}},
            {u"version-newer"_s,
             {1,
              u"Critical Database version is not supported. (Reader ver - 1; Database ver - 2)"_s}},
        };
        const QStringList withoutAttributes{u"group-without-name"_s, u"group-without-id"_s,
                                            u"group-empty-name"_s, u"group-empty-id"_s};
        const QDir folder(QFINDTESTDATA("../data/damaged"));
        for (const QFileInfo& file : folder.entryInfoList({u"*.xml"_s}, QDir::Files)) {
            const QString name = file.baseName();
            auto [error, reason] = special.value(name, {3, QString()});
            if (withoutAttributes.contains(name))
                reason = u"Critical Group is missing attributes: name or id"_s;
            QTest::newRow(qPrintable(name)) << error << reason;
        }
    }

    void damagedFilesAreRefusedAndStay()
    {
        QFETCH(int, error);
        QFETCH(QString, reason);
        LogWatch log;
        const QString source = QFINDTESTDATA("../data/damaged/") +
                               QString::fromLatin1(QTest::currentDataTag()) + u".xml";
        const QByteArray before = contentOf(source);
        {
            StoreBuilder builder(source, 1);
            QCOMPARE(int{builder.result}, error);
            // Whatever happens to such a store, the file stays and nothing is put beside it.
            (void)builder.store.createTask(TaskStorage::ms_inboxId);
            (void)builder.store.createGroup(u"x"_s, {});
            builder.store.saveStateRequest();
            QCOMPARE(QDir(builder.folder()).entryList(QDir::Files), QStringList{u"database.xml"_s});
            QCOMPARE(contentOf(builder.path()), before);
        }
        QStringList lines = log.take();
        QVERIFY(lines.size() >= 2);
        QCOMPARE(lines.takeLast(), u"Critical Database failed to load"_s);
        QVERIFY(lines.takeLast().startsWith(u"Critical Xml reader failed: "_s));
        QCOMPARE(lines.join(u'\n'), reason);
    }

    void oddFilesLoad_data()
    {
        QTest::addColumn<QString>("content");
        const QString plants = u"Water the plants||no"_s;
        const QString both = u"Call the plumber||no;"_s + plants;
        const QString home = u"Home/:Water the plants"_s;
        const QString homeBoth = u"Home/:Water the plants,Call the plumber;"_s;
        QTest::newRow("version-zero") << home + u';' + plants;
        QTest::newRow("no-groups") << both;
        QTest::newRow("unknown-elements")
            << u"Home/home:Water the plants,Call the plumber;Call the plumber||no;"
               "Water the plants||yes"_s;
        QTest::newRow("tags-reserved")
            << homeBoth + u"Call the plumber||no;Water the plants||yes"_s;
        QTest::newRow("cdata-and-comments")
            << u"Home/home:Water <all> & every plants;"
               "Water <all> & every plants|Roses\nLilies\n<b> & mint|no"_s;
        QTest::newRow("children-any-order")
            << homeBoth + u"Call the plumber|Last notes|no;Water the plants|The fern too|yes"_s;
        QTest::newRow("tid-not-uuid") << homeBoth + both;
        QTest::newRow("group-twice")
            << u"Garden/:Call the plumber;Garden/:Call the plumber;"_s + both;
        QTest::newRow("task-twice") << u"Home/:Call the plumber;Call the plumber||no"_s;
        QTest::newRow("windows-1251") << u"Дом/:Полить цветы;Полить цветы||no"_s;
        QTest::newRow("bom") << u"Дом/:Полить цветы;Полить цветы||no"_s;
        QTest::newRow("pretty-printed")
            << u"Home/home:Water the plants,Call the plumber;"
               "Call the plumber|Ask for\n    a quote|yes;Water the plants||no"_s;
        QTest::newRow("empty-notes")
            << u"Home/:Water the plants,;Water the plants||no;|Nameless|no"_s;
        QTest::newRow("upper-case-ids") << homeBoth + both;
        QTest::newRow("doctype") << home + u';' + plants;
    }

    void oddFilesLoad()
    {
        QFETCH(QString, content);
        LogWatch log;
        const StoreBuilder builder(QFINDTESTDATA("../data/odd/") +
                                   QString::fromLatin1(QTest::currentDataTag()) + u".xml");
        QCOMPARE(builder.result, TaskStorage::NoError);
        if (QLatin1StringView(QTest::currentDataTag()) == "group-twice"_L1)
            content.replace(u"Garden/:"_s, u"Garden/party:"_s);
        QCOMPARE(described(builder.store), content);
        QCOMPARE(builder.store.modification(), 0);
        QCOMPARE(log.take(), QStringList());
    }

    void orphansAreRemovedAndTheRepairIsWritten()
    {
        LogWatch log;
        {
            StoreBuilder builder(QFINDTESTDATA("../data/odd/no-todos.xml"), 1);
            QCOMPARE(builder.result, TaskStorage::NoError);
            QCOMPARE(builder.store.modification(), 1);
            QCOMPARE(described(builder.store), u"Home/:"_s);
            const QString group = u"{11111111-1111-4111-8111-111111111111}"_s;
            QCOMPARE(log.take(),
                     (QStringList{u"Warning Removing orphaned task id "
                                  "{bbbbbbbb-bbbb-4bbb-8bbb-bbbbbbbbbbbb} from Home "_s +
                                      group,
                                  u"Warning Removing orphaned task id "_s + someTask +
                                      u" from Home "_s + group}));
            QTRY_VERIFY(!contentOf(builder.path()).contains("<tid>"));
        }
        QCOMPARE(log.take(), QStringList());
    }

    void builtInGroupsAreCreatedOrKept()
    {
        const LogWatch log;
        const StoreBuilder fresh;
        QList<FocusGroup::Id> ids;
        fresh.store.enumGroups(ids);
        QStringList names;
        for (const FocusGroup::Id& id : std::as_const(ids))
            names += fresh.store.getGroup(id).name();
        QCOMPARE(names.join(u','), u"Inbox,Completed,Trash"_s);

        StoreBuilder renamed;
        renamed.store.renameGroup(TaskStorage::ms_inboxId, u"Eingang"_s);
        TaskStorage second({});
        restore(second, written(renamed.store));
        QCOMPARE(second.getGroup(TaskStorage::ms_inboxId).name(), u"Eingang"_s);
    }

    void onlyAMissingFileStartsEmpty_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<int>("error");
        QTest::newRow("nothing") << u"nothing"_s << 0;
        QTest::newRow("no folder") << u"no-folder/database.xml"_s << 0;
        QTest::newRow("folder") << u"folder"_s << 3;
        QTest::newRow("dangling link") << u"dangling"_s << 3;
        QTest::newRow("pipe") << u"pipe"_s << 3;
        QTest::newRow("link loop") << u"loop"_s << 3;
    }

    void onlyAMissingFileStartsEmpty()
    {
        QFETCH(QString, entry);
        QFETCH(int, error);
        LogWatch log;
        const QTemporaryDir dir;
        QDir(dir.path()).mkdir(u"folder"_s);
        QFile::link(u"/nowhere/at/all"_s, dir.filePath(u"dangling"_s));
        QFile::link(dir.filePath(u"loop"_s), dir.filePath(u"loop"_s));
        QCOMPARE(::mkfifo(QFile::encodeName(dir.filePath(u"pipe"_s)).constData(), 0600), 0);
        TaskStorage store(dir.filePath(entry));
        QCOMPARE(int{store.init()}, error);
        QCOMPARE(log.take(),
                 error == 0 ? QStringList() : QStringList{u"Critical Database failed to load"_s});
    }
};

QTEST_GUILESS_MAIN(DatabaseFileTest)
#include "tst_databasefile.moc"
