// A new configuration database in the place of one that is there.
#pragma once

#include "platform/runtime/Text.h"

#include <QStringList>

namespace qor {

class NewFile;

/// The file that the name or the link stands for. Raises RuntimeError when a database cannot be put there: it is
/// something other than a file, a link that leads nowhere, or its folder is missing.
QString RequireReplaceable(const QString& fileName);

/// Puts the file, a complete database, where another may lie. The old one is kept under a free name, readable by its
/// owner only; its logs are away; the new one has its owner and permissions. At every moment the name stands for the
/// old database or for the new one, whole, without a log of the other. Returns the names under which the old files are
/// kept. Raises RuntimeError when a program has the old database open, or when something cannot be done; then the old
/// database is in its place.
QStringList ReplaceDatabase(NewFile& file);

} // namespace qor
