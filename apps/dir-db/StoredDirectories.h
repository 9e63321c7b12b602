// The entries of a database, directory by directory.
#pragma once

#include "rules/DirectoryNode.h"

#include <functional>
#include <optional>
#include <QStringList>

namespace qor {

class Connection;

struct StoredEntry
{
    QString position;
    DirectoryEntry shown;        ///< as the editor shows it
    QStringList replacedColumns; ///< for which it shows defaults
    QStringList foreignColumns;  ///< whose texts are not UTF-8
};

/// Entries of one configuration, partition and node number, whether there is such a node or not.
struct StoredDirectory
{
    QString name;                       ///< "configuration 1, partition 1, DIR 7"
    std::optional<Partition> partition; ///< nothing when the editor cannot be opened on it
    std::vector<StoredEntry> entries;

    QString Place(const StoredEntry& entry) const { return u"%1, entry %2"_s.arg(name, entry.position); }
};

/// Passes them one after the other, in the order of their numbers, and holds no more than one. Raises RuntimeError when
/// they cannot be read.
void ForEachDirectory(Connection& connection, const std::function<void(const StoredDirectory& directory)>& look);

} // namespace qor
