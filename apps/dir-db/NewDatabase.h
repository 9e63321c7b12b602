// Makes configuration databases.
#pragma once

#include "store/DataBase.h"

#include <functional>

namespace qor {

using FillDatabase = std::function<void(DataBase&)>;

/// Makes a database with the schema and with what `fill` writes, in one transaction. The file appears under its name
/// complete or not at all. If that is the name of a link to a server, the tables that are missing there are made.
/// Raises RuntimeError: the file exists already, cannot be made or cannot be written; the server's tables have rows, or
/// columns other than those of the schema.
void MakeDatabase(const QString& fileName, const FillDatabase& fill);

/// The same for the report alone: the database is made in the folder for temporary files and thrown away.
void TryDatabase(const FillDatabase& fill);

} // namespace qor
