// The bar of commands under the task list.
#pragma once

#include <QToolBar>

class FancyToolBtn;

/// Shows its buttons without their texts where it is too narrow: what a tool bar has no room for is
/// out of reach.
class Toolbar : public QToolBar
{
    Q_OBJECT

public:
    explicit Toolbar(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    FancyToolBtn* _addButton(QAction* action);
    void _addSpacer();
    void _showTexts(bool shown);
    void _fit();
    void _measureSwitchView();

    QList<FancyToolBtn*> m_buttons;
    // As the style has them.
    QMargins m_margins;
    int m_spacing = 0;
    int m_switchViewWidth = 0;
};
