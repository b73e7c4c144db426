#include "app/core/TaskCore.h"

#include "app/base/PathHelper.h"
#include "app/base/dynamic_singleton.h"
#include "taskdb/SharedStorage.h"

TaskCore::~TaskCore()
{
    setSharedStorage(nullptr);
}

TaskStorage::ErrorType TaskCore::init()
{
    setSharedStorage(nullptr);
    m_storage.reset(new TaskStorage(PathHelper::databaseFile()));
    setSharedStorage(m_storage.get());
    const TaskStorage::ErrorType result = m_storage->init();
    // The task-server client, once there is one, gets this object as its delegate here.
    return result;
}

void TaskCore::apiTaskCompleted(taskapi::TaskApiClient* /*client*/,
                                taskapi::TaskApiRunnable* /*task*/)
{
}

void TaskCore::apiTaskFailed(taskapi::TaskApiClient* /*client*/, taskapi::TaskApiRunnable* /*task*/)
{
}

TaskStorage& taskStorage()
{
    const boost::shared_ptr<TaskStorage>& storage = dynamic_singleton<TaskCore>::inst().storage();
    Q_ASSERT(storage);
    return *storage;
}
