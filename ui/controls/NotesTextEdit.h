// The notes field: as many lines high as its text has.
#pragma once

#include "ui/controls/HintedEdit.h"

class NotesTextEdit : public HintedEditT<QTextEdit>
{
    Q_OBJECT

public:
    NotesTextEdit(const QString& text, const QString& hintText, QWidget* parent = nullptr);

    /// Two lines, or one for each line of the text.
    [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The editor got (true) or lost (false) the focus.
    void gotFocus(bool focused);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void _countLines();

    int m_lines = 1;
};
