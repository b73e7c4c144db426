// The bar of commands under the task list.
#pragma once

#include <QToolBar>

class Toolbar : public QToolBar
{
    Q_OBJECT

public:
    explicit Toolbar(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QWidget* _addButton(QAction* action);
    void _addSpacer();
};
