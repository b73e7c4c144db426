// How a request to the task server ended.
#pragma once

#include <QByteArray>

namespace taskapi {

enum class ApiErrorCode : int
{
    unknown = 0, ///< any other status, no connection object, or a body that cannot be serialized
    success = 1,
    connectionFailed = 2, ///< no connection, a broken transfer, or an aborted request
    badRequest = 3,
    unauthorized = 4,
    forbidden = 5,
    notFound = 6,
    serverError = 7,
};

/// A value: what went wrong, if anything, and the HTTP status.
class ApiError
{
public:
    /// Unknown, without a status.
    ApiError() = default;

    /// The outcome that an answer with this status means, whatever its body.
    [[nodiscard]] static ApiError create(int status, const QByteArray& body);
    [[nodiscard]] static ApiError create(ApiErrorCode code);

    [[nodiscard]] ApiErrorCode code() const { return m_code; }
    /// -1 without an answer, and where the transport does not tell.
    [[nodiscard]] int status() const { return m_status; }

private:
    ApiErrorCode m_code = ApiErrorCode::unknown;
    int m_status = -1;
};

} // namespace taskapi
