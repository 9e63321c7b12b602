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

/// The entry that is read where this one was stored: every missing value replaced.
DirectoryEntry AsRead(DirectoryEntry entry);

/// Reads the entries that a recordset has in its rows.
class EntryReader
{
public:
    /// Raises RuntimeError when the rows lack a column.
    explicit EntryReader(const Recordset& rows);

    /// The entry in the current row, every missing value replaced, so that it can be shown. replaced: where not null,
    /// gets the columns of these values.
    DirectoryEntry Read(const Recordset& rows, QStringList* replaced = nullptr) const;

private:
    std::array<int, 5> mIndexes{};
};

} // namespace qor
