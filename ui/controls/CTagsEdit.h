// The field for a task's tags.
#pragma once

#include "ui/controls/HintedEdit.h"

#include <QLineEdit>

class CTagsEdit : public HintedEditT<QLineEdit>
{
    Q_OBJECT

public:
    explicit CTagsEdit(const QString& text = {}, QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;
};
