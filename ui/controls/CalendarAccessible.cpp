#include "ui/controls/CalendarAccessible.h"

#include <QAccessibleWidget>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

QAccessibleInterface* makeAccessible(const QString& className, QObject* object)
{
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget || className != "MyCalendarMonthWidget"_L1)
        return nullptr;
    return new QAccessibleWidget(widget, QAccessible::Grouping);
}

} // namespace

void installCalendarAccessible()
{
    [[maybe_unused]] static const bool done = (QAccessible::installFactory(makeAccessible), true);
}
