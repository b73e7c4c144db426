#include "app/base/ProductHelper.h"

#include "ProductConfig.h"
#include "app/base/Prompt.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

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

void ProductHelper::donate(QWidget* parent)
{
    if (QDesktopServices::openUrl(QUrl(donateUrl())))
        return;
    Prompt::Question box;
    box.icon = QMessageBox::Information;
    box.title = QCoreApplication::translate("ProductHelper", "Donate");
    box.text = QCoreApplication::translate("ProductHelper",
                                           "<p>If you fell like you are ready to support Quendel, "
                                           "please do!<br/><br/><a href=\"%1\">%1</a></p>")
                   .arg(donateUrl());
    box.format = Qt::RichText;
    Prompt::ask(parent, box);
}
