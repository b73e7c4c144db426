// The export dialog, used as a user does, on a real store.
#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "taskdb/export/ExportDialog.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"
#include "tests/support/TemporaryHome.h"
#include "ui/controls/Prompt.h"

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
        Prompt::setSaveAnswerer([this](const Prompt::SaveQuestion&) { return m_path; });
        Prompt::setAnswerer([this](const Prompt::Question& question) {
            m_messages += question.text;
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

    void checks()
    {
        ExportDialog::showMe(&m_parent, m_empty);
        QCOMPARE(state(), u"--..."_s);
        delete dialog();
        ExportDialog::showMe(&m_parent, m_work);
        QCOMPARE(state(), u"-x... export"_s);
        button(u"Select all"_s)->click();
        QCOMPARE(state(), u"xx... export"_s);
        button(u"Select none"_s)->click();
        QCOMPARE(state(), u"--..."_s);
        QTest::keyClicks(list(), u" "_s);
        QCOMPARE(state(), u"-x... export"_s);
    }

    void exports()
    {
        m_path = m_home->filePath(u"out"_s);
        ExportDialog::showMe(&m_parent, {});
        // What changes behind the open dialog counts; a group that has vanished is left out.
        taskStorage().completeTask(m_task, true, {});
        taskStorage().addTask(TaskStorage::ms_inboxId, m_task);
        taskStorage().removeGroup(m_empty);

        QTest::keyClick(dialog(), Qt::Key_Return);
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
        ExportDialog::showMe(&m_parent, m_work);
        button(u"Export"_s)->click();
        DiskFaults::reset();
        QCOMPARE(m_messages.join(u'|'), message.isEmpty() ? message : message.arg(m_path));
        QFile file(m_path);
        QVERIFY(!file.open(QIODevice::ReadOnly) || file.readAll() == "kept");
        QCOMPARE(m_opened.size(), 0);
        QVERIFY(dialog()->isVisible());
        QCOMPARE(state(), u"-x... export"_s);
    }

private:
    ExportDialog* dialog() { return m_parent.findChild<ExportDialog*>(); }
    QListWidget* list() { return dialog()->findChild<QListWidget*>(); }
    QPushButton* button(const QString& text)
    {
        for (QPushButton* button : dialog()->findChildren<QPushButton*>()) {
            if (button->text() == text)
                return button;
        }
        return nullptr;
    }

    /// One letter per group in the order Inbox, Work, Empty, Completed, Trash: x checked,
    /// - unchecked, . disabled; then whether export can be pressed.
    QString state()
    {
        QString text;
        for (int row = 0; row < list()->count(); ++row) {
            const QListWidgetItem* item = list()->item(row);
            const QChar check = item->checkState() == Qt::Checked ? u'x' : u'-';
            text += item->flags() == Qt::NoItemFlags ? u'.' : check;
        }
        return button(u"Export"_s)->isEnabled() ? text + u" export"_s : text;
    }

    QWidget m_parent;
    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<LogWatch> m_log;
    FocusGroup::Id m_work;
    FocusGroup::Id m_empty;
    TodoTask::Id m_task;
    QString m_path;
    QStringList m_messages;
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestExportDialog)
#include "tst_exportdialog.moc"
