// The requests that the task server knows.
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

/// `meta` is anything that JSON can hold; with anything else nothing is sent.
class CreateAccountReq final : public TaskApiRunnable
{
public:
    CreateAccountReq(const QString& email, const QString& password, const QString& firstName,
                     const QString& lastName, const QVariant& meta);
    Q_DISABLE_COPY_MOVE(CreateAccountReq)

    [[nodiscard]] int taskType() const override { return CreateAccount; }
    [[nodiscard]] int method() const override { return Post; }
    [[nodiscard]] QUrl url() const override;
    [[nodiscard]] QVariant payload() const override;
    [[nodiscard]] bool addAuthHeader() const override { return false; }

private:
    QString m_email, m_password, m_firstName, m_lastName;
    QVariant m_meta;
};

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
