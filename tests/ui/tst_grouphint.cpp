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
    /// The text without markup is what a screen reader says, and it has room in the panel.
    static void textsFit()
    {
        for (const QUuid& id : {TaskStorage::ms_inboxId, TaskStorage::ms_trashId,
                                TaskStorage::ms_completedId, QUuid()}) {
            GroupHintWidget hint(iconOf(Qt::red), GroupHintWidget::hintForGroup(id), nullptr);
            hint.show();
            const QString said =
                QAccessible::queryAccessibleInterface(&hint)->text(QAccessible::Name);
            QVERIFY2(said.contains("group"_L1) && !said.contains(u'<'), qPrintable(said));
            const auto* label = hint.findChild<LinkLabel*>();
            QVERIFY(hint.rect().adjusted(2, 2, -2, -2).contains(label->geometry()));
            QVERIFY(label->height() >= label->heightForWidth(label->width()));
        }
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
};

QTEST_MAIN(GroupHintTest)
#include "tst_grouphint.moc"
