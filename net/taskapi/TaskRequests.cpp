#include "net/taskapi/TaskRequests.h"

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
        {u"client_id"_s, askClient(&ITaskApiRunnableDelegate::taskServerSecret)},
        {u"client_name"_s, u"TODO"_s}, // what servers know this client as
        {u"email"_s, m_email},
        {u"password"_s, m_password},
    };
}

QUrl LogoutReq::url() const
{
    return urlForPath(u"/0/account/logout/"_s);
}

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

StatusReq::StatusReq(int revision)
    : m_revision(revision)
{
}

QUrl StatusReq::url() const
{
    return urlForPath(u"/0/tasks/status/"_s);
}

QVariant StatusReq::payload() const
{
    return QVariantMap{{u"revision"_s, m_revision}};
}

} // namespace taskapi
