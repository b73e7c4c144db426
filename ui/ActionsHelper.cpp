#include "ui/ActionsHelper.h"

#include "ui/icons/PictureIcon.h"

using namespace Qt::StringLiterals;

namespace {

QAction* made(std::unique_ptr<QAction>& action, const QString& icon, const QString& text)
{
    if (!action)
        action = std::make_unique<QAction>(icons::fromPictures({icon}), text);
    return action.get();
}

void retranslate(const std::unique_ptr<QAction>& action, const QString& text)
{
    if (action)
        action->setText(text);
}

} // namespace

QAction* ActionsHelper::newTask()
{
    return made(m_newTask, u":/icons/toolbar_new"_s, tr("New"));
}

QAction* ActionsHelper::editTask()
{
    return made(m_editTask, u":/icons/toolbar_edit"_s, tr("Edit"));
}

QAction* ActionsHelper::switchView()
{
    return made(m_switchView, u":/icons/view_normal"_s, tr("Toggle view"));
}

QAction* ActionsHelper::cleanup()
{
    return made(m_cleanup, u":/icons/toolbar_cleanup"_s, tr("Cleanup"));
}

void ActionsHelper::retranslateUI()
{
    retranslate(m_newTask, tr("New"));
    retranslate(m_editTask, tr("Edit"));
    retranslate(m_switchView, tr("Toggle view"));
    retranslate(m_cleanup, tr("Cleanup"));
}
