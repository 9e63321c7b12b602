// The five columns of a stored entry: which field each fills, and what stands in for a value that is missing.
#pragma once

#include "platform/data/Recordset.h"
#include "rules/DirectoryNode.h"

#include <array>

namespace qor {

struct EntryColumn
{
    const char* name;
    QString DirectoryEntry::*field;
    const char* whenMissing;
    /// The text that a stored value is shown as; empty for one that counts as missing.
    QString (*shownText)(const QVariant& stored);
};

extern const std::array<EntryColumn, 5> entryColumns;

/// What is read back where this entry was stored: missing values are replaced.
DirectoryEntry AsRead(DirectoryEntry entry);

/// Reads entries from the rows of a recordset.
class EntryReader
{
public:
    /// Raises RuntimeError when the rows lack a column.
    explicit EntryReader(const Recordset& rows);

    /// The entry in the current row, ready to be shown: missing values are replaced. replaced: unless null, gets the
    /// names of their columns.
    DirectoryEntry Read(const Recordset& rows, QStringList* replaced = nullptr) const;

private:
    std::array<int, 5> mIndexes{};
};

} // namespace qor
