// A directory list as delimited text: reading the entries of a file, and the text that is written for a file.
#pragma once

#include "rules/DirectoryNode.h"

#include <functional>
#include <QByteArray>

class QIODevice;

namespace qor {

/// What came of reading a list.
struct ListReport
{
    QString errorList = {};    ///< the rejected entries and what is wrong with them
    bool hadErrors = false;    ///< at least one entry was rejected
    bool limitReached = false; ///< the directory was full before the list ended
    bool broken = false;       ///< the list could not be read to its end
};

/// Where entries come from, one by one.
struct EntrySource
{
    std::function<bool()> atEnd;
    std::function<DirectoryEntry()> next;
};
/// What makes a row of an entry.
using EntryTaker = std::function<void(const DirectoryEntry& entry)>;

/// Every sound entry goes to `take`. It stops when the directory, which has entryCount entries before, is full and
/// after the 21st rejected entry.
ListReport ReadEntryList(const EntrySource& source, std::size_t entryCount, const EntryTaker& take);

/// The same with entries of three fields: last name, first name, extension. Entries that were taken stay so, whatever
/// happens after them; no failure is raised, it is in the report.
ListReport ReadEntryList(QIODevice& device, std::size_t entryCount, const EntryTaker& take);

/// Entries as ReadEntryList reads them back.
struct ListText
{
    QByteArray text;
    std::vector<int> skippedRows; ///< entries that are not sound and are not in the text
};
ListText WriteEntryList(const std::vector<DirectoryEntry>& entries);

} // namespace qor
