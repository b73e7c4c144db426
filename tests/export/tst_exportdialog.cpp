// The export dialog, used as a user does, on a real store.
#include "app/base/ProductHelper.h"
#include "app/base/Prompt.h"
#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "taskdb/export/ExportDialog.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"
#include "tests/support/TemporaryHome.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QUrl>

#include <cerrno>
#include <memory>

using namespace Qt::StringLiterals;

class TestExportDialog : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void open(const QUrl& url) { m_opened += url; }

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TemporaryHome>();
        m_log = std::make_unique<LogWatch>();
        QCOMPARE(dynamic_singleton<TaskCore>::inst().init(), TaskStorage::NoError);
        QDesktopServices::setUrlHandler(u"file"_s, this, "open");
        Prompt::setSaveAnswerer([this](const Prompt::SaveQuestion& question) {
            m_saveQuestion = question;
            return m_path;
        });
        Prompt::setAnswerer([this](const Prompt::Question& question) {
            m_messages += question;
            return QMessageBox::Ok;
        });
        m_work = taskStorage().createGroup(u"<b>Work</b>"_s, u"money"_s);
        m_empty = taskStorage().createGroup(u"Empty"_s, {});
        const FocusGroup::Id inbox = TaskStorage::ms_inboxId;
        taskStorage().renameTask(taskStorage().createTask(inbox), u"Buy milk"_s);
        m_task = taskStorage().createTask(m_work);
        taskStorage().renameTask(m_task, u"Café"_s);
    }
    void cleanup()
    {
        delete dialog();
        dynamic_singleton<TaskCore>::destroy();
        QDesktopServices::unsetUrlHandler(u"file"_s);
        Prompt::setAnswerer({});
        Prompt::setSaveAnswerer({});
        m_messages.clear();
        m_opened.clear();
        m_path.clear();
        m_log.reset();
        m_home.reset();
    }

    // One letter per group in the order Inbox, Work, Empty, Completed, Trash: x checked,
    // - unchecked, . disabled; then whether all, none and export can be pressed.
    void checks_data()
    {
        QTest::addColumn<int>("current");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("state");
        QTest::newRow("all") << -1 << u""_s << u"xx... none export"_s;
        QTest::newRow("one") << 1 << u""_s << u"-x... all none export"_s;
        QTest::newRow("an empty one") << 2 << u""_s << u"--... all"_s;
        QTest::newRow("select none") << -1 << u"n"_s << u"--... all"_s;
        QTest::newRow("select all") << 1 << u"a"_s << u"xx... none export"_s;
        QTest::newRow("by hand") << 1 << u" "_s << u"--... all"_s;
    }
    void checks()
    {
        QFETCH(int, current);
        QFETCH(QString, keys);
        const QList<FocusGroup::Id> order{TaskStorage::ms_inboxId, m_work, m_empty,
                                          TaskStorage::ms_completedId, TaskStorage::ms_trashId};
        ExportDialog::showMe(nullptr, order.value(current));
        QCOMPARE(list()->count(), order.size());
        for (int row = 0; row < list()->count(); ++row) {
            QCOMPARE(list()->item(row)->data(Qt::UserRole + 1), order.at(row).toString());
            QVERIFY(!list()->item(row)->icon().isNull());
        }
        QCOMPARE(list()->item(1)->text(), u"<b>Work</b>"_s);
        if (current >= 0)
            QCOMPARE(list()->currentRow(), current);

        if (keys == u"a")
            button(u"Select all"_s)->click();
        else if (keys == u"n")
            button(u"Select none"_s)->click();
        else
            QTest::keyClicks(list(), keys);
        QTEST(state(), "state");
    }

    void exports()
    {
        m_path = m_home->filePath(u"out"_s);
        QFile old(m_path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write(QByteArray(1000, 'x'));
        old.close();
        ExportDialog::showMe(nullptr, {});
        // What changes behind the open dialog counts; a group that has vanished is left out.
        taskStorage().completeTask(m_task, true, {});
        taskStorage().addTask(TaskStorage::ms_inboxId, m_task);
        taskStorage().removeGroup(m_empty);

        QTest::keyClick(dialog(), Qt::Key_Return);
        QCOMPARE(m_saveQuestion.caption, u"Export to"_s);
        QCOMPARE(m_saveQuestion.folder, m_home->path());
        QCOMPARE(m_saveQuestion.filter, u"Text files (*.txt)"_s);
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "[Inbox]\r\n- Buy milk\r\n= Caf\xc3\xa9\r\n\r\n"
                                 "[<b>Work</b>]\r\n= Caf\xc3\xa9\r\n\r\n"_ba);
        QCOMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(m_path)});
        QCOMPARE(m_messages.size(), 0);
        QTRY_VERIFY(!dialog());
    }

    void staysOpenWithoutAFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message");
        QTest::newRow("cancelled") << QString() << QString();
        QTest::newRow("no folder")
            << u"no such folder/%1.txt"_s << u"Failed to open file \"%1\" for writing."_s;
        QTest::newRow("disk full") << u"old.txt"_s
                                   << u"Failed to write the file \"%1\". Nothing was changed."
                                      "\n\nThere is no room left on the disk."_s;
        QTest::newRow("the program's own")
            << u".Mivora/User Data/database.xml.bak"_s
            << u"The file \"%1\" belongs to Mivora itself. Please choose another one."_s;
    }
    void staysOpenWithoutAFile()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, message);
        for (const QString& kept : {u"old.txt"_s, u".Mivora/User Data/database.xml.bak"_s}) {
            QFile file(m_home->filePath(kept));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("kept") == 4);
        }
        m_path = name.isEmpty() ? QString() : m_home->filePath(name);
        DiskFaults::failWritesAfter(5, ENOSPC, "old.txt");
        ExportDialog::showMe(nullptr, m_work);
        button(u"Export"_s)->click();
        DiskFaults::reset();
        QCOMPARE(m_messages.size(), message.isEmpty() ? 0 : 1);
        if (!message.isEmpty()) {
            QCOMPARE(m_messages.first().icon, QMessageBox::Critical);
            QCOMPARE(m_messages.first().title, ProductHelper::productDisplayName());
            QCOMPARE(m_messages.first().text, message.arg(m_path));
        }
        QFile file(m_path);
        QVERIFY(!file.open(QIODevice::ReadOnly) || file.readAll() == "kept");
        QCOMPARE(m_opened.size(), 0);
        QVERIFY(dialog()->isVisible());
        QCOMPARE(state(), u"-x... all none export"_s);
    }

    void oneAtATime()
    {
        QWidget parent;
        ExportDialog::showMe(&parent, m_work);
        ExportDialog* first = dialog();
        QVERIFY(first->isModal());
        QHideEvent minimised;
        QSpontaneKeyEvent::setSpontaneous(&minimised);
        qApp->notify(first, &minimised); // sendEvent() would drop the mark
        first->setWindowState(Qt::WindowMinimized);
        ExportDialog::showMe(&parent, {});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(dialogs() == QList<ExportDialog*>{first});
        QVERIFY(!first->isMinimized());

        // Hidden, it is as good as gone: the next one is another.
        button(u"Cancel"_s)->click();
        ExportDialog::showMe(&parent, {});
        QCOMPARE(dialogs().size(), 2);
        QTRY_COMPARE(dialogs().size(), 1);
        QCOMPARE(state(), u"xx... none export"_s);
        dialog()->close();
        QTRY_VERIFY(!dialog());
    }

