// Editors that show a grey hint as long as they are empty and elsewhere has the focus.
#pragma once

#include "ui/controls/OneLine.h"

#include <QApplication>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QPalette>
#include <QScopedValueRollback>
#include <QTextDocument>
#include <QTextEdit>

#include <type_traits>

/// An editor, QTextEdit or QLineEdit or derived from one, with a hint. While the hint is shown it
/// stands in the editor as its text: readers ask userText(), writers call setUserText().
/// The editor can have an example: focus-in shows it in place of the hint, and
/// focus-out takes it away again unless it was edited or accepted by leaveHint().
template <typename Editor>
class HintedEditT : public Editor
{
public:
    HintedEditT(const QString& text, const QString& hintText, QWidget* parent = nullptr);

    [[nodiscard]] bool isHintShown() const { return m_content == EContent::hint; }
    /// Whether the example stands there, neither edited nor accepted.
    [[nodiscard]] bool isExampleShown() const { return m_content == EContent::example; }

    /// What the user wrote, or the example; empty while the hint is shown. That of a line edit has
    /// blanks for the line breaks and tabs that were pasted.
    [[nodiscard]] QString userText() const { return isHintShown() ? QString() : _text(); }
    /// Puts a text in, as if the user had written it; an empty one brings the hint back, unless
    /// the editor has the focus. A text that stands there already keeps cursor and undo history.
    void setUserText(const QString& text);

    /// A hint being shown is replaced. The hint is the accessible name, too.
    void setHintText(const QString& hintText);
    /// Sets the example; one being shown is replaced.
    void setExample(const QString& text);

    /// Takes a shown hint away, leaving the editor empty; makes a shown example the user's text.
    void leaveHint();

    /// A fixed background, and a text colour that can be read on it under any theme.
    void setBaseColor(const QColor& color);
    /// Colours the text and its selection, but not the hint; an invalid colour ends that.
    void setMark(const QColor& color);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    static constexpr bool isTextEdit = std::is_base_of_v<QTextEdit, Editor>;

    enum class EContent
    {
        hint,
        example,
        replacedExample, ///< the user's text; undo would bring the example back
        usersText
    };

    void _setContent(EContent content);
    void _showHintText();
    void _onTextChanged();
    void _alignWithHint();
    void _acceptExample();
    void _forgetHistory();
    void _makeRoom();
    void _replaceText(const QString& text);
    [[nodiscard]] bool _losesFocusToOwnTool(const QFocusEvent* event) const;
    [[nodiscard]] bool _isEmpty() const;
    [[nodiscard]] QString _text() const;
    [[nodiscard]] static QString _asRead(QString text);

    QPalette m_normalPalette;
    QPalette m_hintPalette;
    QColor m_mark;
    QString m_hintText;
    QString m_example;
    EContent m_content = EContent::usersText;
    bool m_replacing = false; ///< the text is changed from here
    bool m_composing = false; ///< an input method has more to come
};

template <typename Editor>
HintedEditT<Editor>::HintedEditT(const QString& text, const QString& hintText, QWidget* parent)
    : Editor(parent)
    , m_normalPalette(this->palette())
    , m_hintPalette(m_normalPalette)
    , m_hintText(hintText)
{
    m_hintPalette.setColor(QPalette::Text, Qt::gray);
    this->setAccessibleName(hintText);
    _alignWithHint();
    QObject::connect(this, &Editor::textChanged, this, [this] { _onTextChanged(); });
    if (!text.isEmpty())
        _replaceText(text);
    _showHintText();
}

template <typename Editor>
void HintedEditT<Editor>::_setContent(EContent content)
{
    m_content = content;
    QPalette colors = isHintShown() ? m_hintPalette : m_normalPalette;
    if (m_mark.isValid() && !isHintShown()) {
        colors.setColor(QPalette::Text, m_mark);
        colors.setColor(QPalette::Highlight, m_mark);
    }
    this->setPalette(colors);
}

/// A line begins where the hint does, whichever way its script runs.
template <typename Editor>
void HintedEditT<Editor>::_alignWithHint()
{
    if constexpr (!isTextEdit)
        this->setAlignment(Qt::AlignAbsolute |
                           (this->isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft));
}

template <typename Editor>
void HintedEditT<Editor>::setUserText(const QString& text)
{
    const bool hadHint = isHintShown();
    if (hadHint && text.isEmpty())
        return;
    if (hadHint)
        _setContent(EContent::usersText);
    _acceptExample();
    if (hadHint || _asRead(text) != _text())
        _replaceText(text);
    if (text.isEmpty() && !this->hasFocus())
        _showHintText();
}

template <typename Editor>
void HintedEditT<Editor>::setHintText(const QString& hintText)
{
    this->setAccessibleName(hintText);
    m_hintText = hintText;
    if (!isHintShown()) {
        if (_isEmpty() && !this->hasFocus())
            _showHintText();
    } else if (hintText.isEmpty()) {
        leaveHint();
    } else {
        _replaceText(hintText);
    }
}

template <typename Editor>
void HintedEditT<Editor>::setExample(const QString& text)
{
    m_example = text;
    if (!isExampleShown())
        return;
    _setContent(text.isEmpty() ? EContent::usersText : EContent::example);
    _replaceText(text);
    this->selectAll();
}

template <typename Editor>
void HintedEditT<Editor>::leaveHint()
{
    if (isHintShown()) {
        _setContent(EContent::usersText);
        _replaceText({});
    }
    _acceptExample();
}

