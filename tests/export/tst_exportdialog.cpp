// The export dialog, used as a user does, on a real store.
#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "taskdb/export/ExportDialog.h"
#include "tests/support/LogWatch.h"
#include "tests/support/TemporaryHome.h"
#include "ui/controls/Prompt.h"

#include <QDesktopServices>
#include <QFile>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

class TestExportDialog : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void open(const QUrl& url) { m_opened += url.toLocalFile(); }

private Q_SLOTS:
    void staysOpenUntilAFileIsWritten()
    {
        const TemporaryHome home;
        const LogWatch log;
        QCOMPARE(dynamic_singleton<TaskCore>::inst().init(), TaskStorage::NoError);
        QDesktopServices::setUrlHandler(u"file"_s, this, "open");
        const FocusGroup::Id work = taskStorage().createGroup(u"<b>Work</b>"_s, u"money"_s);
        const TodoTask::Id task = taskStorage().createTask(work);
        QWidget parent;
        ExportDialog::showMe(&parent, work);
        const QPointer<ExportDialog> dialog = parent.findChild<ExportDialog*>();

        QString told;
        QString path;
        Prompt::setSaveAnswerer([&path](const Prompt::SaveQuestion&) { return path; });
        Prompt::setAnswerer([&told](const Prompt::Question& question) {
            told += question.text;
            return QMessageBox::Ok;
        });
        for (const auto& [name, message] :
             {std::pair(u"nowhere/%1.txt"_s, u"Failed to open file \"%1\" for writing."_s),
              {u".Mivora/User Data/database.xml"_s, u"\"%1\" belongs to Mivora itself"_s}}) {
            path = home.filePath(name);
            QTest::keyClick(dialog, Qt::Key_Return);
            QVERIFY2(told.contains(message.arg(path)), qPrintable(told));
            QVERIFY(!QFile::exists(path));
        }
        path.clear();
        QTest::keyClick(dialog, Qt::Key_Return);
        QVERIFY(dialog->isVisible() && m_opened.isEmpty());

        // The question is for the file that is written.
        Prompt::setSaveAnswerer({});
        Prompt::setAnswerer({});
        QFile file(home.filePath(u"out.txt"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        taskStorage().renameTask(task, u"Café"_s); // behind the open dialog
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
        QTest::keyClick(dialog, Qt::Key_Return);
        QVERIFY2(asked.contains("out.txt"_L1), qPrintable(asked));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "[<b>Work</b>]\r\n- Caf\xc3\xa9\r\n\r\n"_ba);
        QCOMPARE(m_opened, QStringList{file.fileName()});
        QTRY_VERIFY(!dialog);
        dynamic_singleton<TaskCore>::destroy();
    }

private:
    QStringList m_opened;
};

QTEST_MAIN(TestExportDialog)
#include "tst_exportdialog.moc"
