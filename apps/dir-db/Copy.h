// Copies a configuration database from one engine to another.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// Copies every row of a sound database into a new one, in one transaction and in the order in which the rows are
/// stored, so that a copy of the copy is the same again. Each may be a file or a link to a server; on a server missing
/// tables are made, and they have to be empty. A value that the target cannot store becomes Null, and a row with such a
/// value in its key is left out. Prints both, and how many rows each table has. Returns whether everything was copied.
/// Raises RuntimeError when it fails; the target is then as it was.
bool CopyDatabase(const QString& fromName, const QString& toName);

} // namespace qor
