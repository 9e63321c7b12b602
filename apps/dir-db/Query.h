// Questions to a configuration database in the engine's own words.
#pragma once

#include "platform/data/Recordset.h"

#include <functional>

namespace qor {

class Connection;

/// text: with ?1, ?2, ... for the values.
Recordset Query(Connection& connection, const QString& text, const QStringList& values = {});

/// The same row by row, as Command::ForEachRow has it.
void ForEachRow(Connection& connection, const QString& text, const std::function<void(const Recordset& row)>& take);

/// What a statement names to get the texts of a column as they are stored: out of a file in UTF-8 as bytes, which need
/// not be characters, else as texts; a server takes none that are not. Other values stay as they are.
QString StoredTexts(Connection& connection, const QString& column);

/// rows: what follows FROM.
int CountOf(Connection& connection, const QString& rows, const QStringList& values = {});

} // namespace qor
