// The dialog for going back to an earlier version, used as a user does, on a real store.
#include "app/base/CSafeFileUpdate.h"
#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "taskdb/TaskStorageSnapsot.h"
#include "tests/base/Files.h"
#include "tests/support/LogWatch.h"
#include "tests/support/TemporaryHome.h"
#include "ui/BackupsDialog.h"
#include "ui/controls/Prompt.h"

#include <QDir>
#include <QPushButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

class TestBackupsDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void handsOnWhatIsWanted()
    {
        const TemporaryHome home;
        LogWatch log;
        QCOMPARE(dynamic_singleton<TaskCore>::inst().init(), TaskStorage::NoError);
        QWidget parent;
        QPointer<BackupsDialog> dialog = open(parent);
        QTRY_COMPARE(rows(*dialog), QStringList{u"There are no backups yet.|||"_s});
        QVERIFY(!button(*dialog, 0)->isEnabled() && !button(*dialog, 1)->isEnabled());
        QTest::keyClick(dialog, Qt::Key_Escape);
        QTRY_VERIFY(!dialog);

        const QDir folder(taskStorage().backupFolder());
        QVERIFY(folder.mkpath(u"."_s));
        const FocusGroup::Id group = taskStorage().createGroup(u"Home"_s, {});
        (void)taskStorage().createTask(group);
        (void)taskStorage().saveCopy(folder.filePath(u"database-2026-10-01.xml"_s));
        const TodoTask::Id gone = taskStorage().createTask(group);
        (void)taskStorage().saveCopy(folder.filePath(u"database-2026-10-03-090500.xml"_s));
        taskStorage().removeTask(group, gone, true);
        writeFile(folder.filePath(u"database-2026-10-02.xml"_s), "<taskdb version=\"2\"/>");

        dialog = open(parent);
        const QStringList expected{
            u"Saturday, 3 October 2026, 09:05:00|2|1|1"_s,
            u"Friday, 2 October 2026 – Written by a newer version of the program|||"_s,
            u"Thursday, 1 October 2026|1|1|0"_s};
        QTRY_COMPARE(rows(*dialog), expected);
        QCOMPARE(log.take().size(), 2);
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
        QTRY_COMPARE(m_wishes, QStringList{u"bring back 1 of 2"_s});
        QTRY_VERIFY(!dialog);

        dialog = open(parent);
        QTRY_COMPARE(rows(*dialog), expected);
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Down); // past the one that does not load
        QVERIFY2(!button(*dialog, 0)->isEnabled(), "nothing is missing");
        button(*dialog, 1)->click();
        QTRY_COMPARE(m_wishes.last(), u"return 0 of 1"_s);

        dialog = open(parent);
        QTRY_COMPARE(rows(*dialog), expected);
        QVERIFY(QFile::remove(folder.filePath(u"database-2026-10-03-090500.xml"_s)));
        QString told;
        Prompt::setAnswerer([&told](const Prompt::Question& question) {
            told = question.text;
            return QMessageBox::Ok;
        });
        button(*dialog, 1)->click();
        QTRY_VERIFY2(told.contains(u"The file cannot be read: No such file"_s), qPrintable(told));
        Prompt::setAnswerer({});
        QVERIFY(dialog->isVisible() && !button(*dialog, 1)->isEnabled());
        QCOMPARE(m_wishes.size(), 2);
        (void)log.take();
        dynamic_singleton<TaskCore>::destroy();
    }

private:
    BackupsDialog* open(QWidget& parent)
    {
        const auto remember = [this](const QString& wish) {
            return [this, wish](const BackupContent& content) {
                m_wishes += u"%1 %2 of %3"_s.arg(wish)
                                .arg(content.missing.size())
                                .arg(content.snapshot->tasks().size());
            };
        };
        BackupsDialog::showMe(&parent, remember(u"bring back"_s), remember(u"return"_s));
        return parent.findChildren<BackupsDialog*>().last();
    }

    static QPushButton* button(const QWidget& dialog, int number)
    {
        return dialog.findChildren<QPushButton*>().at(number);
    }

    /// The rows in view, with their columns.
    static QStringList rows(const QWidget& dialog)
    {
        const auto* list = dialog.findChild<QTreeWidget*>();
        QStringList texts;
        for (int row = 0; row < list->topLevelItemCount(); ++row) {
            const QTreeWidgetItem* item = list->topLevelItem(row);
            const QStringList columns{item->text(0), item->text(1), item->text(2), item->text(3)};
            if (!item->isHidden())
                texts += columns.join(u'|');
        }
        return texts;
    }

    QStringList m_wishes;
};

QTEST_MAIN(TestBackupsDialog)
#include "tst_backupsdialog.moc"
