// The strip above the toolbar: a real window and store whose database may not grow any more.
#include "tests/base/Files.h"
#include "tests/ui/WindowTest.h"
#include "ui/CommitStrip.h"
#include "ui/controls/Prompt.h"

#include <QAccessible>
#include <QPushButton>
#include <QScrollBar>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

/// The largest file that this process may write, in bytes: what a quota looks like.
void limitFiles(rlim_t bytes)
{
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace

class CommitStripTest : public WindowTest
{
    Q_OBJECT

private:
    [[nodiscard]] CommitStrip* strip() const { return m_window->findChild<CommitStrip*>(); }
    [[nodiscard]] QPushButton* button(int number) const
    {
        return strip()->findChildren<QPushButton*>().value(number);
    }
    [[nodiscard]] bool isOnDisk(const char* name)
    {
        return contentsOf(store().databasePath()).contains(name);
    }

private Q_SLOTS:
    void init()
    {
        WindowTest::init();
        std::signal(SIGXFSZ, SIG_IGN);
        addNumberedTasks(100);
        store().setCommitInterval(50);
        store().saveStateRequest();
        m_window.reset();
        QCOMPARE(store().init(), TaskStorage::NoError);
        openWindow();
    }
    void cleanup()
    {
        limitFiles(RLIM_INFINITY);
        Prompt::setSaveAnswerer({});
        (void)m_log->take();
        WindowTest::cleanup();
    }

    void comesWithoutDisturbingAndGoesByItself()
    {
        list().verticalScrollBar()->setValue(60);
        edit(5);
        const QWidget* editor = QApplication::focusWidget();
        QVERIFY(editor->inherits("QLineEdit"));
        limitFiles(1000);
        keys(u"typed meanwhile"_s);
        QTRY_VERIFY(strip() && strip()->isVisible());
        const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(strip());
        QCOMPARE(spoken->role(), QAccessible::Notification);
        QVERIFY(spoken->text(QAccessible::Name).contains("File too large"_L1));
        QVERIFY(strip()->geometry().top() >= list().geometry().bottom());
        QCOMPARE(QApplication::focusWidget(), editor);
        QCOMPARE(list().verticalScrollBar()->value(), 60);
        QVERIFY(!isOnDisk("typed"));

        // Neither does trying in vain, and what is typed goes on.
        QTest::mouseClick(button(0), Qt::LeftButton);
        keys(u", too"_s);
        QCOMPARE(QApplication::focusWidget(), editor);

        limitFiles(RLIM_INFINITY);
        QTRY_VERIFY(!strip());
        QCOMPARE(QApplication::focusWidget(), editor);
        QCOMPARE(list().verticalScrollBar()->value(), 60);
        QTRY_VERIFY(isOnDisk("typed meanwhile, too"));
    }

    void copyIsWrittenElsewhere()
    {
        const QString copy = m_home->filePath(u"copy.xml"_s);
        Prompt::setSaveAnswerer([&](const Prompt::SaveQuestion& question) {
            return question.name.endsWith(".xml"_L1) ? copy : QString();
        });
        limitFiles(1000);
        addTasks({u"precious"_s});
        QTRY_VERIFY(strip());
        limitFiles(RLIM_INFINITY);
        key(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), button(0));
        key(Qt::Key_Tab);
        key(Qt::Key_Space);
        QVERIFY(contentsOf(copy).contains("precious"));
        QTRY_VERIFY(!strip());
        QVERIFY(listHasFocus());
    }
};

QTEST_MAIN(CommitStripTest)
#include "tst_commitstrip.moc"
