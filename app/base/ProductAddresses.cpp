// What whoever builds the product chooses. A file of its own: tests of the whole program put their
// own in its place.
#include "ProductConfig.h"
#include "app/base/ProductHelper.h"

QString ProductHelper::productUrl()
{
    return QStringLiteral(MVR_PRODUCT_URL);
}

QString ProductHelper::donateUrl()
{
    return QStringLiteral(MVR_DONATE_URL);
}

QString ProductHelper::serviceHost()
{
    return QStringLiteral(MVR_SERVICE_HOST);
}

QString ProductHelper::productId()
{
    return QStringLiteral(MVR_PRODUCT_ID);
}
