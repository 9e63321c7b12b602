// Questions to a configuration database in the engine's own words.
#pragma once

#include "platform/data/Recordset.h"

namespace qor {

class Connection;

/// text: with ?1, ?2, ... for the values.
Recordset Query(Connection& connection, const QString& text, const QStringList& values = {});

/// rows: what follows FROM.
int CountOf(Connection& connection, const QString& rows, const QStringList& values = {});

} // namespace qor
