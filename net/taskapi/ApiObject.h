// Records of the task server, as it sent them.
#pragma once

#include <QVariantMap>

namespace taskapi {

/// One dictionary from the server.
class ApiObject
{
public:
    ApiObject() = default;
    Q_DISABLE_COPY_MOVE(ApiObject)

    [[nodiscard]] const QVariantMap& dict() const { return m_dict; }

    /// Replaces the whole dictionary.
    virtual void updateFromApiDict(const QVariantMap& dict);
    virtual ~ApiObject();

private:
    QVariantMap m_dict;
};

/// A login: "token", the user's bearer token, and "expires", an ISO 8601 date-time, among others.
class ApiSession final : public ApiObject
{
};

/// The user of a login.
class ApiUser final : public ApiObject
{
};

} // namespace taskapi
