// The self-painted buttons: what they show, when they click.
#include "ui/controls/TaskCheckbox.h"
#include "ui/controls/TinyCloseButton.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr QPoint inside(8, 8);
constexpr QPoint outside(200, 200);

/// What the widget itself paints, on nothing.
QImage painted(QWidget& widget)
{
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

QImage picture(const QString& name)
{
    const QString file = u":/icons_checkbox/checkbox_"_s + name;
    return QImage(file).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

void enter(QWidget& widget)
{
    QEnterEvent event(inside, inside, inside);
    QCoreApplication::sendEvent(&widget, &event);
}

void dragTo(QWidget& widget, QPoint pos)
{
    QMouseEvent event(QEvent::MouseMove, pos, widget.mapToGlobal(pos), Qt::NoButton, Qt::LeftButton,
                      {});
    QCoreApplication::sendEvent(&widget, &event);
}

} // namespace

class TestButtons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkboxPicture()
    {
        const QString rest = u"done-N"_s;
        const QString held = u"done-P"_s;
        TaskCheckbox box;
        box.setChecked(true);
        enter(box);
        QCOMPARE(painted(box), picture(rest));
        QTest::mousePress(&box, Qt::LeftButton, {}, inside);
        QCOMPARE(painted(box), picture(held));
        dragTo(box, outside);
        QTest::mouseRelease(&box, Qt::LeftButton, {}, outside);
        QCOMPARE(painted(box), picture(rest));
        QVERIFY(box.isChecked());
    }

    void checkboxSignals()
    {
        TaskCheckbox box;
        QCOMPARE(box.size(), QSize(16, 16));
        QSignalSpy states(&box, &FancyCheckbox::stateChanged);
        using States = QList<QVariantList>;
        box.setChecked(true);
        box.setChecked(true);
        QCOMPARE(states, (States{{1}}));
        QTest::mouseClick(&box, Qt::LeftButton, {}, {0, 0});
        QTest::mouseClick(&box, Qt::LeftButton, {}, {15, 15});
        QTest::mouseClick(&box, Qt::LeftButton, {}, {16, 8});
        QTest::mouseClick(&box, Qt::RightButton, {}, inside);
        QCOMPARE(states, (States{{1}, {0}, {1}}));
    }

    void accessible()
    {
        TaskCheckbox box;
        box.setAccessibleName(u"Completed"_s);
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&box);
        QCOMPARE(face->role(), QAccessible::CheckBox);
        QCOMPARE(face->text(QAccessible::Name), u"Completed"_s);
        QVERIFY(face->state().checkable && !face->state().checked);
        face->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(box.isChecked() && face->state().checked);

        TinyCloseButton button;
        face = QAccessible::queryAccessibleInterface(&button);
        QCOMPARE(face->role(), QAccessible::Button);
        QSignalSpy clicks(&button, &QAbstractButton::clicked);
        face->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(clicks.size(), 1);
    }
};

QTEST_MAIN(TestButtons)
#include "tst_buttons.moc"
