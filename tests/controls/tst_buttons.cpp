// The self-painted buttons: what they show, when they click.
#include "ui/controls/FancyToolBtn.h"
#include "ui/controls/StyleHelper.h"
#include "ui/controls/TaskCheckbox.h"
#include "ui/controls/TinyCloseButton.h"
#include "ui/icons/IconsHelper.h"

#include <QAccessible>
#include <QAction>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

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
    void checkboxPicture_data()
    {
        QTest::addColumn<bool>("checked");
        QTest::addColumn<QString>("rest");
        QTest::addColumn<QString>("held");
        QTest::newRow("open") << false << u"flat-N"_s << u"flat-P"_s;
        QTest::newRow("done") << true << u"done-N"_s << u"done-P"_s;
    }
    void checkboxPicture()
    {
        QFETCH(const bool, checked);
        QFETCH(const QString, rest);
        QFETCH(const QString, held);
        TaskCheckbox box;
        box.setChecked(checked);
        enter(box);
        QCOMPARE(painted(box), picture(rest));
        QTest::mousePress(&box, Qt::LeftButton, {}, inside);
        QCOMPARE(painted(box), picture(held));
        dragTo(box, outside);
        QCOMPARE(painted(box), picture(rest));
        dragTo(box, inside);
        QCOMPARE(painted(box), picture(held));
        dragTo(box, outside);
        QTest::mouseRelease(&box, Qt::LeftButton, {}, outside);
        QCOMPARE(painted(box), picture(rest));
        QCOMPARE(box.isChecked(), checked);

        const int full = qAlpha(painted(box).pixel(inside));
        box.setIconOpacity(0.6);
        QVERIFY(std::abs(qAlpha(painted(box).pixel(inside)) - full * 0.6) <= 2);
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

    void toolButton()
    {
        QAction action(dynamic_singleton<IconsHelper>::inst().icon(u"money"_s), u"New"_s);
        FancyToolBtn button;
        button.setDefaultAction(&action);
        button.setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        button.setIconSize({20, 20});
        button.resize(button.sizeHint() + QSize(20, 20));
        const QImage rest = painted(button);
        QCOMPARE(rest.pixelColor(0, 20), QColor(0xf6fbff));

        enter(button);
        const QImage hovered = painted(button);
        QVERIFY(hovered != rest);
        QTest::mousePress(&button, Qt::LeftButton, {}, inside);
        // Held, its content moves by a pixel.
        const QRect middle = button.rect().adjusted(5, 5, -5, -5);
        QCOMPARE(painted(button).copy(middle.translated(1, 1)), hovered.copy(middle));
        dragTo(button, outside);
        QCOMPARE(painted(button), rest);
        dragTo(button, inside);
        QTest::mouseRelease(&button, Qt::LeftButton, {}, inside);
        QCOMPARE(painted(button), hovered);

        action.setEnabled(false);
        const QImage disabled = painted(button);
        QCOMPARE(disabled.pixelColor(0, 20), rest.pixelColor(0, 20));
        QVERIFY(disabled != rest);
    }

    void cleanupTestCase()
    {
        dynamic_singleton<IconsHelper>::destroy();
        dynamic_singleton<fancy::StyleHelper>::destroy();
    }
};

QTEST_MAIN(TestButtons)
#include "tst_buttons.moc"
