#include "app/core/TaskCore.h"

#include "app/base/PathHelper.h"
#include "app/base/dynamic_singleton.h"
#include "net/taskapi/TaskApiClient.h"
#include "net/taskapi/TaskApiRunnable.h"
#include "taskdb/SharedStorage.h"

TaskCore::~TaskCore()
{
    taskapi::TaskApiClient::shared()->setDelegate(nullptr);
    setSharedStorage(nullptr);
}

TaskStorage::ErrorType TaskCore::init(const std::function<bool()>& guard)
{
    setSharedStorage(nullptr);
    m_history.reset();
    m_storage.reset(new TaskStorage(PathHelper::databaseFile()));
    m_storage->setGuard(guard);
    setSharedStorage(m_storage.get());
    const TaskStorage::ErrorType result = m_storage->init();
    m_history = std::make_unique<TaskHistory>(*m_storage);
    taskapi::TaskApiClient::shared()->setDelegate(this);
    return result;
}

void TaskCore::apiTaskCompleted(taskapi::TaskApiClient* /*client*/, taskapi::TaskApiRunnable* task)
{
    static_cast<void>(task->taskType());
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

TaskHistory& taskHistory()
{
    TaskHistory* history = dynamic_singleton<TaskCore>::inst().history();
    Q_ASSERT(history);
    return *history;
}
