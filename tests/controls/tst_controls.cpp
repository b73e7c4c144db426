// The palette and the splitter. The editors: the hint comes and goes, and is never taken for what
// the user wrote.
#include "ui/controls/ApplicationPalette.h"
#include "ui/controls/FancyLineEdit.h"
#include "ui/controls/FancyScrollbar.h"
#include "ui/controls/FancySplitter.h"
#include "ui/controls/FancyToolBtn.h"
#include "ui/controls/NotesTextEdit.h"

#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

/// A window with the editor and another field that has the focus.
struct Form
{
    QWidget window;
    QVBoxLayout layout{&window};
    QLineEdit other;

    [[nodiscard]] bool show(QWidget* edit)
    {
        layout.addWidget(&other);
        layout.addWidget(edit);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            return false;
        other.setFocus();
        return other.hasFocus();
    }
};

template <typename Editor>
void checkHint()
{
    Form form;
    HintedEditT<Editor> edit({}, u"Hint"_s);
    QVERIFY(form.show(&edit));
    QStringList heard;
    QObject::connect(&edit, &Editor::textChanged, [&] { heard += edit.userText(); });
    QVERIFY(edit.isHintShown() && edit.userText().isEmpty());
    edit.setFocus();
    edit.undo();
    QVERIFY(!edit.isHintShown() && edit.userText().isEmpty());
    form.other.setFocus();
    QVERIFY(edit.isHintShown());
    edit.setFocus();
    QTest::keyClicks(&edit, u"ab"_s);
    form.other.setFocus();
    QCOMPARE(edit.userText(), u"ab"_s);
    edit.setUserText({});
    QVERIFY(edit.isHintShown() && !heard.contains(u"Hint"_s));
    // The user may write what the hint reads.
    edit.setUserText(u"Hint"_s);
    QCOMPARE(edit.userText(), u"Hint"_s);
}

} // namespace

class TestControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toolButton()
    {
        FancyToolBtn button;
        const QSignalSpy clicks(&button, &QAbstractButton::clicked);
        QTest::keyPress(&button, Qt::Key_Return);
        QVERIFY(button.isDown() && clicks.isEmpty());
        QTest::keyRelease(&button, Qt::Key_Return);
        QCOMPARE(clicks.size(), 1);

        button.setAttribute(Qt::WA_UnderMouse);
        const QImage hot = button.grab().toImage();
        QTest::mousePress(&button, Qt::LeftButton);
        QVERIFY(button.grab().toImage() != hot);
        button.setEnabled(false);
        button.setEnabled(true);
        QCOMPARE(button.grab().toImage(), hot);
    }

    void scrollBarHasNoArrows()
    {
        FancyScrollbar bar(Qt::Vertical);
        bar.setRange(0, 100);
        bar.setPageStep(100);
        bar.resize(10, 200);
        const auto isThumb = [&](int y) {
            return bar.grab().toImage().pixelColor(5, y) != QColor(Qt::white);
        };
        QVERIFY(isThumb(1) && !isThumb(198));
        QTest::mouseClick(&bar, Qt::LeftButton, {}, {5, 198});
        QCOMPARE(bar.value(), 100);
        QVERIFY(!isThumb(1) && isThumb(198));
    }

    void nothingIsDarkOnADarkDesktop()
    {
        using Pair = std::pair<QPalette::ColorRole, QPalette::ColorRole>;
        for (const auto& [ground, text] :
             {Pair(QPalette::Base, QPalette::Text), Pair(QPalette::Window, QPalette::WindowText)}) {
            QPalette dark;
            dark.setColor(ground, Qt::black);
            dark.setColor(text, Qt::white);
            QApplication::setPalette(dark);
            QApplication::setPalette(dark, "QMenu");
            QToolTip::setPalette(dark);
            fancy::replaceDarkPalette();
            for (const QPalette& colors :
                 {QWidget().palette(), QMenu().palette(), QToolTip::palette()})
                QVERIFY(colors.color(ground).lightness() > 200 && colors.color(text) == Qt::black);
        }
    }

    /// For panes of these minimum widths, a drag to `x` takes the handle from 150 to `pos`.
    void splitter()
    {
        for (const auto& [firstMinimum, secondMinimum, x, pos] :
             {std::array{0, 0, 300, 300}, {50, 80, -20, 50}, {200, 200, 170, 100}}) {
            FancySplitter panes(Qt::Horizontal);
            QWidget first;
            QWidget second;
            first.setMinimumWidth(firstMinimum);
            second.setMinimumWidth(secondMinimum);
            panes.addWidget(&first);
            panes.addWidget(&second);
            panes.resize(300, 50);
            panes.setHandlePos(150);
            panes.show();
            QVERIFY(QTest::qWaitForWindowExposed(&panes));

            // Through the window, so that the events find their way as they do for a user.
            QWindow* window = panes.windowHandle();
            QTest::mousePress(window, Qt::LeftButton, {}, {150, 20});
            // A handle that vanishes at an edge is still held.
            QTest::mouseMove(window, {0, 20});
            QTest::mouseMove(window, {x, 20});
            QTest::mouseRelease(window, Qt::LeftButton, {}, {x, 20});
            QTest::mouseMove(window, {140, 20});
            QCOMPARE(panes.handlePos(), pos);
            QVERIFY(first.isVisible() == (pos > 0) && second.isVisible() == (pos < 300));
        }
    }

    void hint()
    {
        checkHint<FancyLineEdit>();
        checkHint<QTextEdit>();
    }

    void dropTakesTheHintsPlace()
    {
        HintedEditT<QLineEdit> edit({}, u"Hint"_s);
        QMimeData data;
        data.setText(u"dropped"_s);
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&edit, &enter);
        QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&edit, &drop);
        QCOMPARE(edit.userText(), u"dropped"_s);
    }

    /// No undo brings an example back where a text was composed.
    void typingTakesTheExamplesPlaceForGood()
    {
        Form form;
        HintedEditT<FancyLineEdit> edit({}, u"Hint"_s);
        edit.setExample(u"Example"_s);
        QVERIFY(form.show(&edit));
        edit.setFocus();
        QInputMethodEvent preedit(u"k"_s, {});
        QInputMethodEvent commit;
        commit.setCommitString(u"x"_s);
        QCoreApplication::sendEvent(&edit, &preedit);
        QCoreApplication::sendEvent(&edit, &commit);
        QCOMPARE(edit.userText(), u"x"_s);
        edit.undo();
        edit.undo();
        QVERIFY(!edit.text().contains(u"Example"_s));
    }

    void nameKeepsToOneLine()
    {
        HintedEditT<FancyLineEdit> edit(u"שם"_s, u"Hint"_s);
        edit.selectAll();
        edit.insert(u"a\tb\r\nc"_s);
        QCOMPARE(edit.userText(), u"a b c"_s);
        edit.undo();
        QCOMPARE(edit.userText(), u"שם"_s);
    }

    void settingTheSameNotesKeepsTheirHistory()
    {
        NotesTextEdit edit(u"one\u00A0two\r\nthree\u2028four"_s, u"Notes"_s);
        const QString text = u"one\u00A0two\nthree\nfour"_s;
        QCOMPARE(edit.userText(), text);
        edit.insertPlainText(u"!"_s);
        edit.setUserText(u'!' + text);
        edit.undo();
        QCOMPARE(edit.userText(), text);
    }

    void focusSelectsAll()
    {
        Form form;
        FancyLineEdit edit(u"Water the plants"_s);
        QVERIFY(form.show(&edit));
        edit.setFocus();
        QCOMPARE(edit.selectedText(), edit.text());
        // A context menu only borrows the focus.
        edit.setSelection(0, 5);
        for (const QEvent::Type type : {QEvent::FocusOut, QEvent::FocusIn}) {
            QFocusEvent event(type, Qt::PopupFocusReason);
            QCoreApplication::sendEvent(&edit, &event);
        }
        QCOMPARE(edit.selectedText(), u"Water"_s);
    }
};

QTEST_MAIN(TestControls)
#include "tst_controls.moc"
