// A CSV file into the directory list, with a report of the entries that were rejected.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>

class QIODevice;

namespace qor {

class BusinessRules;
class EditorForm;
class EntryCommands;
class History;
struct ListReport;

class DirectoryImport
{
public:
    DirectoryImport(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands, History& history);

    void cmdOpenCSVFilename_Click();

private:
    std::optional<ListReport> Import(const QString& fileName);
    bool PrepareList();
    ListReport ReadFile(const QString& fileName);
    ListReport AppendEntries(QIODevice& device);

    EditorForm& mForm;
    BusinessRules& mRules;
    EntryCommands& mEntryCommands;
    History& mHistory;
};

} // namespace qor
