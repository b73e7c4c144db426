#include "app/core/TaskCore.h"

#include "app/base/PathHelper.h"
#include "app/base/dynamic_singleton.h"
#include "net/taskapi/TaskApiClient.h"
#include "net/taskapi/TaskApiRunnable.h"
#include "taskdb/SharedStorage.h"

using namespace std::chrono_literals;

namespace {
/// For aborted requests to end; those that do not are left behind.
constexpr auto requestPatience = 1s;
} // namespace

TaskCore::~TaskCore()
{
    if (m_client)
        m_client->setDelegate(nullptr);
    setSharedStorage(nullptr);
    // What the user entered is written before anything waits for the network.
    m_storage.reset();
    if (m_client)
        m_client->abortRequests(QDeadlineTimer(requestPatience));
}

TaskStorage::ErrorType TaskCore::init(const std::function<bool()>& guard)
{
    setSharedStorage(nullptr);
    m_storage.reset(new TaskStorage(PathHelper::databaseFile()));
    m_storage->setGuard(guard);
    setSharedStorage(m_storage.get());
    const TaskStorage::ErrorType result = m_storage->init();
    m_client = taskapi::TaskApiClient::shared();
    m_client->setDelegate(this);
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
