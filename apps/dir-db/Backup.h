// Backs up and restores a configuration database.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// Copies what the database holds at one moment at which no node is being saved: into one sound file that needs no log
/// beside it and that only its owner may read. Editors may have the database open. It stays as it is, and so does a log
/// that a killed program left beside it. Prints what was copied. Raises RuntimeError: the database is not sound or
/// cannot be read, the copy exists already or cannot be made; then nothing is left behind.
void BackUpDatabase(const QString& fileName, const QString& copyName);

/// Puts what a sound copy holds in the place of a database that may be missing or damaged, as ReplaceDatabase does. The
/// copy stays as it is. Prints what was restored and what was kept.
void RestoreDatabase(const QString& copyName, const QString& fileName);

} // namespace qor
