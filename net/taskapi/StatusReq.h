// The request for the tasks' status.
#pragma once

#include "net/taskapi/TaskApiRunnable.h"

namespace taskapi {

/// Asks what happened to the tasks since a revision.
class StatusReq final : public TaskApiRunnable
{
public:
    explicit StatusReq(int revision);
    Q_DISABLE_COPY_MOVE(StatusReq)

    [[nodiscard]] int taskType() const override { return Status; }
    [[nodiscard]] QUrl url() const override;
    [[nodiscard]] QVariant payload() const override;

private:
    int m_revision;
};

} // namespace taskapi
