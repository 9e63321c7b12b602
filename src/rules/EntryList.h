// Reads a directory list from a file, and makes the text of one.
#pragma once

#include "rules/DirectoryNode.h"
#include "rules/TableLayout.h"

#include <functional>
#include <QByteArray>

class QIODevice;

namespace qor {

/// An entry of a list that did not become a row.
struct RefusedEntry
{
    DirectoryEntry entry;
    QString message; ///< what is wrong with it; empty for a sound one that follows the end of the reading
    qint64 line = 0; ///< on which it begins, from 1; 0 when the source has no lines
};

/// The result of reading a list.
struct ListReport
{
    QString errorList = {};    ///< the rejected entries and what is wrong with them
    bool hadErrors = false;    ///< at least one entry was rejected
    bool limitReached = false; ///< the directory was full before the list ended
    bool broken = false;       ///< the list could not be read to its end
    QString fault = {}; ///< why, and on which line; also when what follows the end of the reading could not be read

    /// Everything that did not become a row, in its order: rejected entries, and all that follows the end of the
    /// reading, at the limit or at the last error. If there are very many, the first ones, and a fault.
    std::vector<RefusedEntry> refused = {};
};

/// Where entries come from, one by one.
struct EntrySource
{
    std::function<bool()> atEnd;
    std::function<DirectoryEntry()> next;
    std::function<qint64()> line = {}; ///< of the next entry, where there are lines
};
/// Makes a row of an entry.
using EntryTaker = std::function<void(const DirectoryEntry& entry)>;

/// Passes every sound entry to `take`. Stops when the directory, which holds entryCount entries at first, is full, and
/// after the 21st rejected entry.
ListReport ReadEntryList(const EntrySource& source, std::size_t entryCount, const EntryTaker& take);

/// The same for delimited text, three fields an entry: last name, first name, extension. Raises nothing: entries that
/// were taken stay taken, and a failure is in the report.
ListReport ReadEntryList(QIODevice& device, std::size_t entryCount, const EntryTaker& take);

/// The same for the rows of a table; without a layout by the plain rule.
ListReport ReadEntryList(QIODevice& device, const std::optional<TableLayout>& layout, std::size_t entryCount,
                         const EntryTaker& take);

/// Refused entries, as they are, as a plain list that ReadEntryList reads back.
QByteArray RejectedText(const std::vector<RefusedEntry>& refused);
/// The same with suggestions for people to look through: PlainLetters of the names, PlainDigits of the extensions.
QByteArray SuggestedText(const std::vector<RefusedEntry>& refused);

/// A plain list that ReadEntryList reads back.
struct ListText
{
    QByteArray text;
    std::vector<int> skippedRows; ///< entries that are not sound, and not in the text
};
ListText WriteEntryList(const std::vector<DirectoryEntry>& entries);

} // namespace qor
