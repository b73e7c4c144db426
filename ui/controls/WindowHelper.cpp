#include "ui/controls/WindowHelper.h"

#include <QWidget>
#include <QWindow>

void windows::withdrawUnseen(QWidget& window)
{
    const QWindow* handle = window.windowHandle();
    if (window.isVisible() && handle && !handle->isExposed())
        window.hide();
}
