// Puts a new configuration database in the place of another one.
#pragma once

#include "platform/runtime/Text.h"

#include <QStringList>

namespace qor {

class NewFile;

/// The file itself, if the name is that of a link. Raises RuntimeError for a name that a database cannot have: of
/// something other than a file, or of a link that leads nowhere.
QString RequireReplaceable(const QString& fileName);

/// Puts the file, a complete database, where another one may be. The old one is kept under a free name, readable by its
/// owner only; the new one gets its owner and permissions, and no log is left beside it. At every moment the name leads
/// to the old database or to the new one, whole, without a log of the other. Returns the names under which the old
/// files are kept. Raises RuntimeError when a program has the old database open, or when something cannot be done; then
/// the old database is in its place.
QStringList ReplaceDatabase(NewFile& file);

} // namespace qor
