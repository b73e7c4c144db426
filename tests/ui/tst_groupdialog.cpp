// The dialog for a group's name and icon.
#include "ui/EditGroupDialog.h"
#include "ui/SelectIconWidget.h"
#include "ui/controls/Prompt.h"

#include <QLineEdit>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class GroupDialogTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<EditGroupDialog> m_dialog;

    SelectIconWidget& icons() { return *m_dialog->findChild<SelectIconWidget*>(); }
    QLineEdit& name() { return *m_dialog->findChild<QLineEdit*>(); }
    QString result() { return m_dialog->groupName() + u'|' + m_dialog->iconName(); }

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
        return result();
    }

private Q_SLOTS:
    void cleanup() { m_dialog.reset(); }

    void nameFollowsIcon()
    {
        open(new EditGroupDialog(nullptr));
        QCOMPARE(result(), u"|star_green"_s);
        QCOMPARE(pick(u"Party Time"_s), u"Party Time|party"_s);
        QTest::keyClick(&icons(), Qt::Key_Right);
        QCOMPARE(result(), u"Calls|mobile"_s);
        QTest::keyClicks(&name(), u"!"_s);
        QCOMPARE(pick(u"Money"_s), u"Calls!|money"_s);
        name().selectAll();
        QTest::keyClick(&name(), Qt::Key_Delete);
        QCOMPARE(pick(u"Money"_s), u"Money|money"_s);
        name().insert(u"\tx\ny"_s);
        QCOMPARE(m_dialog->groupName(), u"Money x y"_s);
        pick(u"Internet"_s);
        QTest::mouseDClick(icons().viewport(), Qt::LeftButton, {}, place(u"Internet"_s));
        QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
        QCOMPARE(m_dialog->iconName(), u"internet"_s);
    }

    /// And is in view, in a large font, too.
    void whatIsLeftAloneStays()
    {
        const QFont font = QApplication::font();
        QApplication::setFont(QFont(font.family(), 30));
        for (const auto& [name, icon] : {std::pair(u" <b>a</b> "_s.repeated(5000), u"money"_s),
                                         {u" a\nb "_s, u"pencil"_s},
                                         {u"a"_s, QString()}}) {
            open(new EditGroupDialog(name, icon, nullptr));
            const QRect current = icons().visualItemRect(icons().currentItem());
            QVERIFY(current.isNull() || icons().viewport()->rect().contains(current));
            icons().setFocus(Qt::BacktabFocusReason);
            QTest::keyClick(&icons(), Qt::Key_Enter);
            QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
            QCOMPARE(result(), name + u'|' + icon);
        }
        QApplication::setFont(font);
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
            QTest::keyClick(&icons(), Qt::Key_Return);
            QVERIFY(m_dialog->isVisible() && name().hasFocus());
            QCOMPARE(box.text.contains("funny"_L1), i % 10 == 0);
            QCOMPARE(box.buttons.testFlag(QMessageBox::No), i % 10 == 0);
            box = {};
        }
        Prompt::setAnswerer({});
    }
};

QTEST_MAIN(GroupDialogTest)
#include "tst_groupdialog.moc"
