// A CSV file into the directory list, with a report of the entries that were rejected.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

class BusinessRules;
class EditorForm;
class EntryCommands;
struct ListReport;

class DirectoryImport
{
public:
    DirectoryImport(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands);

    void cmdOpenCSVFilename_Click();

private:
    bool PrepareList();
    ListReport ReadFile(const QString& fileName);

    EditorForm& mForm;
    BusinessRules& mRules;
    EntryCommands& mEntryCommands;
};

} // namespace qor
