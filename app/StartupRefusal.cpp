#include "app/StartupRefusal.h"

#include "app/base/LogHelper.h"
#include "app/base/ProductHelper.h"
#include "ui/controls/Prompt.h"

using namespace Qt::StringLiterals;

void StartupRefusal::show(TaskStorage::ErrorType error)
{
    const QString url = ProductHelper::productUrl();
    const QString shortUrl = QString(url).remove(u"http://"_s);
    _show(_text(error).arg(ProductHelper::productDisplayName(), url, shortUrl));
}

void StartupRefusal::showUnlockable(const QString& folder)
{
    _show(tr("<p>%1 cannot use the folder \"%2\": nothing can be locked there, and another copy "
             "might be running.</p>"
             "<p>It does not start, so that no task is overwritten. Please make sure that the "
             "folder exists and that you may read it.</p>")
              .arg(ProductHelper::productDisplayName(), folder.toHtmlEscaped()));
}

void StartupRefusal::_show(const QString& text)
{
    dynamic_singleton<logging::LogHelper>::inst().flush();
    Prompt::Question box;
    box.icon = QMessageBox::Critical;
    box.title = tr("%1").arg(ProductHelper::productDisplayName());
    box.text = text;
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
