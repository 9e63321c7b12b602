// Rows of the directory list over the clipboard, as spreadsheets exchange them.
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

/// While entries are edited in place none of its procedures does anything: the clipboard is the fields' then.
class DirectoryClipboard
{
public:
    DirectoryClipboard(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands, History& history);

    bool CanCopy() const;
    bool CanPaste() const;

    /// Both put the selected rows there. Without a selected row the clipboard stays as it is.
    void Copy();
    void Cut();
    /// Puts the entries before the one selected row; without exactly one at the end. They are new entries, but for
    /// those that were cut here.
    void Paste();

private:
    /// What was cut last, to be known again by its text: passwords do not go to the clipboard.
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
