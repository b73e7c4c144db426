#include "net/taskapi/ITaskApiRunnableDelegate.h"

namespace taskapi {

ITaskApiRunnableDelegate::~ITaskApiRunnableDelegate() = default;

} // namespace taskapi
