#include "ui/controls/ButtonAccessible.h"

#include "ui/controls/AccessibleFactory.h"
#include "ui/controls/FancyCheckbox.h"
#include "ui/controls/TinyButton.h"

#include <QAccessibleWidget>

namespace {

class ButtonAccessible final : public QAccessibleWidget
{
public:
    explicit ButtonAccessible(QAbstractButton* button)
        : QAccessibleWidget(button,
                            button->isCheckable() ? QAccessible::CheckBox : QAccessible::Button)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        const QString text = QAccessibleWidget::text(kind);
        return text.isEmpty() && kind == QAccessible::Name ? _button()->text() : text;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = _button()->isCheckable();
        state.checked = _button()->isChecked();
        state.pressed = _button()->isDown();
        return state;
    }

    QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (_button()->isEnabled())
            names.prepend(_mainAction());
        return names;
    }

    void doAction(const QString& name) override
    {
        if (name == _mainAction())
            _button()->click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    QAbstractButton* _button() const { return static_cast<QAbstractButton*>(widget()); }
    QString _mainAction() const
    {
        return _button()->isCheckable() ? toggleAction() : pressAction();
    }
};

} // namespace

void installButtonAccessible()
{
    installAccessible<FancyCheckbox, ButtonAccessible>();
    installAccessible<TinyButton, ButtonAccessible>();
}
