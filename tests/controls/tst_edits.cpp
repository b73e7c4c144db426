// Editors: the line edit selects its text when it gets the focus; the hint of a hinted editor
// comes and goes, and is never taken for what the user wrote.
#include "ui/controls/FancyLineEdit.h"
#include "ui/controls/HintedEdit.h"
#include "ui/controls/NotesTextEdit.h"

#include <QMimeData>
#include <QTest>
#include <QVBoxLayout>

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
    QVERIFY(edit.isHintShown() && edit.userText().isEmpty());
    QStringList heard;
    QObject::connect(&edit, &Editor::textChanged, &edit, [&] { heard += edit.userText(); });
    edit.setFocus();
    edit.undo();
    QVERIFY(!edit.isHintShown() && edit.userText().isEmpty());
    form.other.setFocus();
    QVERIFY(edit.isHintShown());
    edit.setFocus();
    QTest::keyClicks(&edit, u"ab"_s);
    form.other.setFocus();
    edit.setUserText({});
    QVERIFY(edit.isHintShown());
    // Whoever hears of a change never reads the hint as the user's text, who may write the same.
    heard.removeDuplicates();
    QCOMPARE(heard, (QStringList{QString(), u"a"_s, u"ab"_s}));
    edit.setUserText(u"Hint"_s);
    QCOMPARE(edit.userText(), u"Hint"_s);
}

} // namespace

class TestEdits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

    /// No undo brings an example back, whether a text took its place or was composed there.
    void typingTakesTheExamplesPlaceForGood()
    {
        for (const bool composed : {false, true}) {
            Form form;
            HintedEditT<FancyLineEdit> edit({}, u"Hint"_s);
            edit.setExample(u"Example"_s);
            QVERIFY(form.show(&edit));
            edit.setFocus();
            QInputMethodEvent preedit(u"k"_s, {});
            QInputMethodEvent commit;
            commit.setCommitString(u"x"_s);
            if (composed)
                QCoreApplication::sendEvent(&edit, &preedit);
            QCoreApplication::sendEvent(&edit, &commit);
            QCOMPARE(edit.userText(), u"x"_s);
            edit.undo();
            edit.undo();
            QVERIFY(!edit.text().contains(u"Example"_s));
        }
    }

    void nameKeepsToOneLineThatBeginsWhereTheHintDoes()
    {
        HintedEditT<FancyLineEdit> edit(u"שם"_s, u"Hint"_s);
        edit.resize(300, edit.sizeHint().height());
        QCOMPARE(edit.cursorPositionAt({150, edit.height() / 2}), 0);
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

    void notesStayBelowTheHighestWidget()
    {
        NotesTextEdit edit(QString(200'000, u'\n'), u"Notes"_s);
        QCOMPARE(edit.sizeHint().height(), 1'000'000);
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

        const int y = edit.height() / 2;
        form.other.setFocus();
        QTest::mouseClick(&edit, Qt::LeftButton, {}, {30, y});
        QCOMPARE(edit.selectedText(), edit.text());
        QTest::mouseClick(&edit, Qt::LeftButton, {}, {30, y});
        QVERIFY(!edit.hasSelectedText());
        form.other.setFocus();
        QTest::mousePress(&edit, Qt::LeftButton, {}, {4, y});
        QTest::mouseMove(&edit, {40, y});
        QTest::mouseRelease(&edit, Qt::LeftButton, {}, {40, y});
        QVERIFY(edit.hasSelectedText() && edit.selectedText() != edit.text());
    }
};

QTEST_MAIN(TestEdits)
#include "tst_edits.moc"
