// Identifiers as the database file spells them.
#pragma once

#include <QStringView>
#include <QUuid>

/// Parses whatever form QUuid accepts; null for anything else. The braced form, which the writer
/// uses, takes a tenth of the time, and large databases hold hundreds of thousands.
[[nodiscard]] QUuid idFromText(QStringView text);
