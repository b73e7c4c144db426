// Hinted editors: the hint comes and goes, and is never taken for what the user wrote.
#include "ui/controls/CTagsEdit.h"
#include "ui/controls/FancyLineEdit.h"
#include "ui/controls/HintedEdit.h"
#include "ui/controls/NotesTextEdit.h"

#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace {

QString rawText(const QLineEdit* edit)
{
    return edit->text();
}

QString rawText(const QTextEdit* edit)
{
    return edit->toPlainText();
}

bool isGrey(const QWidget* edit)
{
    return edit->palette().color(QPalette::Text) == QColor(Qt::gray);
}

/// A window with another field that takes the focus.
struct Form
{
    QWidget window;
    QVBoxLayout layout{&window};
    QLineEdit other;

    Form() { layout.addWidget(&other); }

    [[nodiscard]] bool show(QWidget* edit)
    {
        layout.addWidget(edit);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            return false;
        other.setFocus();
        return other.hasFocus();
    }
};

template <typename Edit>
void drop(Edit* edit, const QString& text)
{
    QMimeData data;
    data.setText(text);
    QWidget* target = edit;
    if constexpr (std::is_base_of_v<QTextEdit, Edit>)
        target = edit->viewport();
    const QPoint place(5, 5);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(target, &enter);
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(target, &event);
}

template <typename Editor>
void checkHint()
{
    Form form;
    HintedEditT<Editor> edit({}, u"Hint"_s);
    QVERIFY(form.show(&edit));
    QCOMPARE(edit.accessibleName(), u"Hint"_s);
    QVERIFY(edit.isHintShown() && isGrey(&edit) && edit.userText().isEmpty());
    QCOMPARE(rawText(&edit), u"Hint"_s);
    edit.setHintText(u"Tip"_s);
    QCOMPARE(rawText(&edit), u"Tip"_s);

    // Whoever hears of a change never reads the hint as the user's text.
    QStringList heard;
    QObject::connect(&edit, &Editor::textChanged, &edit, [&] { heard.append(edit.userText()); });
    edit.setFocus();
    QVERIFY(!edit.isHintShown() && !isGrey(&edit) && rawText(&edit).isEmpty());
    edit.undo();
    QVERIFY(edit.userText().isEmpty());
    form.other.setFocus();
    QVERIFY(edit.isHintShown());
    edit.setFocus();
    QTest::keyClicks(&edit, u"ab"_s);
    form.other.setFocus();
    QVERIFY(!edit.isHintShown() && !isGrey(&edit));
    edit.setFocus();
    form.other.setFocus();
    QCOMPARE(edit.userText(), u"ab"_s);
    heard.removeAll(u"a"_s);
    heard.removeAll(u"ab"_s);
    heard.removeAll(QString());
    QCOMPARE(heard, QStringList());

    edit.setUserText({});
    QVERIFY(edit.isHintShown());
    drop(&edit, u"dropped"_s);
    QCOMPARE(edit.userText(), u"dropped"_s);
    edit.clear();
    QVERIFY(edit.isHintShown());
    edit.leaveHint();
    QVERIFY(!edit.isHintShown() && rawText(&edit).isEmpty());
    edit.setUserText(u"Tip"_s);
    QVERIFY(!edit.isHintShown() && !isGrey(&edit));
    QCOMPARE(edit.userText(), u"Tip"_s);
}

