// The check box of a task.
#pragma once

#include "ui/controls/FancyCheckbox.h"

/// Marks a task as done. All boxes share their pictures.
class TaskCheckbox : public FancyCheckbox
{
    Q_OBJECT

public:
    explicit TaskCheckbox(QWidget* parent = nullptr);

private:
    [[nodiscard]] static const Icons& _pictures();
};
