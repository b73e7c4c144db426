// How self-painted widgets come by what assistive technologies learn about them.
#pragma once

#include <QAccessible>
#include <QObject>

/// Has a `Face`, made from the widget and the arguments, describe each widget of class `Class` or
/// derived from it, unless the derived class has a face of its own. Further calls do nothing.
template <typename Class, typename Face, auto... arguments>
void installAccessible()
{
    constexpr auto make = [](const QString& className, QObject* object) -> QAccessibleInterface* {
        auto* widget = qobject_cast<Class*>(object);
        const QLatin1StringView ownName(Class::staticMetaObject.className());
        return widget && className == ownName ? new Face(widget, arguments...) : nullptr;
    };
    [[maybe_unused]] static const bool done = (QAccessible::installFactory(make), true);
}
