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
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <cerrno>
#include <memory>

using namespace Qt::StringLiterals;

class TestExportDialog : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void open(const QUrl& url) { m_opened += url.toLocalFile(); }

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TemporaryHome>();
        m_log = std::make_unique<LogWatch>();
        QCOMPARE(dynamic_singleton<TaskCore>::inst().init(), TaskStorage::NoError);
        QDesktopServices::setUrlHandler(u"file"_s, this, "open");
        Prompt::setSaveAnswerer([this](const Prompt::SaveQuestion&) { return m_path; });
        m_work = taskStorage().createGroup(u"<b>Work</b>"_s, u"money"_s);
        m_empty = taskStorage().createGroup(u"Empty"_s, {});
        taskStorage().createTask(TaskStorage::ms_inboxId);
        m_task = taskStorage().createTask(m_work);
    }
    void cleanup()
    {
        delete dialog();
        dynamic_singleton<TaskCore>::destroy();
        QDesktopServices::unsetUrlHandler(u"file"_s);
        Prompt::setSaveAnswerer({});
        m_opened.clear();
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
        button(0)->click();
        QCOMPARE(state(), u"xx... export"_s);
        button(1)->click();
        QCOMPARE(state(), u"--..."_s);
        QTest::keyClicks(list(), u" "_s);
        QCOMPARE(state(), u"-x... export"_s);
    }

    /// The question is for the file that is written.
    void suffixIsAdded()
    {
        Prompt::setSaveAnswerer({});
        QFile file(m_home->filePath(u"out.txt"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        ExportDialog::showMe(&m_parent, m_work);
        taskStorage().renameTask(m_task, u"Café"_s); // behind the open dialog
        QString asked;
        QTimer::singleShot(0, this, [&asked] {
            QWidget* chooser = QApplication::activeModalWidget();
            QTimer::singleShot(0, chooser, [&asked] {
                if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                    asked = box->text();
                    box->button(QMessageBox::Yes)->click();
                }
            });
            QTest::keyClicks(chooser->findChild<QLineEdit*>(), u"out"_s);
            QTest::keyClick(chooser, Qt::Key_Return);
        });
        QTest::keyClick(dialog(), Qt::Key_Return);
        QVERIFY2(asked.contains("out.txt"_L1), qPrintable(asked));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "[<b>Work</b>]\r\n- Caf\xc3\xa9\r\n\r\n"_ba);
        QCOMPARE(m_opened, QStringList{file.fileName()});
        QTRY_VERIFY(!dialog());
    }

    void staysOpenWithoutAFile()
    {
        QString told;
        Prompt::setAnswerer([&told](const Prompt::Question& question) {
            told += question.text;
            return QMessageBox::Ok;
        });
        DiskFaults::failWritesAfter(5, ENOSPC, "full.txt");
        ExportDialog::showMe(&m_parent, m_work);
        for (const auto& [name, message] :
             {std::pair(u"nowhere/%1.txt"_s, u"Failed to open file \"%1\" for writing."_s),
              {u"full.txt"_s, u"\"%1\". Nothing was changed.\n\nThere is no room left"_s},
              {u".Mivora/User Data/database.xml"_s, u"\"%1\" belongs to Mivora itself"_s}}) {
            m_path = m_home->filePath(name);
            button(2)->click();
            QVERIFY2(told.contains(message.arg(m_path)), qPrintable(told));
            QVERIFY(!QFile::exists(m_path));
        }
        m_path.clear();
        button(2)->click();
        DiskFaults::reset();
        Prompt::setAnswerer({});
        QVERIFY(dialog()->isVisible() && m_opened.isEmpty());
    }

private:
    ExportDialog* dialog() { return m_parent.findChild<ExportDialog*>(); }
    QListWidget* list() { return dialog()->findChild<QListWidget*>(); }
    /// Select all, Select none, Export, Cancel.
    QPushButton* button(int number) { return dialog()->findChildren<QPushButton*>().at(number); }

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
        return button(2)->isEnabled() ? text + u" export"_s : text;
    }

    QWidget m_parent;
    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<LogWatch> m_log;
    FocusGroup::Id m_work;
    FocusGroup::Id m_empty;
    TodoTask::Id m_task;
    QString m_path;
    QStringList m_opened;
};

QTEST_MAIN(TestExportDialog)
#include "tst_exportdialog.moc"
