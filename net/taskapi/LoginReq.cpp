#include "net/taskapi/LoginReq.h"

#include "net/taskapi/ITaskApiRunnableDelegate.h"

using namespace Qt::StringLiterals;

namespace taskapi {

LoginReq::LoginReq(const QString& email, const QString& password)
    : m_email(email)
    , m_password(password)
{
}

QUrl LoginReq::url() const
{
    return urlForPath(u"/0/account/login/"_s);
}

QVariant LoginReq::payload() const
{
    return QVariantMap{
        {u"client_id"_s, client() ? client()->taskServerSecret() : QString()},
        {u"client_name"_s, u"TODO"_s}, // what servers know this client as
        {u"email"_s, m_email},
        {u"password"_s, m_password},
    };
}

} // namespace taskapi
