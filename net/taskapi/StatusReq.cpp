#include "net/taskapi/StatusReq.h"

using namespace Qt::StringLiterals;

namespace taskapi {

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
