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
    QString errorList;         ///< the rejected entries and what is wrong with them
    bool hadErrors = false;    ///< at least one entry was rejected
    bool limitReached = false; ///< the directory was full before the list ended
    bool broken = false;       ///< the list could not be read to its end
};

/// Reads entries of three fields: last name, first name, extension. Every sound one goes to `take`, which makes a row
/// of it. It stops when the directory, which has entryCount entries before, is full and after the 21st rejected entry.
/// Entries that were taken stay so, whatever happens after them; no failure is raised, it is in the report.
ListReport ReadEntryList(QIODevice& device, std::size_t entryCount,
                         const std::function<void(const DirectoryEntry& entry)>& take);

/// Entries as ReadEntryList reads them back.
struct ListText
{
    QByteArray text;
    std::vector<int> skippedRows; ///< entries that are not sound and are not in the text
};
ListText WriteEntryList(const std::vector<DirectoryEntry>& entries);

} // namespace qor
