// The line edit selects its text when it gets the focus, and only then.
#include "ui/controls/FancyLineEdit.h"

#include <QFocusEvent>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

class TestLineEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        auto* layout = new QVBoxLayout(m_window.get());
        m_other = new QLineEdit(m_window.get());
        m_edit = new FancyLineEdit(u"Water the plants"_s, m_window.get());
        layout->addWidget(m_other);
        layout->addWidget(m_edit);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_other->setFocus();
    }

    void cleanup() { m_window.reset(); }

    void focusSelectsAll()
    {
        for (const Qt::FocusReason reason : {Qt::TabFocusReason, Qt::OtherFocusReason}) {
            QSignalSpy focus(m_edit, &FancyLineEdit::gotFocus);
            m_edit->setFocus(reason);
            QCOMPARE(m_edit->selectedText(), m_edit->text());
            m_other->setFocus();
            QCOMPARE(focus, (QList<QVariantList>{{true}, {false}}));
        }
    }

    void clickSelectsOnce()
    {
        _click();
        QVERIFY(m_edit->hasFocus());
        QCOMPARE(m_edit->selectedText(), m_edit->text());
        _click();
        QVERIFY(!m_edit->hasSelectedText());
        m_other->setFocus();
        _click();
        QCOMPARE(m_edit->selectedText(), m_edit->text());
    }

    void firstDragSelectsWhatItCrosses()
    {
        const int y = m_edit->height() / 2;
        QTest::mousePress(m_edit, Qt::LeftButton, {}, {4, y});
        QTest::mouseMove(m_edit, {40, y});
        QTest::mouseRelease(m_edit, Qt::LeftButton, {}, {40, y});
        QVERIFY(m_edit->hasSelectedText());
        QVERIFY(m_edit->selectedText() != m_edit->text());
        _click();
        QVERIFY(!m_edit->hasSelectedText());
    }

    void contextMenuKeepsTheSelection()
    {
        m_edit->setFocus();
        m_edit->setSelection(0, 5);
        for (const QEvent::Type type : {QEvent::FocusOut, QEvent::FocusIn}) {
            QFocusEvent event(type, Qt::PopupFocusReason);
            QCoreApplication::sendEvent(m_edit, &event);
        }
        QCOMPARE(m_edit->selectedText(), u"Water"_s);
    }

private:
    void _click() { QTest::mouseClick(m_edit, Qt::LeftButton, {}, {30, m_edit->height() / 2}); }

    std::unique_ptr<QWidget> m_window;
    QLineEdit* m_other = nullptr;
    FancyLineEdit* m_edit = nullptr;
};

QTEST_MAIN(TestLineEdit)
#include "tst_lineedit.moc"
