// Copies, cuts and pastes rows of the directory list, in the form in which spreadsheets exchange them.
#pragma once

#include "rules/DirectoryNode.h"

#include <optional>

namespace qor {

class BusinessRules;
class EditorForm;
class EntryCommands;
class History;
class IncomingRows;
class ListView;
struct ListReport;

/// While entries are edited in place, none of its procedures does anything: the clipboard then belongs to the fields.
class DirectoryClipboard
{
public:
    DirectoryClipboard(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands, History& history);

    bool CanCopy() const;
    bool CanPaste() const;

    /// Both put the selected rows on the clipboard; without a selected row it stays as it is.
    void Copy();
    void Cut();
    /// Inserts the entries before the one selected row, or at the end if not exactly one is selected. They become new
    /// entries, except for those that were cut here.
    void Paste();

private:
    /// What was cut last, to be recognised by its text: passwords do not go to the clipboard.
    struct CutRows
    {
        QString text;
        std::vector<DirectoryEntry> entries;
    };

    CutRows PutSelected() const;
    ListReport ReadCut(IncomingRows& rows) const;
    std::vector<DirectoryEntry> EntriesCut() const;
    void InsertRows(IncomingRows& rows);

    EditorForm& mForm;
    BusinessRules& mRules;
    EntryCommands& mEntryCommands;
    History& mHistory;
    ListView& LVDirectory;
    CutRows mCut;
};

} // namespace qor
