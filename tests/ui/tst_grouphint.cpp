// The panel that an empty list shows.

#include "taskdb/TaskStorage.h"
#include "ui/GroupHintWidget.h"
#include "ui/controls/LinkLabel.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class GroupHintTest : public QObject
{
    Q_OBJECT

private:
    static QIcon iconOf(const QColor& color)
    {
        QPixmap picture(48, 48);
        picture.fill(color);
        return {picture};
    }

    static QPixmap shownIcon(const GroupHintWidget& hint)
    {
        for (const QLabel* label : hint.findChildren<QLabel*>()) {
            if (!qobject_cast<const LinkLabel*>(label))
                return label->pixmap(Qt::ReturnByValue);
        }
        return {};
    }

    /// A point of the picture that is painted in the link's colour.
    static QPoint linkPoint(const QImage& image)
    {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                if (color.blue() - color.red() > 100)
                    return {x, y};
            }
        }
        return {-1, -1};
    }

private Q_SLOTS:
    static void texts_data()
    {
        QTest::addColumn<QUuid>("id");
        QTest::addColumn<QString>("shown");
        QTest::newRow("Inbox")
            << TaskStorage::ms_inboxId
            << u"This is Inbox, a default group to hold all new incoming tasks. "
               "Looks like it's empty right now. Lets have some fun, click here "
               "to fill it up with some predefined tasks. Use \"Add group\" from "
               "the context menu on the group panel to add another group."_s;
        QTest::newRow("Trash")
            << TaskStorage::ms_trashId
            << u"Trash group holds all the tasks that you have ever deleted. You "
               "can restore deleted tasks by dragging them back to one of the "
               "existing groups. If you delete a task from Trash - it's "
               "gone..."_s;
        QTest::newRow("Completed")
            << TaskStorage::ms_completedId
            << u"This group holds all the tasks that were completed by you and logged."_s;
        const QString custom =
            u"This is your custom group. Add more groups to focus on similar tasks"_s;
        QTest::newRow("custom") << QUuid::createUuid() << custom;
        QTest::newRow("null") << QUuid() << custom;
    }
    /// The text without markup is what a screen reader says, and it has room in the panel.
    static void texts()
    {
        QFETCH(QUuid, id);
        QFETCH(QString, shown);
        GroupHintWidget hint(iconOf(Qt::red), GroupHintWidget::hintForGroup(id), nullptr);
        hint.show();
        QCOMPARE(hint.size(), QSize(300, 180));
        QCOMPARE(QAccessible::queryAccessibleInterface(&hint)->text(QAccessible::Name), shown);
        const auto* label = hint.findChild<LinkLabel*>();
        QVERIFY(hint.rect().adjusted(2, 2, -2, -2).contains(label->geometry()));
        QVERIFY(label->height() >= label->heightForWidth(label->width()));
    }

    static void linkEmits()
    {
        GroupHintWidget hint(iconOf(Qt::transparent), u"before"_s, nullptr);
        hint.setText(GroupHintWidget::hintForGroup(TaskStorage::ms_inboxId));
        hint.show();
        QSignalSpy starts(&hint, &GroupHintWidget::headStart);
        auto* label = hint.findChild<LinkLabel*>();
        const QPoint link = linkPoint(label->grab().toImage());
        QVERIFY(link.x() >= 0);
        QTest::mouseClick(label, Qt::LeftButton, {}, link - QPoint(0, 30));
        QCOMPARE(starts.count(), 0);
        QTest::mouseClick(label, Qt::LeftButton, {}, link);
        QCOMPARE(starts.count(), 1);
        QCOMPARE(starts.at(0).at(0).toString(), u"inboxheadstart"_s);
    }

    static void iconIsFaded()
    {
        GroupHintWidget hint(iconOf(Qt::red), {}, nullptr);
        QColor color = shownIcon(hint).toImage().pixelColor(20, 20);
        QCOMPARE(color.red(), 255);
        QVERIFY(qAbs(color.alpha() - 102) <= 1);
        hint.updateIcon(iconOf(Qt::blue));
        color = shownIcon(hint).toImage().pixelColor(0, 47);
        QCOMPARE(color.blue(), 255);
        QVERIFY(qAbs(color.alpha() - 102) <= 1);
        QCOMPARE(shownIcon(hint).deviceIndependentSize(), QSizeF(48, 48));
    }

    static void panelIsPainted()
    {
        GroupHintWidget hint({}, {}, nullptr);
        const QImage image = hint.grab().toImage();
        QCOMPARE(image.pixelColor(150, 90), QColor(0xeaf4fe));
        QVERIFY(image.pixelColor(1, 90) != QColor(0xeaf4fe));
        QVERIFY(image.pixelColor(1, 1) != QColor(0xeaf4fe));
    }
};

QTEST_MAIN(GroupHintTest)
#include "tst_grouphint.moc"