template <typename Editor>
void HintedEditT<Editor>::setBaseColor(const QColor& color)
{
    m_normalPalette.setColor(QPalette::Base, color);
    m_hintPalette.setColor(QPalette::Base, color);
    const QColor text = color.lightness() < 128 ? Qt::white : Qt::black;
    m_normalPalette.setColor(QPalette::Active, QPalette::Text, text);
    m_normalPalette.setColor(QPalette::Inactive, QPalette::Text, text);
    _setContent(m_content);
}

template <typename Editor>
void HintedEditT<Editor>::setMark(const QColor& color)
{
    m_mark = color;
    _setContent(m_content);
}

template <typename Editor>
void HintedEditT<Editor>::focusInEvent(QFocusEvent* event)
{
    if (isHintShown()) {
        _setContent(m_example.isEmpty() ? EContent::usersText : EContent::example);
        _replaceText(m_example);
        // Also after a click, so that typing takes the example's place.
        this->selectAll();
    }
    Editor::focusInEvent(event);
}

template <typename Editor>
void HintedEditT<Editor>::focusOutEvent(QFocusEvent* event)
{
    // A context menu only borrows the focus: its commands are meant for what stands here.
    if (event->reason() != Qt::PopupFocusReason && !_losesFocusToOwnTool(event))
        _showHintText();
    Editor::focusOutEvent(event);
}

/// Whether a tool window that belongs to this editor has been activated: the one editing is still
/// at it.
template <typename Editor>
bool HintedEditT<Editor>::_losesFocusToOwnTool(const QFocusEvent* event) const
{
    const QWidget* active = QApplication::activeWindow();
    return event->reason() == Qt::ActiveWindowFocusReason && active &&
           active->windowType() == Qt::Tool && active->parentWidget() &&
           active->parentWidget()->isAncestorOf(this);
}

template <typename Editor>
void HintedEditT<Editor>::dropEvent(QDropEvent* event)
{
    // A drop needs no focus.
    if (event->mimeData()->hasText())
        _makeRoom();
    Editor::dropEvent(event);
    if (_isEmpty() && !this->hasFocus())
        _showHintText();
}

template <typename Editor>
void HintedEditT<Editor>::inputMethodEvent(QInputMethodEvent* event)
{
    if (isHintShown() && !(event->commitString().isEmpty() && event->preeditString().isEmpty()))
        leaveHint();
    m_composing = !event->preeditString().isEmpty();
    Editor::inputMethodEvent(event);
    _forgetHistory();
}

template <typename Editor>
void HintedEditT<Editor>::_showHintText()
{
    if (isHintShown() || m_hintText.isEmpty() || !(_isEmpty() || isExampleShown()))
        return;
    // Before the text: whoever hears of the change must not take the hint for the user's words.
    _setContent(EContent::hint);
    _replaceText(m_hintText);
}

/// An edit, or a text put in past setUserText().
template <typename Editor>
void HintedEditT<Editor>::_onTextChanged()
{
    if (m_replacing || (isHintShown() && _text() == m_hintText))
        return;
    if (isHintShown())
        _setContent(EContent::usersText);
    _acceptExample();
    if (_isEmpty() && !this->hasFocus())
        _showHintText();
}

template <typename Editor>
void HintedEditT<Editor>::_acceptExample()
{
    if (!isExampleShown())
        return;
    _setContent(EContent::replacedExample);
    _forgetHistory();
}

/// Undo must not bring the example back as something the user wrote.
template <typename Editor>
void HintedEditT<Editor>::_forgetHistory()
{
    // Clearing the history would cut off what an input method is about to compose.
    if (m_content != EContent::replacedExample || m_composing)
        return;
    _setContent(EContent::usersText);
    if constexpr (isTextEdit) {
        this->document()->clearUndoRedoStacks();
    } else {
        const int cursor = this->cursorPosition();
        this->setText(this->text());
        this->setCursorPosition(cursor);
    }
}

/// Clears away whatever is not the user's.
template <typename Editor>
void HintedEditT<Editor>::_makeRoom()
{
    if (isExampleShown()) {
        _setContent(EContent::usersText);
        _replaceText({});
    }
    leaveHint();
}

/// Also clears the undo history.
template <typename Editor>
void HintedEditT<Editor>::_replaceText(const QString& text)
{
    const QScopedValueRollback replacing(m_replacing, true);
    if constexpr (isTextEdit) {
        const int position = this->hasFocus() ? this->textCursor().position() : 0;
        this->setPlainText(text);
        QTextCursor cursor = this->textCursor();
        cursor.setPosition(qMin(position, this->document()->characterCount() - 1));
        this->setTextCursor(cursor);
    } else {
        const int position = this->cursorPosition();
        this->setText(text);
        // Without the focus it shows the beginning.
        this->setCursorPosition(this->hasFocus() ? qMin(position, int(text.size())) : 0);
    }
}

template <typename Editor>
bool HintedEditT<Editor>::_isEmpty() const
{
    if constexpr (isTextEdit)
        return this->document()->isEmpty();
    else
        return this->text().isEmpty();
}

template <typename Editor>
QString HintedEditT<Editor>::_text() const
{
    // Not toPlainText(): it turns no-break spaces into blanks.
    if constexpr (isTextEdit)
        return _asRead(this->document()->toRawText());
    else
        return _asRead(this->text());
}

/// A text as its user text reads once it is in the editor.
template <typename Editor>
QString HintedEditT<Editor>::_asRead(QString text)
{
    if constexpr (!isTextEdit) {
        return fancy::onOneLine(text);
    } else {
        text.replace(QLatin1StringView("\r\n"), QLatin1StringView("\n"));
        for (const char16_t separator : {u'\r', u'\u2028', u'\u2029'})
            text.replace(QChar(separator), QChar(u'\n'));
        return text;
    }
}
