// Reads a CSV file into the directory list and reports the entries that were rejected.
#pragma once

#include "rules/EntryList.h"

#include <optional>

namespace qor {

class BusinessRules;
class EditorForm;
class EntryCommands;
class History;

class DirectoryImport
{
public:
    DirectoryImport(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands, History& history);

    void cmdOpenCSVFilename_Click();

    /// Imports what the last import refused, from the file that it left.
    void ImportRejected();
    static bool CanImportRejected();

private:
    struct Reading
    {
        std::optional<TableLayout> table = {}; ///< nothing for the plain rule
    };

    void Import(const QString& fileName);
    static std::optional<Reading> AskForReading(const QString& fileName);
    std::optional<ListReport> TakeEntries(const QString& fileName, const Reading& reading);
    bool PrepareList();
    ListReport ReadFile(const QString& fileName, const Reading& reading);

    EditorForm& mForm;
    BusinessRules& mRules;
    EntryCommands& mEntryCommands;
    History& mHistory;
};

} // namespace qor
