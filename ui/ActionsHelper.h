// The commands that the toolbar and the task list share.
#pragma once

#include <QAction>
#include <QCoreApplication>

#include <memory>

/// What the switch of the view reads, in the language of the moment.
struct ViewLabels
{
    QString neutral;
    QString normal;  ///< in the compact view
    QString compact; ///< in the normal one
};

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
    [[nodiscard]] static ViewLabels viewLabels();

    /// Sets the texts anew. The view switch has its neutral label until the view changes next.
    void retranslateUI();

private:
    std::unique_ptr<QAction> m_newTask;
    std::unique_ptr<QAction> m_editTask;
    std::unique_ptr<QAction> m_switchView;
    std::unique_ptr<QAction> m_cleanup;
};
