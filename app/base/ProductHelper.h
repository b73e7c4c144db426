// What the product is called, where it lives on the web, and its versions.
#pragma once

#include "app/base/ProductVersion.h"

class QWidget;

/// The product's identity. Interface thread.
class ProductHelper
{
public:
    [[nodiscard]] static QString companyName();
    /// Internal name; it also names the data folder.
    [[nodiscard]] static QString productName();
    /// The name shown to the user.
    [[nodiscard]] static QString productDisplayName();
    /// Product web site; begins with "http://".
    [[nodiscard]] static QString productUrl();
    /// Donation page; begins with "https://".
    [[nodiscard]] static QString donateUrl();
    /// Host of the update and task service.
    [[nodiscard]] static QString serviceHost();
    /// Reverse-domain name sent with the update check.
    [[nodiscard]] static QString productId();
    /// Installer key, of no use on this platform.
    [[nodiscard]] static QString productUninstallKey();

    [[nodiscard]] static ProductVersion productVersion();
    /// The newest version known from the update check; unknown until one was made.
    [[nodiscard]] static ProductVersion latestProductVersion();
    static void setLatestProductVersion(const ProductVersion& version);

    /// Whether menus and dialogs offer to donate.
    [[nodiscard]] static bool donationEnabled();
    /// Opens the donation page in the desktop's browser; shows its address in a box above `parent`
    /// if that fails. Defined in ui/controls/Donation.cpp: only who links controls can call it.
    static void donate(QWidget* parent);
};
