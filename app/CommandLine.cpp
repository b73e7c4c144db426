#include "app/CommandLine.h"

using namespace Qt::StringLiterals;

int CommandLine::init(const QStringList& arguments)
{
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        if (arguments.at(i) == "--install"_L1)
            return 1;
        if (arguments.at(i) == "--uninstall"_L1)
            return 2;
    }
    return 0;
}
