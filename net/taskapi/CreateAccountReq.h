// The request for a new account.
#pragma once

#include "net/taskapi/TaskApiRunnable.h"

namespace taskapi {

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

} // namespace taskapi
