#include "ui/controls/UndoKeys.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTextDocument>
#include <QTextEdit>

namespace {

enum class ECommand
{
    none,
    undo,
    redo
};

ECommand commandOf(const QKeyEvent* event)
{
    if (event->matches(QKeySequence::Undo))
        return ECommand::undo;
    const bool isCtrlY = event->keyCombination() == (Qt::CTRL | Qt::Key_Y);
    return isCtrlY || event->matches(QKeySequence::Redo) ? ECommand::redo : ECommand::none;
}

bool isAvailable(const QLineEdit* editor, ECommand command)
{
    return command == ECommand::undo ? editor->isUndoAvailable() : editor->isRedoAvailable();
}

bool isAvailable(const QTextEdit* editor, ECommand command)
{
    const QTextDocument* document = editor->document();
    return command == ECommand::undo ? document->isUndoAvailable() : document->isRedoAvailable();
}

template <typename Editor>
class UndoKeys final : public QObject
{
public:
    explicit UndoKeys(Editor* editor)
        : QObject(editor)
        , m_editor(editor)
    {
        editor->installEventFilter(this);
    }

    bool eventFilter(QObject* /*editor*/, QEvent* event) override
    {
        if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
            return false;
        const ECommand command = commandOf(static_cast<QKeyEvent*>(event));
        if (command == ECommand::none)
            return false;
        const bool own = isAvailable(m_editor, command);
        event->setAccepted(own);
        if (own && event->type() == QEvent::KeyPress)
            command == ECommand::undo ? m_editor->undo() : m_editor->redo();
        return true;
    }

private:
    Editor* m_editor;
};

} // namespace

void passUnusedUndo(QWidget* editor)
{
    if (auto* line = qobject_cast<QLineEdit*>(editor))
        new UndoKeys(line);
    else if (auto* text = qobject_cast<QTextEdit*>(editor))
        new UndoKeys(text);
}
