// A CSV file into the directory list, with a report of the entries that were rejected.
#pragma once

#include "platform/runtime/Text.h"

class QIODevice;

namespace qor {

class BusinessRules;
class EditorForm;
class EntryCommands;

/// What came of reading a file.
struct ImportReport
{
    QString ErrorList;         ///< the rejected entries and what is wrong with them
    bool HadErrors = false;    ///< at least one entry was rejected
    bool LimitReached = false; ///< the list was full before the file ended
    bool Broken = false;       ///< the file could not be read to its end
};

/// Appends the sound entries of a device to the form's list, each with the next free prompt number. It stops
/// when the list is full and after the 21st rejected entry. Rows that were taken stay, whatever happens after
/// them.
ImportReport ReadDirectory(EditorForm& form, BusinessRules& rules, QIODevice& device);

class DirectoryImport
{
public:
    DirectoryImport(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands);

    void cmdOpenCSVFilename_Click();

private:
    bool PrepareList();
    ImportReport ReadFile(const QString& fileName);
    static void TellReport(const ImportReport& report);

    EditorForm& mForm;
    BusinessRules& mRules;
    EntryCommands& mEntryCommands;
};

} // namespace qor
