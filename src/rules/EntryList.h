// A directory list as delimited text: reading the entries of a file, and the text that is written for a file.
#pragma once

#include "rules/DirectoryNode.h"
#include "rules/TableLayout.h"

#include <functional>
#include <QByteArray>

class QIODevice;

namespace qor {

/// An entry of a list that became no row.
struct RefusedEntry
{
    DirectoryEntry entry;
    QString message; ///< what is wrong with it; empty for a sound one behind the end of the reading
    qint64 line = 0; ///< on which it begins, from 1; 0 where the source has none
};

/// What came of reading a list.
struct ListReport
{
    QString errorList = {};    ///< the rejected entries and what is wrong with them
    bool hadErrors = false;    ///< at least one entry was rejected
    bool limitReached = false; ///< the directory was full before the list ended
    bool broken = false;       ///< the list could not be read to its end
    QString fault = {}; ///< why, and on which line; also for what could not be read behind the end of the reading

    /// All that became no row, in its order: the rejected, and what stands behind the end of the reading, be it the
    /// limit or the last error. Where there are very many, the first ones, and a fault.
    std::vector<RefusedEntry> refused = {};
};

/// Where entries come from, one by one.
struct EntrySource
{
    std::function<bool()> atEnd;
    std::function<DirectoryEntry()> next;
    std::function<qint64()> line = {}; ///< of the next entry, where there are lines
};
/// What makes a row of an entry.
using EntryTaker = std::function<void(const DirectoryEntry& entry)>;

/// Every sound entry goes to `take`. It stops when the directory, which has entryCount entries before, is full and
/// after the 21st rejected entry.
ListReport ReadEntryList(const EntrySource& source, std::size_t entryCount, const EntryTaker& take);

/// The same with entries of three fields: last name, first name, extension. Entries that were taken stay so, whatever
/// happens after them; no failure is raised, it is in the report.
ListReport ReadEntryList(QIODevice& device, std::size_t entryCount, const EntryTaker& take);

/// The same with the rows of a table; by the plain rule without a layout.
ListReport ReadEntryList(QIODevice& device, const std::optional<TableLayout>& layout, std::size_t entryCount,
                         const EntryTaker& take);

/// Refused entries as a list that ReadEntryList reads back, by the plain rule, as they are.
QByteArray RejectedText(const std::vector<RefusedEntry>& refused);
/// The same with what would make them sound, to be looked through: PlainLetters of the names, PlainDigits of the
/// extensions.
QByteArray SuggestedText(const std::vector<RefusedEntry>& refused);

/// Entries as ReadEntryList reads them back.
struct ListText
{
    QByteArray text;
    std::vector<int> skippedRows; ///< entries that are not sound and are not in the text
};
ListText WriteEntryList(const std::vector<DirectoryEntry>& entries);

} // namespace qor
