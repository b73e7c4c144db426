// What the two scrolling panes of the window share.
#pragma once

#include <QScrollArea>

/// A frameless scroll area with the program's scroll bars on the panel background.
class ScrollPanel : public QScrollArea
{
    Q_OBJECT

public:
    explicit ScrollPanel(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};
