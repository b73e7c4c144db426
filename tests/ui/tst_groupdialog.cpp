// The dialog for a group's name and icon.
#include "tests/support/LogWatch.h"
#include "ui/EditGroupDialog.h"
#include "ui/SelectIconWidget.h"
#include "ui/controls/Prompt.h"

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
        QCOMPARE(m_dialog->groupName(), QString());
        QCOMPARE(m_dialog->iconName(), u"star_green"_s);
        QCOMPARE(pick(u"Party Time"_s), u"Party Time"_s);
        QCOMPARE(m_dialog->iconName(), u"party"_s);
        QTest::keyClicks(&name(), u"!"_s);
        QCOMPARE(pick(u"Money"_s), u"Party Time!"_s);
        name().selectAll();
        QTest::keyClick(&name(), Qt::Key_Delete);
        QCOMPARE(pick(u"Money"_s), u"Money"_s);
    }

    void storedNameAndIconAreShown()
    {
        const QString stored = u" <b>a</b> "_s.repeated(5000);
        open(new EditGroupDialog(stored, u"money"_s, nullptr));
        QCOMPARE(m_dialog->groupName(), stored);
        QCOMPARE(m_dialog->iconName(), u"money"_s);
        QVERIFY(icons().viewport()->rect().contains(icons().visualItemRect(icons().currentItem())));
        QCOMPARE(pick(u"Red Star"_s), u"Red Star"_s);
    }

    void unknownIconStaysUnknown()
    {
        open(new EditGroupDialog(u"name"_s, u"pencil"_s, nullptr));
        icons().setFocus(Qt::BacktabFocusReason);
        QCOMPARE(m_dialog->iconName(), QString());
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
        for (int i = 1; i <= 20; ++i) {
            name().setText(QString(i % 3, u' '));
            icons().setFocus();
            box = {};
            QTest::keyClick(&icons(), Qt::Key_Return);
            QVERIFY(m_dialog->isVisible());
            QCOMPARE(QApplication::focusWidget(), &name());
            QCOMPARE(box.text.contains("funny"_L1), i % 10 == 0);
            QCOMPARE(box.buttons.testFlag(QMessageBox::No), i % 10 == 0);
        }
    }

    void closing()
    {
        open(new EditGroupDialog(u" a "_s, {}, nullptr));
        QTest::keyClick(&name(), Qt::Key_Enter);
        QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
        QCOMPARE(m_dialog->groupName(), u" a "_s);

        open(new EditGroupDialog(u" a "_s, {}, nullptr));
        m_dialog->findChildren<QPushButton*>().last()->click();
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(m_dialog->result(), int(QDialog::Rejected));

        open(new EditGroupDialog(u" a "_s, {}, nullptr));
        pick(u"Internet"_s);
        QTest::mouseDClick(icons().viewport(), Qt::LeftButton, {}, place(u"Internet"_s));
        QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
        QCOMPARE(m_dialog->groupName(), u"Internet"_s);
    }
};

QTEST_MAIN(GroupDialogTest)
#include "tst_groupdialog.moc"
