#include "app/StartupRefusal.h"

#include "app/base/LogHelper.h"
#include "app/base/ProductHelper.h"
#include "app/base/Prompt.h"

using namespace Qt::StringLiterals;

void StartupRefusal::show(TaskStorage::ErrorType error)
{
    dynamic_singleton<logging::LogHelper>::inst().flush();

    const QString url = ProductHelper::productUrl();
    const QString shortUrl = QString(url).remove(u"http://"_s);
    Prompt::Question box;
    box.icon = QMessageBox::Critical;
    box.title = tr("%1").arg(ProductHelper::productDisplayName());
    box.text = _text(error).arg(ProductHelper::productDisplayName(), url, shortUrl);
    box.format = Qt::RichText;
    Prompt::ask(nullptr, box);
}

QString StartupRefusal::_text(TaskStorage::ErrorType error)
{
    if (error == TaskStorage::NewerVersion) {
        return tr("<p>The task database was created with a newer version of %1 application.</p>"
                  "<p>Please visit <a href=\"%2\">%3</a> to upgrade your installation.</p>");
    }
    return tr("<p>Task database failed to load for some reason. %1 can not continue to avoid "
              "further database corruption.</p>"
              "<p>Please visit <a href=\"%2\">%3</a> and request help.</p>");
}
