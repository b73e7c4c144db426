#include "ui/StarterTask.h"

#include "app/base/ProductHelper.h"

using namespace Qt::StringLiterals;

QList<StarterTask> StarterTask::all()
{
    return {
        {tr("Submit your ideas on features, any likes and dislikes"),
         // Addressed to people who write English to us.
         u"Visit %1 to submit ideas"_s.arg(ProductHelper::productUrl())},
        {tr("Create a focus group"),
         tr("Right-click anywhere on the left panel and select \"Add group\" menu.")},
        {tr("Support the team and development"),
         tr("Visit %1 and make a donation to support the team if you like the software.")
             .arg(ProductHelper::donateUrl())},
        {tr("Have a coffee :)"), QString()},
    };
}
