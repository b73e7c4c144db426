#include "net/ITaskApiClientDelegate.h"

namespace taskapi {

ITaskApiClientDelegate::~ITaskApiClientDelegate() = default;

} // namespace taskapi
