// The commands that the toolbar and the task list share.
#pragma once

#include <QAction>
#include <QCoreApplication>

#include <memory>

/// Owns the four shared actions; each is made when first asked for and stays the same. They have
/// no shortcuts: the keys belong to the task list. Reached through dynamic_singleton; interface
/// thread.
class ActionsHelper
{
    Q_DECLARE_TR_FUNCTIONS(ActionsHelper)

public:
    [[nodiscard]] QAction* newTask();
    [[nodiscard]] QAction* editTask();
    [[nodiscard]] QAction* switchView();
    [[nodiscard]] QAction* cleanup();

    /// Sets the texts anew. The view switch reads "Toggle view" until the view changes next.
    void retranslateUI();

private:
    std::unique_ptr<QAction> m_newTask;
    std::unique_ptr<QAction> m_editTask;
    std::unique_ptr<QAction> m_switchView;
    std::unique_ptr<QAction> m_cleanup;
};
