// What a text finds among the tasks, and in which order.

#include "app/base/Clock.h"
#include "taskdb/search/TaskQuery.h"
#include "taskdb/search/TaskSearch.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class SearchTest : public QObject
{
    Q_OBJECT

    /// The complete outcome of a search, as names.
    static QString found(TaskStorage& store, TaskSearch& search, const QString& text)
    {
        QSignalSpy spy(&search, &TaskSearch::found);
        search.start(text);
        QStringList names;
        while (names.isEmpty() && (!spy.isEmpty() || spy.wait())) {
            const QList<QVariant> last = spy.takeLast();
            if (!last.at(1).toBool())
                continue;
            for (const TodoTask::Id& id : last.at(0).value<QList<TodoTask::Id>>())
                names += store.get(id).name();
            break;
        }
        return names.join(u',');
    }

private Q_SLOTS:
    /// What matches is marked by brackets; none: it does not match.
    void matches_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("marked");
        const auto row = [](const QString& text, const QString& name, const QString& marked) {
            QTest::newRow(qPrintable(text + u'/' + name)) << text << name << marked;
        };
        row(u"MILK buy"_s, u"Buy almond milk"_s, u"[Buy] almond [milk]"_s);
        row(u"milk beer"_s, u"Buy milk"_s, {});
        row(u"еще"_s, u"ЕЩЁ раз"_s, u"[ЕЩЁ] раз"_s);
        row(u"ёлка"_s, u"елка"_s, u"[елка]"_s);
        row(u"ä"_s, u"a\u0308a"_s, u"[a\u0308a]"_s);
        row(u"resume"_s, u"Résumé"_s, u"[Résumé]"_s);
        row(u"мои"_s, u"мой"_s, {});
        row(u"МОЙ"_s, u"мои\u0306 дом"_s, u"[мои\u0306] дом"_s);
        row(u"각"_s, u"가"_s, {});
        row(u"σ"_s, u"ς"_s, u"[ς]"_s);
        row(u"😀"_s, u"so 😀!"_s, u"so [😀]!"_s);
        row(u"aba ba"_s, u"xababa"_s, u"x[ababa]"_s);
        row(u"\u00A0 \t"_s, u"blank"_s, {});
        row(u"soft"_s, u"so\u00ADft"_s, u"[so\u00ADft]"_s);
    }
    void matches()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, name);
        QFETCH(const QString, marked);
        const TaskQuery query(text);
        QCOMPARE(query.match(name) != TaskQuery::NoMatch, !marked.isEmpty());
        if (marked.isEmpty())
            return;
        QString result = name;
        const QList<TaskQuery::Range> ranges = query.ranges(name);
        for (qsizetype i = ranges.size() - 1; i >= 0; --i) {
            result.insert(ranges.at(i).start + ranges.at(i).length, u']');
            result.insert(ranges.at(i).start, u'[');
        }
        QCOMPARE(result, marked);
    }

    void ranks()
    {
        const TaskQuery query(u"  new  car "_s);
        QCOMPARE(query.match(u" New\tcars"_s), TaskQuery::StartsName);
        QCOMPARE(query.match(u"A car, (new)"_s), TaskQuery::StartsWords);
        QCOMPARE(query.match(u"newcar"_s), TaskQuery::Elsewhere);
        QCOMPARE(query.match(u"scar car renew new"_s), TaskQuery::StartsWords);
        QCOMPARE(query.match(u"New"_s, u"by car"_s), TaskQuery::Elsewhere);
        QCOMPARE(query.match(u"New"_s), TaskQuery::NoMatch);
        QCOMPARE(query.placeInNotes(u"New"_s, u"ne\u0301w by car"_s), 8);
        QCOMPARE(query.placeInNotes(u"new car"_s, u"new car"_s), -1);
    }

    void order()
    {
        StoreBuilder builder;
        TaskStorage& store = builder.store;
        const FocusGroup::Id inbox = TaskStorage::ms_inboxId;
        const FocusGroup::Id other = store.createGroup(u"Other"_s, {});
        const auto addDue = [&](const QString& name, const FocusGroup::Id& group, int days) {
            const TodoTask::Id id = builder.task(group, name);
            if (days >= 0)
                store.setTaskDueTime(id, QDate(2026, 1, 1).addDays(days).startOfDay());
            return id;
        };
        store.removeTask(inbox, addDue(u"key trashed"_s, inbox, 1), false);
        store.removeTask(inbox, addDue(u"key in no group"_s, inbox, 1), true);
        store.completeTask(addDue(u"key done"_s, inbox, 1), true, Clock::now());
        addDue(u"monkey"_s, inbox, 0);
        addDue(u"a key late"_s, inbox, 9);
        addDue(u"a key soon"_s, other, 3);
        addDue(u"key 1"_s, inbox, -1);
        addDue(u"key 2"_s, inbox, -1);
        const TodoTask::Id kept = addDue(u"key kept"_s, other, 2);
        store.addTask(TaskStorage::ms_trashId, kept);
        store.attachNotesToTask(addDue(u"noted"_s, other, -1), u"the key"_s);

        TaskSearch search(store);
        QCOMPARE(found(store, search, u"KEY"_s),
                 u"key kept,key 1,key 2,a key soon,a key late,monkey,noted,key done,key trashed"_s);
        store.renameTask(kept, u"lock"_s);
        QCOMPARE(found(store, search, u"kept"_s), QString());
        QCOMPARE(found(store, search, u"LOCK"_s), u"lock"_s);
    }

    /// Only the last of many is answered, in batches that grow, each with the best first.
    void newerTextEndsOlder()
    {
        constexpr int count = 2000;
        StoreBuilder builder;
        for (int i = 0; i < count; ++i) {
            const TodoTask::Id id = builder.task(TaskStorage::ms_inboxId, u"task"_s);
            builder.store.setTaskDueTime(id, QDate(2026, 1, 1).addDays(-i).startOfDay());
        }
        TaskSearch search(builder.store);
        QSignalSpy spy(&search, &TaskSearch::found);
        for (const QString& text : {u""_s, u"t"_s, u"none"_s, u"ta"_s, u"k"_s})
            search.start(text);
        const auto isComplete = [&spy] { return !spy.isEmpty() && spy.last().at(1).toBool(); };
        QTRY_VERIFY(isComplete());
        QVERIFY(spy.size() > 1);
        for (const QList<QVariant>& one : std::as_const(spy)) {
            const auto ids = one.at(0).value<QList<TodoTask::Id>>();
            QCOMPARE(ids.size(), one.at(1).toBool() ? count : 200);
            const auto due = [&](const TodoTask::Id& id) {
                return builder.store.get(id).timeDue();
            };
            QVERIFY(std::is_sorted(ids.cbegin(), ids.cend(),
                                   [&](const auto& a, const auto& b) { return due(a) < due(b); }));
        }
    }
};

QTEST_GUILESS_MAIN(SearchTest)
#include "tst_search.moc"
