#include "taskdb/SharedStorage.h"

namespace {
TaskStorage* shared = nullptr;
}

TaskStorage* sharedStorage()
{
    return shared;
}

void setSharedStorage(TaskStorage* storage)
{
    shared = storage;
}
