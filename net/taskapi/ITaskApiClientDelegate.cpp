#include "net/taskapi/ITaskApiClientDelegate.h"

namespace taskapi {

ITaskApiClientDelegate::~ITaskApiClientDelegate() = default;

} // namespace taskapi
