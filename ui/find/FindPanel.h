// The panel that finds tasks, groups and commands.
#pragma once

#include "app/language/LocalizedWidget.h"
#include "taskdb/TodoTask.h"
#include "taskdb/search/TaskQuery.h"
#include "ui/find/Command.h"

#include <QKeyCombination>
#include <QList>
#include <QPointer>

#include <functional>

class FancyLineEdit;
class QTimer;
class ResultList;
class TaskSearch;

/// Lies over a part of its window and keeps the focus for as long as it is there. Escape, a click
/// beside it, or the focus going elsewhere in the window close it, which also ends its life. Every
/// key that reaches it stays here; the window's shortcuts work on. Follows the store.
class FindPanel : public LocalizedWidget
{
    Q_OBJECT

public:
    enum EMode
    {
        Everything,
        Commands, ///< without tasks
    };

    /// Opens over `area`, which lies in the window that becomes the panel's parent, and takes the
    /// focus. `commands` is asked for the list whenever something may have changed.
    FindPanel(EMode mode, const std::function<QList<Command>()>& commands, QWidget* area);
    ~FindPanel() override;
    Q_DISABLE_COPY_MOVE(FindPanel)

    /// The text stays, selected.
    void setMode(EMode mode);
    void retranslateUI() override;

Q_SIGNALS:
    /// The user wants to see a task, or to edit it. The panel has closed.
    void taskChosen(const TodoTask::Id& taskId, bool edit);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void _createWidgets();
    void _rememberFocus();
    void _giveFocusBack();
    void _onFocusMoved(const QWidget* to);
    void _place();

    void _onTextChanged();
    void _onFound(const QList<TodoTask::Id>& ids, bool complete);
    void _onStoreChanged();
    [[nodiscard]] QList<Command> _matchingCommands() const;
    [[nodiscard]] qsizetype _leading(const QList<Command>& commands) const;
    void _showResults(bool sameText);

    bool _takeKey(const QKeyEvent& event);
    [[nodiscard]] bool _mustWait(QKeyCombination key) const;
    void _obey(QKeyCombination key);
    void _obeyWaiting();
    void _choose(int row, bool edit);

    EMode m_mode;
    std::function<QList<Command>()> m_listCommands;
    QPointer<QWidget> m_area;
    FancyLineEdit* m_field = nullptr;
    ResultList* m_list = nullptr;
    TaskSearch* m_search = nullptr;
    QTimer* m_storeTimer = nullptr;
    qint32 m_modification;

    QList<Command> m_commands;
    QList<TodoTask::Id> m_tasks;
    TaskQuery m_query;
    bool m_hasResults = false; // for the text in the field
    bool m_isComplete = false;
    QList<QKeyCombination> m_waiting; // pressed before there were results to go by

    QPointer<QWidget> m_focusBefore;
    int m_cursorBefore = 0; // if that is a line edit
    int m_selectionBefore = -1;
    int m_selectedBefore = 0;
};
