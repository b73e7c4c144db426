#include "net/taskapi/CreateAccountReq.h"

using namespace Qt::StringLiterals;

namespace taskapi {

CreateAccountReq::CreateAccountReq(const QString& email, const QString& password,
                                   const QString& firstName, const QString& lastName,
                                   const QVariant& meta)
    : m_email(email)
    , m_password(password)
    , m_firstName(firstName)
    , m_lastName(lastName)
    , m_meta(meta)
{
}

QUrl CreateAccountReq::url() const
{
    return urlForPath(u"/0/account/new/"_s);
}

QVariant CreateAccountReq::payload() const
{
    return QVariantMap{
        {u"email"_s, m_email},        {u"password"_s, m_password}, {u"first_name"_s, m_firstName},
        {u"last_name"_s, m_lastName}, {u"meta"_s, m_meta},
    };
}

} // namespace taskapi
