// The addresses of a product that has no service, unless a test names one: takes the place of the
// real ones where it is linked, so that nothing is asked of the net.
#include "app/base/ProductHelper.h"

using namespace Qt::StringLiterals;

QString ProductHelper::productUrl()
{
    return u"http://www.mivora.example"_s;
}

QString ProductHelper::donateUrl()
{
    return {};
}

QString ProductHelper::serviceHost()
{
    return qEnvironmentVariable("MVR_TEST_SERVICE");
}

QString ProductHelper::productId()
{
    return u"example.quendel.mivora.linux"_s;
}
