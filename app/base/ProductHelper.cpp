#include "app/base/ProductHelper.h"

#include "ProductConfig.h"

using namespace Qt::StringLiterals;

namespace {
ProductVersion latestVersion;
}

QString ProductHelper::companyName()
{
    return u"Quendel"_s;
}

QString ProductHelper::productName()
{
    return u"Mivora"_s;
}

QString ProductHelper::productDisplayName()
{
    return u"Mivora"_s;
}

QString ProductHelper::productUninstallKey()
{
    return u"C8F31CA0-0667-467c-B205-B0A0291603E6"_s;
}

ProductVersion ProductHelper::productVersion()
{
    return {MVR_VERSION_MAJOR, MVR_VERSION_MINOR, MVR_VERSION_BUILD};
}

ProductVersion ProductHelper::latestProductVersion()
{
    return latestVersion;
}

void ProductHelper::setLatestProductVersion(const ProductVersion& version)
{
    latestVersion = version;
}

bool ProductHelper::donationEnabled()
{
    return false;
}
