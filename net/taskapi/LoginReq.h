// The request to log in.
#pragma once

#include "net/taskapi/TaskApiRunnable.h"

namespace taskapi {

/// Its answer is the session.
class LoginReq final : public TaskApiRunnable
{
public:
    LoginReq(const QString& email, const QString& password);
    Q_DISABLE_COPY_MOVE(LoginReq)

    [[nodiscard]] int taskType() const override { return Login; }
    [[nodiscard]] int method() const override { return Post; }
    [[nodiscard]] QUrl url() const override;
    [[nodiscard]] QVariant payload() const override;
    [[nodiscard]] bool addAuthHeader() const override { return false; }

private:
    QString m_email, m_password;
};

} // namespace taskapi
