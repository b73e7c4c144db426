// The white top of a dialog, with what the dialog is for.
#pragma once

#include <QWidget>

class QLabel;

/// A text above a line.
class DialogHeader : public QWidget
{
    Q_OBJECT

public:
    explicit DialogHeader(QWidget* parent);

    /// `text`: rich text of our own.
    void setText(const QString& text);

private:
    QLabel* m_label;
};