template <typename Editor>
void checkExample()
{
    Form form;
    HintedEditT<Editor> edit({}, u"Hint"_s);
    edit.setStoredText(u"Example"_s);
    QVERIFY(form.show(&edit));
    for (const Qt::FocusReason reason :
         {Qt::TabFocusReason, Qt::OtherFocusReason, Qt::ActiveWindowFocusReason}) {
        edit.setFocus(reason);
        QCOMPARE(edit.userText(), u"Example"_s);
        QVERIFY(edit.isExampleShown() && !isGrey(&edit));
        form.other.setFocus();
        QVERIFY(edit.isHintShown() && !edit.isExampleShown());
    }

    edit.setFocus();
    QFocusEvent menu(QEvent::FocusOut, Qt::PopupFocusReason);
    QCoreApplication::sendEvent(&edit, &menu);
    QVERIFY(edit.isExampleShown());
    edit.setStoredText(u"Another"_s);
    QCOMPARE(rawText(&edit), u"Another"_s);

    // Typing takes its place for good: no undo brings it back.
    QTest::keyClicks(&edit, u"x"_s);
    QCOMPARE(rawText(&edit), u"x"_s);
    QVERIFY(!edit.isExampleShown());
    QTest::keyClicks(&edit, u"y"_s);
    for (int i = 0; i < 3; ++i)
        edit.undo();
    QVERIFY(!rawText(&edit).contains(u"Another"_s));

    edit.setUserText({});
    form.other.setFocus();
    edit.setFocus();
    edit.leaveHint();
    form.other.setFocus();
    QCOMPARE(edit.userText(), u"Another"_s);
}

} // namespace

class TestHintedEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hint()
    {
        checkHint<QLineEdit>();
        checkHint<FancyLineEdit>();
        checkHint<QTextEdit>();
    }

    void example()
    {
        checkExample<QLineEdit>();
        checkExample<FancyLineEdit>();
        checkExample<QTextEdit>();
    }

    /// The first edit over an example may come from an input method.
    void composingOverTheExample()
    {
        Form form;
        HintedEditT<FancyLineEdit> edit({}, u"Hint"_s);
        edit.setStoredText(u"Example"_s);
        QVERIFY(form.show(&edit));
        edit.setFocus();
        QInputMethodEvent preedit(u"k"_s, {});
        QCoreApplication::sendEvent(&edit, &preedit);
        QInputMethodEvent commit;
        commit.setCommitString(u"か"_s);
        QCoreApplication::sendEvent(&edit, &commit);
        QCOMPARE(edit.userText(), u"か"_s);
        edit.undo();
        edit.undo();
        QVERIFY(!edit.text().contains(u"Example"_s));
    }

    void settingTheSameTextKeepsCursorAndHistory()
    {
        Form form;
        NotesTextEdit edit(u"one\u00A0two\r\nthree\u2028four"_s, u"Notes"_s);
        QVERIFY(form.show(&edit));
        const QString text = u"one\u00A0two\nthree\nfour"_s;
        QCOMPARE(edit.userText(), text);
        edit.setFocus();
        edit.moveCursor(QTextCursor::End);
        QTest::keyClicks(&edit, u"!"_s);
        edit.setUserText(text + u'!');
        QVERIFY(edit.textCursor().atEnd());
        edit.undo();
        QCOMPARE(edit.userText(), text);
    }

    void colorsFollowTheTheme()
    {
        QWidget window;
        HintedEditT<QLineEdit> edit({}, u"Hint"_s, &window);
        edit.setUserText(u"text"_s);
        QPalette theme;
        theme.setColor(QPalette::Text, Qt::white);
        theme.setColor(QPalette::Base, Qt::darkBlue);
        window.setPalette(theme);
        QCOMPARE(edit.palette().color(QPalette::Text), QColor(Qt::white));
        edit.setBaseColor(0xF6FBFF);
        QCOMPARE(edit.palette().color(QPalette::Text), QColor(Qt::black));
        edit.setUserText({});
        QCOMPARE(edit.palette().color(QPalette::Disabled, QPalette::Base), QColor(0xF6FBFF));
        QVERIFY(isGrey(&edit));
    }

    void notesGrowWithTheirLines_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("lines");
        QTest::newRow("empty") << QString() << 2;
        QTest::newRow("one line") << u"a"_s << 2;
        QTest::newRow("five line feeds") << u"a\nb\nc\nd\ne\nf"_s << 6;
        QTest::newRow("trailing") << u"a\n\n"_s << 3;
        QTest::newRow("line separators") << u"a\u2028b\u2028c\n\u2029"_s << 5;
    }

    void notesGrowWithTheirLines()
    {
        QFETCH(const QString, text);
        QFETCH(const int, lines);
        NotesTextEdit edit(text, u"Notes"_s);
        const int height = lines * edit.fontMetrics().lineSpacing() + 8;
        QCOMPARE(edit.minimumSizeHint().height(), height);
        edit.setUserText(u"one"_s);
        edit.setUserText(text);
        QCOMPARE(edit.sizeHint().height(), height);
    }

    void notesStayBelowTheHighestWidget()
    {
        NotesTextEdit edit(QString(200'000, u'\n'), u"Notes"_s);
        QCOMPARE(edit.sizeHint().height(), 1'000'000);
    }

    void notesTakeOnlyPlainText()
    {
        Form form;
        NotesTextEdit edit({}, u"Notes"_s);
        QSignalSpy focus(&edit, &NotesTextEdit::gotFocus);
        QVERIFY(form.show(&edit));
        edit.setFocus();
        edit.setUserText(u"<b>x</b>"_s);
        QCOMPARE(edit.userText(), u"<b>x</b>"_s);
        QTest::keyClick(&edit, Qt::Key_Tab);
        QVERIFY(!edit.hasFocus());
        QCOMPARE(focus, (QList<QVariantList>{{true}, {false}}));
    }

    /// A drag keeps the release of the button to itself: the press must end all the same.
    void pressEndsWithoutItsRelease()
    {
        struct Filter : QObject
        {
            int timers = 0;
            bool eventFilter(QObject* /*watched*/, QEvent* event) override
            {
                timers += event->type() == QEvent::Timer ? 1 : 0;
                return event->type() == QEvent::MouseButtonRelease;
            }
        };
        NotesTextEdit edit(QString(30, u'\n') + u"end"_s, u"Notes"_s);
        edit.resize(200, 60);
        edit.show();
        const auto move = [&edit](const QPoint& to) {
            QMouseEvent event(QEvent::MouseMove, to, edit.viewport()->mapToGlobal(to), Qt::NoButton,
                              Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(edit.viewport(), &event);
        };
        QTest::mousePress(edit.viewport(), Qt::LeftButton, {}, {5, 5});
        Filter filter;
        edit.installEventFilter(&filter);
        edit.viewport()->installEventFilter(&filter);
        move({5, 200});
        QTest::mouseRelease(edit.viewport(), Qt::LeftButton, {}, {5, 20});
        QTRY_VERIFY(filter.timers > 0);
        const int position = edit.textCursor().position();
        move({5, 40});
        QCOMPARE(edit.textCursor().position(), position);
    }

    /// Only a field that has lines out of sight keeps the wheel.
    void wheelGoesOn()
    {
        struct Parent : QWidget
        {
            void wheelEvent(QWheelEvent*) override { ++turns; }
            int turns = 0;
        } parent;
        NotesTextEdit edit(u"a\nb\nc"_s, u"Notes"_s, &parent);
        for (const int missing : {0, 20}) {
            parent.turns = 0;
            edit.resize(200, edit.sizeHint().height() - missing);
            parent.show();
            QVERIFY(QTest::qWaitForWindowExposed(&parent));
            QWheelEvent turn({5, 5}, edit.viewport()->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {},
                             {}, Qt::NoScrollPhase, false);
            QSpontaneKeyEvent::setSpontaneous(&turn); // others do not travel on
            qApp->notify(edit.viewport(), &turn);
            QCOMPARE(parent.turns, missing == 0 ? 1 : 0);
        }
    }

    void tags()
    {
        CTagsEdit edit;
        QCOMPARE(edit.text(), u"Tags"_s);
        QVERIFY(!edit.hasFrame() && edit.userText().isEmpty());
    }
};

QTEST_MAIN(TestHintedEdit)
#include "tst_hintededit.moc"
