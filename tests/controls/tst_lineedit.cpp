// The line edit selects its text when it gets the focus, and only then.
#include "ui/controls/FancyLineEdit.h"

#include <QApplication>
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

    void focusSelectsAll_data()
    {
        QTest::addColumn<Qt::FocusReason>("reason");
        QTest::newRow("tab") << Qt::TabFocusReason;
        QTest::newRow("mouse") << Qt::MouseFocusReason;
        QTest::newRow("other") << Qt::OtherFocusReason;
    }

    void focusSelectsAll()
    {
        QFETCH(const Qt::FocusReason, reason);
        QSignalSpy focus(m_edit, &FancyLineEdit::gotFocus);
        m_edit->setFocus(reason);
        QCOMPARE(m_edit->selectedText(), m_edit->text());
        QCOMPARE(focus, (QList<QVariantList>{{true}}));
        m_other->setFocus();
        QCOMPARE(focus, (QList<QVariantList>{{true}, {false}}));
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
        QTest::qWait(QApplication::doubleClickInterval() + 1);
        _click();
        QVERIFY(!m_edit->hasSelectedText());
    }

    void contextMenuKeepsTheSelection()
    {
        m_edit->setFocus();
        m_edit->setSelection(0, 5);
        QFocusEvent opened(QEvent::FocusOut, Qt::PopupFocusReason);
        QCoreApplication::sendEvent(m_edit, &opened);
        QFocusEvent closed(QEvent::FocusIn, Qt::PopupFocusReason);
        QCoreApplication::sendEvent(m_edit, &closed);
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
