// Configurations from one engine to another.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// Copies every row of a sound database into a new one, in one transaction and in the order in which the rows lie, so
/// that a copy of the copy is the same again. Either one is a file or a link to a server; a server's tables are made
/// where they are missing, and must be empty. A value that the target cannot hold becomes Null, and a row whose
/// identity has such a value is left out: both are printed, and how many rows each table has. Returns whether
/// everything was copied. Raises RuntimeError when it fails; the target is then as it was.
bool CopyDatabase(const QString& fromName, const QString& toName);

} // namespace qor
