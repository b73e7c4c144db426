// A dialog of which there is at most one.
#pragma once

#include "app/language/LocalizedDialog.h"

#include <QHideEvent>
#include <QPointer>

/// Base of `Dialog`, which shows itself by showOne() and is gone once it is closed. Interface
/// thread.
template <typename Dialog>
class SingleDialog : public LocalizedDialog
{
protected:
    using LocalizedDialog::LocalizedDialog;

    /// Brings the dialog up: the one that is open, or else a new one, made from the arguments.
    template <typename... Arguments>
    static void showOne(Arguments&&... arguments)
    {
        if (!m_dialogInst)
            m_dialogInst = new Dialog(std::forward<Arguments>(arguments)...);
        m_dialogInst->setWindowState(m_dialogInst->windowState() & ~Qt::WindowMinimized);
        m_dialogInst->show();
        m_dialogInst->raise();
        m_dialogInst->activateWindow();
    }

    void closeEvent(QCloseEvent* event) override
    {
        LocalizedDialog::closeEvent(event);
        _dismiss();
    }

    void hideEvent(QHideEvent* event) override
    {
        LocalizedDialog::hideEvent(event);
        // A spontaneous one means minimised, or on another desktop.
        if (!event->spontaneous())
            _dismiss();
    }

private:
    void _dismiss()
    {
        if (m_dialogInst == this)
            m_dialogInst = nullptr;
        deleteLater();
    }

    inline static QPointer<Dialog> m_dialogInst;
};
