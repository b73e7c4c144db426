// Identifiers: making them and printing them.
#pragma once

#include <QString>
#include <QUuid>

/// Random identifiers. Stateless; any thread.
class Unique
{
public:
    /// A new random identifier from the system's generator.
    [[nodiscard]] static QUuid generate();

    /// The 36-character form without braces; empty for the null identifier.
    [[nodiscard]] static QString toString(const QUuid& id);
};
