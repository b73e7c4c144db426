// One row of the task list.
#pragma once

#include "taskdb/TodoTask.h"

#include <QWidget>

class DateWidget;
class ElidedLabel;
class FancyLineEdit;
class NotesTextEdit;
class QStackedLayout;
class TaskCheckbox;
class TaskRowHost;
template <class Editor>
class HintedEditT;

/// Shows a task as a checkbox and its name, or as a form to edit name, notes and due date in place.
/// Every change goes into the store at once. The row takes neither keys nor, unless edited, the
/// mouse: they belong to its host.
class TaskWidget : public QWidget
{
    Q_OBJECT

public:
    /// The longest name that can be typed, in UTF-16 code units: more than anybody means to paste.
    /// A longer stored one sets its own limit.
    static constexpr int longestName = 1'000'000;

    /// `host` is not owned and outlives the row.
    TaskWidget(const TodoTask::Id& id, TaskRowHost* host, QWidget* parent);

    [[nodiscard]] TodoTask::Id taskId() const { return m_id; }
    /// Shows another task, not being edited.
    void setTask(const TodoTask::Id& id);
    /// Reads the task anew from the store.
    void reload();

    /// Shows the form (true) or the plain row (false). `force`: also when already so.
    /// `noFocus`: the name field does not get the focus.
    void setEditing(bool editing, bool force, bool noFocus);
    [[nodiscard]] bool isEditing() const { return (m_state & editingBit) != 0; }
    /// To be called when the row is to be destroyed while it is being edited.
    void disconnectEdits();
    /// Height of the face now shown, in pixels.
    [[nodiscard]] int faceHeight() const;
    /// Gives the row that height, for the font of the moment.
    void fixHeight();

    [[nodiscard]] bool selected() const { return (m_state & selectedBit) != 0; }
    void setSelected(bool selected);

    [[nodiscard]] bool completed() const;
    void setCompleted(bool completed);

    /// Has the open calendar, if any, follow its field after the row was moved.
    void placePopup();

    /// What a row shows for a task with this name.
    [[nodiscard]] static QString shownName(const QString& name);

    /// Whether the mouse is being pressed on one of the row's controls.
    [[nodiscard]] bool isPressed() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private Q_SLOTS:
    void _stopEditing();
    void _nameTextChanged(const QString& text);
    void _notesTextChanged();
    void _checkboxChanged(int state);
    void _dueDateChanged(const QDateTime& time);
    void _someEditGotFocus(bool got);

private:
    static constexpr uint selectedBit = 1;
    static constexpr uint editingBit = 2;

    void _createViewLayout();
    void _createEditLayout();
    void _createNameEdit();
    void _connectEdits();
    [[nodiscard]] QWidget* _pictureLabel(const QString& picture) const;
    void _removeEditLayout();
    void _retranslateEdits();
    void _reloadEdits(const TodoTask& before);
    void _onFocusMoved(QWidget* from, QWidget* to);
    void _showCursor();
    void _setCheckboxes();
    void _updateVisuals();
    [[nodiscard]] QColor _backgroundCol() const;

    QStackedLayout* m_stack = nullptr;
    TaskCheckbox* m_viewCheckbox = nullptr;
    ElidedLabel* m_nameLabel = nullptr;
    // The form; all null while the row is not being edited.
    QWidget* m_editPage = nullptr;
    TaskCheckbox* m_editCheckbox = nullptr;
    HintedEditT<FancyLineEdit>* m_nameEdit = nullptr;
    NotesTextEdit* m_notesEdit = nullptr;
    DateWidget* m_dueDateEdit = nullptr;

    TodoTask::Id m_id;
    TodoTask m_task;
    TaskRowHost* m_host;
    uint m_state = 0;
    bool m_settingCheckbox = false;
};
