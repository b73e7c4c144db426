#include "net/HttpConnection.h"

#include "app/base/ProductHelper.h"
#include "net/HttpConnectionQt.h"

#include <boost/make_shared.hpp>

namespace net {

namespace {
boost::shared_ptr<HttpConnection> makeQtConnection()
{
    return boost::make_shared<HttpConnectionQt>();
}

HttpConnection::Maker s_maker = &makeQtConnection;
} // namespace

HttpConnection::~HttpConnection() = default;

QString HttpConnection::programReferer()
{
    return ProductHelper::productDisplayName() + u' ' + ProductHelper::productVersion().toString();
}

boost::shared_ptr<HttpConnection> HttpConnection::create()
{
    return s_maker();
}

void HttpConnection::setMaker(Maker maker)
{
    s_maker = maker ? maker : &makeQtConnection;
}

QString HttpConnection::headersToString(const HttpHeaders& headers)
{
    QString lines;
    for (auto header = headers.cbegin(); header != headers.cend(); ++header)
        lines += header.key() + u": " + header.value() + u'\n';
    return lines;
}

} // namespace net
