// The donation page. Here, and not beside the rest of the product's identity, because of the box.
#include "app/base/ProductHelper.h"
#include "ui/controls/Prompt.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

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
