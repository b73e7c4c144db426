#include "net/taskapi/ApiObject.h"

namespace taskapi {

ApiObject::~ApiObject() = default;

void ApiObject::updateFromApiDict(const QVariantMap& dict)
{
    m_dict = dict;
}

} // namespace taskapi
