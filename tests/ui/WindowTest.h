// The program's window on a real store, for tests that work with it as a user does.
#pragma once

#include "app/base/Clock.h"
#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "tests/support/LogWatch.h"
#include "tests/support/TemporaryHome.h"
#include "ui/ActionsHelper.h"
#include "ui/ElidedLabel.h"
#include "ui/FocusGroupListWidget.h"
#include "ui/FocusGroupWidget.h"
#include "ui/MainWindow.h"
#include "ui/TaskListWidget.h"
#include "ui/TaskWidget.h"

#include <QTest>

#include <functional>
#include <memory>

/// Every test function starts with a fresh window on an empty store, on 22 November 2026 at noon.
class WindowTest : public QObject
{
    Q_OBJECT

protected:
    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<LogWatch> m_log;
    std::unique_ptr<MainWindow> m_window;

    TaskStorage& store() { return *dynamic_singleton<TaskCore>::inst().storage(); }
    TaskListWidget& list() { return *m_window->taskList(); }
    FocusGroupListWidget& panel() { return *m_window->groupList(); }
    FocusGroupWidget* entry(qsizetype number) { return panel().entries().at(number); }
    TaskWidget* row(qsizetype number) { return list().rowWidget(number); }
    TodoTask task(qsizetype number) { return store().get(list().rows().idAt(number)); }

    void addTasks(const QStringList& names, const FocusGroup::Id& group = TaskStorage::ms_inboxId)
    {
        for (const QString& name : names)
            store().renameTask(store().createTask(group), name);
        QCoreApplication::processEvents();
    }

    void addNumberedTasks(int count)
    {
        QStringList names;
        for (int i = 0; i < count; ++i)
            names += QString::number(i);
        addTasks(names);
    }

    QString namesIn(const FocusGroup::Id& group)
    {
        QList<TodoTask::Id> ids;
        store().enumGroup(group, ids);
        QStringList names;
        for (const TodoTask::Id& id : std::as_const(ids))
            names += store().get(id).name();
        return names.join(u',');
    }

    QString inbox() { return namesIn(TaskStorage::ms_inboxId); }

    QString selected()
    {
        QStringList names;
        for (qsizetype i = 0; i < list().rows().count(); ++i) {
            if (list().rows().isSelected(i))
                names += task(i).name();
        }
        return names.join(u',');
    }

    /// The rows as the list shows them.
    QString shown()
    {
        QStringList names;
        for (qsizetype i = 0; i < list().rows().count(); ++i)
            names += row(i)->findChild<ElidedLabel*>()->text();
        return names.join(u',');
    }

    /// The groups as the panel shows them.
    QString groups()
    {
        QStringList names;
        for (const FocusGroupWidget* one : panel().entries())
            names += one->group().name();
        return names.join(u',');
    }

    QPoint middleOf(qsizetype number)
    {
        return row(number)->mapTo(list().viewport(), row(number)->rect().center());
    }

    void click(qsizetype number, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, modifiers, middleOf(number));
    }

    QPoint emptySpace() { return {20, list().viewport()->height() - 10}; }

    void keys(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
    void key(Qt::Key which, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), which, modifiers);
    }
    /// Starts editing a row by a double click on it.
    void edit(qsizetype number)
    {
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, middleOf(number));
    }
    /// In the place of the one there is.
    void openWindow()
    {
        m_window.reset();
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTRY_VERIFY(listHasFocus());
    }
    bool listHasFocus() { return QApplication::focusWidget() == &list(); }

protected Q_SLOTS:
    void init()
    {
        Clock::freeze(QDateTime(QDate(2026, 11, 22), QTime(12, 0)));
        m_home = std::make_unique<TemporaryHome>();
        m_log = std::make_unique<LogWatch>();
        dynamic_singleton<ProgramSettings>::inst().dateFormat = QStringLiteral("dd.MM.yyyy");
        QCOMPARE(dynamic_singleton<TaskCore>::inst().init(), TaskStorage::NoError);
        openWindow();
    }

    void cleanup()
    {
        m_window.reset();
        dynamic_singleton<TaskCore>::destroy();
        dynamic_singleton<ActionsHelper>::destroy();
        dynamic_singleton<ProgramSettings>::destroy();
        m_log.reset();
        m_home.reset();
        Clock::release();
    }
};
