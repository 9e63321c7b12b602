// Runs statements in the engine's own SQL on a configuration database.
#pragma once

#include "platform/data/Recordset.h"

#include <functional>

namespace qor {

class Connection;

/// text: with ?1, ?2, ... for the values.
Recordset Query(Connection& connection, const QString& text, const QStringList& values = {});

/// The same row by row, as Command::ForEachRow has it.
void ForEachRow(Connection& connection, const QString& text, const std::function<void(const Recordset& row)>& take);

/// What to select to get the texts of a column as they are stored: from a file in UTF-8 as bytes, which need not be
/// valid, else as texts; a server takes no others. Other values stay as they are.
QString StoredTexts(Connection& connection, const QString& column);

/// rows: what follows FROM.
int CountOf(Connection& connection, const QString& rows, const QStringList& values = {});

} // namespace qor
