// The making of a configuration database.
#pragma once

#include "store/DataBase.h"

#include <functional>

namespace qor {

using FillDatabase = std::function<void(DataBase&)>;

/// Makes a database with the schema and with what `fill` writes, all in one transaction. The file appears
/// under its name when it is complete, or not at all. Where a link to a server has that name, the tables that it lacks
/// are made there. Raises RuntimeError: the file exists already, cannot be made or cannot be written; the server's
/// tables have rows, or others than the schema's columns.
void MakeDatabase(const QString& fileName, const FillDatabase& fill);

/// The same without a result: the database is made in the folder for temporary files and thrown away.
void TryDatabase(const FillDatabase& fill);

} // namespace qor
