#include "net/taskapi/LogoutReq.h"

using namespace Qt::StringLiterals;

namespace taskapi {

QUrl LogoutReq::url() const
{
    return urlForPath(u"/0/account/logout/"_s);
}

} // namespace taskapi
