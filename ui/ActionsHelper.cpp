#include "ui/ActionsHelper.h"

#include "ui/Shortcuts.h"
#include "ui/icons/PictureIcon.h"

using namespace Qt::StringLiterals;

namespace {

/// The tool tip names the key that works all over the window; the action itself has none.
void setTexts(QAction& action, const QString& text, const QKeySequence& keys)
{
    action.setText(text);
    if (!keys.isEmpty())
        action.setToolTip(u"%1 (%2)"_s.arg(text, shortcuts::textOf(keys)));
}

QAction* made(std::unique_ptr<QAction>& action, const QString& icon, const QString& text,
              const QKeySequence& keys = {})
{
    if (!action) {
        action = std::make_unique<QAction>();
        action->setIcon(icons::fromPictures({icon}));
        setTexts(*action, text, keys);
    }
    return action.get();
}

void retranslate(const std::unique_ptr<QAction>& action, const QString& text,
                 const QKeySequence& keys = {})
{
    if (action)
        setTexts(*action, text, keys);
}

} // namespace

QAction* ActionsHelper::newTask()
{
    return made(m_newTask, u":/icons/toolbar_new"_s, tr("New"), shortcuts::newTask);
}

QAction* ActionsHelper::editTask()
{
    return made(m_editTask, u":/icons/toolbar_edit"_s, tr("Edit"), shortcuts::editTask);
}

QAction* ActionsHelper::switchView()
{
    return made(m_switchView, u":/icons/view_normal"_s, viewLabels().neutral);
}

ViewLabels ActionsHelper::viewLabels()
{
    return {tr("Toggle view"), tr("Normal"), tr("Compact")};
}

QAction* ActionsHelper::cleanup()
{
    return made(m_cleanup, u":/icons/toolbar_cleanup"_s, tr("Cleanup"));
}

void ActionsHelper::retranslateUI()
{
    retranslate(m_newTask, tr("New"), shortcuts::newTask);
    retranslate(m_editTask, tr("Edit"), shortcuts::editTask);
    retranslate(m_switchView, viewLabels().neutral);
    retranslate(m_cleanup, tr("Cleanup"));
}
