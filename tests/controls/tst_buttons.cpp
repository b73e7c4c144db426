// The palette and the self-painted buttons: what they show, when they click.
#include "ui/controls/FancyToolBtn.h"
#include "ui/controls/LinkLabel.h"
#include "ui/controls/StyleHelper.h"
#include "ui/controls/TaskCheckbox.h"
#include "ui/controls/TinyCloseButton.h"
#include "ui/icons/IconsHelper.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr QPoint inside(8, 8);
constexpr QPoint outside(60, 60);

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

/// The smallest rectangle around all pixels that are not the fill.
QRect content(const QImage& image, QRgb fill)
{
    QRect bounds;
    for (int y = 4; y < image.height() - 4; ++y) {
        for (int x = 4; x < image.width() - 4; ++x) {
            if (image.pixel(x, y) != fill)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

} // namespace

class TestButtons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void palette()
    {
        const fancy::StyleHelper& style = dynamic_singleton<fancy::StyleHelper>::inst();
        const QList<QRgb> colors = {0x1b75bb, 0xb0cce4, 0xf2c9c8, 0xc9e2a9, 0xc6e9f3,
                                    0xfff2b9, 0xffffff, 0xffffff, 0xf6fbff, 0xc6d0da,
                                    0xffffff, 0xeaf4fe, 0xffffff, 0x0a4776, 0xb0cce4,
                                    0x1b75bb, 0xc9e2a9, 0xf6fbff, 0x0a4776};
        for (int slot = 0; slot < colors.size(); ++slot)
            QCOMPARE(style.color(slot), QColor(colors.at(slot)));
        QVERIFY(!style.color(-1).isValid());
        QVERIFY(!style.color(19).isValid());
    }

    void clamp_data()
    {
        QTest::addColumn<float>("component");
        QTest::addColumn<int>("channel");
        QTest::newRow("fraction") << 254.99F << 254;
        QTest::newRow("most") << 255.0F << 255;
        QTest::newRow("above") << 255.01F << 255;
        QTest::newRow("far above") << 1e30F << 255;
        QTest::newRow("small negative") << -0.9F << 0;
        QTest::newRow("far below") << -1e30F << 0;
        QTest::newRow("no number") << std::nanf("") << 0;
    }

    void clamp()
    {
        QFETCH(const float, component);
        QTEST(fancy::clamp(component), "channel");
    }

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
        _dragTo(box, outside);
        QCOMPARE(painted(box), picture(rest));
        _dragTo(box, inside);
        QCOMPARE(painted(box), picture(held));
        _dragTo(box, outside);
        QTest::mouseRelease(&box, Qt::LeftButton, {}, outside);
        QCOMPARE(painted(box), picture(rest));
        QCOMPARE(box.isChecked(), checked);

        QTest::mousePress(&box, Qt::RightButton, {}, inside);
        QCOMPARE(painted(box), picture(rest));
    }

    void checkboxOpacity()
    {
        TaskCheckbox box;
        box.setChecked(true);
        const int full = qAlpha(painted(box).pixel(inside));
        box.setIconOpacity(0.6);
        QVERIFY(std::abs(qAlpha(painted(box).pixel(inside)) - full * 0.6) <= 2);
    }

    void checkboxSignals()
    {
        TaskCheckbox box;
        QCOMPARE(box.size(), QSize(16, 16));
        QCOMPARE(box.sizeHint(), QSize(16, 16));
        QCOMPARE(box.focusPolicy(), Qt::NoFocus);
        QSignalSpy states(&box, &FancyCheckbox::stateChanged);
        using States = QList<QVariantList>;
        box.setChecked(true);
        box.setChecked(true);
        QCOMPARE(states, (States{{1}}));
        QTest::mouseClick(&box, Qt::LeftButton, {}, {0, 0});
        QCOMPARE(states, (States{{1}, {0}}));
        QTest::mouseClick(&box, Qt::LeftButton, {}, {15, 15});
        QCOMPARE(states, (States{{1}, {0}, {1}}));
        QTest::mouseClick(&box, Qt::LeftButton, {}, {16, 8});
        QCOMPARE(states.size(), 3);
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

    void toolButtonFill()
    {
        FancyToolBtn button;
        button.resize(60, 40);
        const QColor rest(0xf6fbff);
        const QColor frame(0xb0cce4);
        const QColor white(Qt::white);
        // The left edge, half way down, from the outside in.
        const auto edge = [&button] {
            const QImage image = painted(button);
            return QList{image.pixelColor(0, 20), image.pixelColor(1, 20), image.pixelColor(2, 20),
                         image.pixelColor(3, 20)};
        };
        const QColor none(Qt::transparent);
        const QList atRest = {rest, rest, rest, rest};
        const QList hovered = {none, frame, white, white};
        const QList held = {none, none, frame, white};

        QCOMPARE(edge(), atRest);
        enter(button);
        QCOMPARE(edge(), hovered);
        QTest::mousePress(&button, Qt::LeftButton, {}, inside);
        QCOMPARE(edge(), held);
        _dragTo(button, {200, 200});
        QCOMPARE(edge(), atRest);
        _dragTo(button, inside);
        QTest::mouseRelease(&button, Qt::LeftButton, {}, inside);
        QCOMPARE(edge(), hovered);
        button.setEnabled(false);
        QCOMPARE(edge(), atRest);
    }

    void toolButtonContent()
    {
        QAction action(dynamic_singleton<IconsHelper>::inst().icon(u"money"_s), u"New"_s);
        FancyToolBtn button;
        button.setDefaultAction(&action);
        button.setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        button.setIconSize({20, 20});
        button.resize(button.sizeHint() + QSize(20, 20));

        const QRgb rest = qRgb(0xf6, 0xfb, 0xff);
        const QImage enabled = painted(button);
        const QRect both = content(enabled, rest);
        QVERIFY((both.center() - button.rect().center()).manhattanLength() <= 4);
        action.setIcon({});
        const QRect text = content(painted(button), rest);
        QVERIFY((text.center() - button.rect().center()).manhattanLength() <= 4);
        QVERIFY(both.height() >= text.height() + 14);
        QVERIFY(enabled.copy(both) != painted(button).copy(both));

        action.setIcon(dynamic_singleton<IconsHelper>::inst().icon(u"money"_s));
        enter(button);
        const QRect hovered = content(painted(button), qRgb(255, 255, 255));
        button.setDown(true);
        QCOMPARE(content(painted(button), qRgb(255, 255, 255)), hovered.translated(1, 1));
        button.setDown(false);

        action.setEnabled(false);
        const QImage disabled = painted(button);
        QCOMPARE(content(disabled, rest), both);
        QVERIFY(disabled != enabled);
    }

    void toolButtonTextColor()
    {
        const QColor text = FancyToolBtn().palette().color(QPalette::Active, QPalette::Text);
        QCOMPARE(text, QColor(0x0a4776));
    }

    void tinyButton()
    {
        QPixmap red(5, 5);
        red.fill(Qt::red);
        TinyButton button;
        button.setPixmap(red);
        button.resize(button.sizeHint());
        QCOMPARE(button.size(), QSize(16, 16));
        QImage expected(16, 16, QImage::Format_ARGB32_Premultiplied);
        expected.fill(QColor(0xb0cce4));
        QPainter painter(&expected);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(1, 1, 14, 14, Qt::transparent);
        painter.fillRect(3, 3, 5, 5, Qt::red);
        painter.end();
        QCOMPARE(painted(button), expected);
        enter(button);
        QCOMPARE(painted(button), expected);
    }

    void linkLabelHasNoMenu()
    {
        LinkLabel label(u"<a href=\"x\">x</a>"_s);
        label.setTextInteractionFlags(Qt::TextSelectableByMouse);
        label.show();
        QContextMenuEvent event(QContextMenuEvent::Mouse, {1, 1}, label.mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(&label, &event);
        QVERIFY(event.isAccepted());
        QVERIFY(!QApplication::activePopupWidget());
    }

    void cleanupTestCase()
    {
        dynamic_singleton<IconsHelper>::destroy();
        dynamic_singleton<fancy::StyleHelper>::destroy();
    }

private:
    static void _dragTo(QWidget& widget, QPoint pos)
    {
        QMouseEvent event(QEvent::MouseMove, pos, widget.mapToGlobal(pos), Qt::NoButton,
                          Qt::LeftButton, {});
        QCoreApplication::sendEvent(&widget, &event);
    }
};

QTEST_MAIN(TestButtons)
#include "tst_buttons.moc"
