// A label for texts with links.
#pragma once

#include <QLabel>

/// Shows no context menu; each of its links is one stop of the Tab key.
class LinkLabel : public QLabel
{
    Q_OBJECT

public:
    explicit LinkLabel(QWidget* parent = nullptr);
    explicit LinkLabel(const QString& text, QWidget* parent = nullptr);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
};
