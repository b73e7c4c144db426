#include "ui/controls/ButtonAccessible.h"

#include <QAbstractButton>
#include <QAccessibleWidget>

using namespace Qt::StringLiterals;

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

QAccessibleInterface* makeAccessible(const QString& className, QObject* object)
{
    if (className != "FancyCheckbox"_L1 && className != "TinyButton"_L1)
        return nullptr;
    auto* button = qobject_cast<QAbstractButton*>(object);
    return button ? new ButtonAccessible(button) : nullptr;
}

} // namespace

void installButtonAccessible()
{
    [[maybe_unused]] static const bool done = (QAccessible::installFactory(makeAccessible), true);
}
