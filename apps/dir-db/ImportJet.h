// Imports a Jet 4 database into a new configuration database.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// Reads the source and makes the database under the new name. With dryRun it makes the database in a folder of its own
/// and throws it away, so that the report is the same. Prints the report. Returns whether there is nothing to warn of.
/// Raises RuntimeError when nothing was made.
bool ImportJet(const QString& sourceName, const QString& newName, bool dryRun);

} // namespace qor