private:
    static QList<ExportDialog*> dialogs()
    {
        QList<ExportDialog*> found;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* dialog = qobject_cast<ExportDialog*>(widget))
                found += dialog;
        }
        return found;
    }
    static ExportDialog* dialog() { return dialogs().value(0); }
    static QListWidget* list() { return dialog()->findChild<QListWidget*>(); }
    static QPushButton* button(const QString& text)
    {
        for (QPushButton* button : dialog()->findChildren<QPushButton*>()) {
            if (button->text() == text)
                return button;
        }
        return nullptr;
    }

    static QString state()
    {
        QString text;
        for (int row = 0; row < list()->count(); ++row) {
            const QListWidgetItem* item = list()->item(row);
            const QChar check = item->checkState() == Qt::Checked ? u'x' : u'-';
            text += item->flags() == Qt::NoItemFlags ? u'.' : check;
        }
        if (button(u"Select all"_s)->isEnabled())
            text += u" all"_s;
        if (button(u"Select none"_s)->isEnabled())
            text += u" none"_s;
        if (button(u"Export"_s)->isEnabled())
            text += u" export"_s;
        return text;
    }

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<LogWatch> m_log;
    FocusGroup::Id m_work;
    FocusGroup::Id m_empty;
    TodoTask::Id m_task;
    QString m_path;
    Prompt::SaveQuestion m_saveQuestion;
    QList<Prompt::Question> m_messages;
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestExportDialog)
#include "tst_exportdialog.moc"
