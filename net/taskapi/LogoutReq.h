// The request to log out.
#pragma once

#include "net/taskapi/TaskApiRunnable.h"

namespace taskapi {

/// Tells the server only: the client keeps its session.
class LogoutReq final : public TaskApiRunnable
{
public:
    LogoutReq() = default;
    Q_DISABLE_COPY_MOVE(LogoutReq)

    [[nodiscard]] int taskType() const override { return Logout; }
    [[nodiscard]] int method() const override { return Post; }
    [[nodiscard]] QUrl url() const override;
};

} // namespace taskapi
