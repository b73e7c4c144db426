#include "net/taskapi/ApiError.h"

namespace taskapi {

namespace {
ApiErrorCode codeOf(int status)
{
    switch (status) {
    case 200:
        return ApiErrorCode::success;
    case 400:
        return ApiErrorCode::badRequest;
    case 401:
        return ApiErrorCode::unauthorized;
    case 403:
        return ApiErrorCode::forbidden;
    case 404:
        return ApiErrorCode::notFound;
    default:
        return status >= 500 && status <= 599 ? ApiErrorCode::serverError : ApiErrorCode::unknown;
    }
}
} // namespace

ApiError ApiError::create(int status, const QByteArray& /*body*/)
{
    ApiError error = create(codeOf(status));
    error.m_status = status;
    return error;
}

ApiError ApiError::create(ApiErrorCode code)
{
    ApiError error;
    error.m_code = code;
    return error;
}

} // namespace taskapi
