// Where the task server is.
#pragma once

#include <QString>

namespace taskapi {

/// The defaults are for a server on the developer's own machine.
struct ServerSettings
{
    QString secret = QStringLiteral("7F3A9C21-5B0E-4D18-9E6A-3C2B71D04A5F"); ///< names the client
    QString host = QStringLiteral("127.0.0.1");
    quint16 port = 8010;
    QString scheme = QStringLiteral("http");
};

} // namespace taskapi
