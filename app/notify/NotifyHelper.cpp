#include "app/notify/NotifyHelper.h"

#include "app/base/ProductHelper.h"
#include "app/notify/Notification.h"

namespace {
bool initialise()
{
    return Notification::init(ProductHelper::productDisplayName());
}
} // namespace

NotifyHelper::NotifyHelper()
    : m_isInitted(initialise())
{
}

NotifyHelper::~NotifyHelper()
{
    if (m_isInitted)
        Notification::uninit();
}

bool NotifyHelper::show(const QString& title, const QString& text)
{
    if (!m_isInitted || !(Notification::isInitted() || initialise()))
        return false;
    // It deletes itself once it has left the screen.
    auto* notification = new Notification(title, text, {});
    notification->setAutoDelete(true);
    return notification->show();
}
