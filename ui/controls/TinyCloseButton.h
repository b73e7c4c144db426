// A tiny button that closes something.
#pragma once

#include "ui/controls/TinyButton.h"

/// Never takes the focus; its picture is the style's for closing a window.
class TinyCloseButton : public TinyButton
{
    Q_OBJECT

public:
    explicit TinyCloseButton(QWidget* parent = nullptr);
};
