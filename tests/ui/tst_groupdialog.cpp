// The dialog for a group's name and icon.
#include "app/base/Prompt.h"
#include "tests/support/Capitals.h"
#include "tests/support/LogWatch.h"
#include "ui/EditGroupDialog.h"
#include "ui/SelectIconWidget.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class GroupDialogTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<LogWatch> m_log;
    std::unique_ptr<EditGroupDialog> m_dialog;

    SelectIconWidget& icons() { return *m_dialog->findChild<SelectIconWidget*>(); }
    QLineEdit& name() { return *m_dialog->findChild<QLineEdit*>(); }

    void open(EditGroupDialog* dialog)
    {
        m_dialog.reset(dialog);
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        QTRY_COMPARE(QApplication::focusWidget(), &name());
    }

    /// Where an icon is, scrolled into view.
    QPoint place(const QString& displayName)
    {
        QListWidgetItem* item = icons().findItems(displayName, Qt::MatchExactly).at(0);
        icons().scrollToItem(item);
        return icons().visualItemRect(item).center();
    }

    QString pick(const QString& displayName)
    {
        QTest::mouseClick(icons().viewport(), Qt::LeftButton, {}, place(displayName));
        return m_dialog->groupName();
    }

private Q_SLOTS:
    void init() { m_log = std::make_unique<LogWatch>(); }

    void cleanup()
    {
        m_dialog.reset();
        Prompt::setAnswerer({});
        QCOMPARE(m_log->take(), QStringList());
    }

    void nameFollowsIcon()
    {
        open(new EditGroupDialog(nullptr));
        QCOMPARE(m_dialog->windowTitle(), u"New group"_s);
        QCOMPARE(m_dialog->groupName(), QString());
        QCOMPARE(pick(u"Blue Star"_s), u"Blue Star"_s);
        QCOMPARE(pick(u"Party Time"_s), u"Party Time"_s);
        QCOMPARE(m_dialog->iconName(), u"party"_s);
        QTest::keyClicks(&name(), u"!"_s);
        QCOMPARE(pick(u"Money"_s), u"Party Time!"_s);
        name().selectAll();
        QTest::keyClick(&name(), Qt::Key_Delete);
        QCOMPARE(pick(u"Money"_s), u"Money"_s);
    }

    void editForm()
    {
        const QString stored = u" <b>a</b> "_s.repeated(5000);
        open(new EditGroupDialog(stored, u"money"_s, nullptr));
        QCOMPARE(m_dialog->windowTitle(), u"Group properties"_s);
        QCOMPARE(m_dialog->groupName(), stored);
        QVERIFY(icons().viewport()->rect().contains(icons().visualItemRect(icons().currentItem())));
        QCOMPARE(pick(u"Red Star"_s), u"Red Star"_s);
    }

    void keys_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<QString>("afterRight");
        QTest::newRow("default") << QString() << u"star_green"_s << u"star_red"_s;
        QTest::newRow("known") << u"mobile"_s << u"mobile"_s << u"money"_s;
        QTest::newRow("last") << u"money"_s << u"money"_s << u"money"_s;
        QTest::newRow("unknown") << u"pencil"_s << QString() << u"star"_s;
    }
    void keys()
    {
        QFETCH(QString, stored);
        open(new EditGroupDialog(u"name"_s, stored, nullptr));
        QTEST(m_dialog->iconName(), "chosen");
        icons().setFocus(Qt::BacktabFocusReason);
        QTEST(m_dialog->iconName(), "chosen");
        QTest::keyClick(&icons(), Qt::Key_Right);
        QTEST(m_dialog->iconName(), "afterRight");
        QCOMPARE(m_dialog->groupName(), u"name"_s);
        icons().setIconKey(stored);
        QTEST(m_dialog->iconName(), "chosen");
    }

    /// Ten in a row make the joke, whether the name is empty or blank.
    void refusals()
    {
        open(new EditGroupDialog(nullptr));
        Prompt::Question box;
        Prompt::setAnswerer([&box](const Prompt::Question& question) {
            box = question;
            return question.defaultButton;
        });
        for (int i = 1; i <= 21; ++i) {
            name().setText(QString(i % 3, u' '));
            icons().setFocus();
            box = {};
            QTest::keyClick(&icons(), Qt::Key_Return);
            QVERIFY(m_dialog->isVisible());
            QCOMPARE(QApplication::focusWidget(), &name());
            QCOMPARE(box.icon, QMessageBox::Critical);
            QCOMPARE(box.title, u"New group"_s);
            if (i % 10 == 0) {
                QCOMPARE(box.text,
                         u"Ok, now we all know that you're funny! Wanna play a real game?"_s);
                QCOMPARE(box.buttons, QMessageBox::Yes | QMessageBox::No);
                QCOMPARE(box.defaultButton, QMessageBox::Yes);
            } else {
                QCOMPARE(box.text, u"Please enter a group name to continue..."_s);
                QCOMPARE(box.buttons, QMessageBox::Ok);
            }
        }
    }

    void closing_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("result");
        QTest::newRow("Enter") << int(Qt::Key_Enter) << int(QDialog::Accepted);
        QTest::newRow("Escape") << int(Qt::Key_Escape) << int(QDialog::Rejected);
        QTest::newRow("double click") << 0 << int(QDialog::Accepted);
    }
    void closing()
    {
        QFETCH(int, key);
        open(new EditGroupDialog(u" a "_s, {}, nullptr));
        if (key != 0) {
            QTest::keyClick(&name(), static_cast<Qt::Key>(key));
        } else {
            pick(u"Internet"_s);
            QTest::mouseDClick(icons().viewport(), Qt::LeftButton, {}, place(u"Internet"_s));
        }
        QVERIFY(!m_dialog->isVisible());
        QTEST(m_dialog->result(), "result");
        QCOMPARE(m_dialog->groupName(), key != 0 ? u" a "_s : u"Internet"_s);
    }

    void buttons()
    {
        open(new EditGroupDialog(u"a"_s, {}, nullptr));
        const auto buttons = m_dialog->findChildren<QPushButton*>();
        QCOMPARE(buttons.size(), 2);
        buttons.at(0)->click();
        QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
        buttons.at(1)->click();
        QCOMPARE(m_dialog->result(), int(QDialog::Rejected));
    }

    void languageChange()
    {
        open(new EditGroupDialog(nullptr));
        QCOMPARE(m_dialog->size(), m_dialog->minimumSizeHint());
        Capitals capitals;
        QCoreApplication::installTranslator(&capitals);
        QTRY_COMPARE(m_dialog->windowTitle(), u"NEW GROUP"_s);
        QCOMPARE(icons().item(2)->text(), u"GREEN STAR"_s);
        QCOMPARE(m_dialog->findChild<QLabel*>()->text(), u"<strong>ICON SELECTION</strong>"_s);
        QCOMPARE(m_dialog->size(), m_dialog->minimumSizeHint());
    }
};

QTEST_MAIN(GroupDialogTest)
#include "tst_groupdialog.moc"
