// The commands on the directory's rows: add, insert, remove, move, and the switch of the in-place edit mode.
#pragma once

#include "platform/runtime/Text.h"

#include <vector>

namespace qor {

class BusinessRules;
class DirectoryListEvents;
class EditorForm;
class History;
class ListView;

/// "1 Entry", "3 Entries"
QString CountedEntries(std::size_t count);

/// The notice that the directory takes no more entries.
void TellDirectoryFull();

class EntryCommands
{
public:
    EntryCommands(EditorForm& form, BusinessRules& rules, DirectoryListEvents& listEvents, History& history);

    /// Whether there are prompts and the directory is not full; if not, the administrator is told.
    bool MayAddEntry();
    void cmdDirAdd_Click();
    /// Inserts before the one selected row; without exactly one it adds.
    void cmdDirInsert_Click();
    void cmdDirRemove_Click();
    void cmdDirEdit_Click();
    /// Ends the in-place edit mode if it is on; every way to commit or to leave the node begins with it.
    void LeaveEditMode();
    void cmdDirUp_Click();
    void cmdDirDown_Click();
    /// Moves all selected rows one place, up for -1 and down for 1; at the end of the list none moves.
    void MoveBlock(int distance);
    /// Removes the selected rows in a step of this name.
    void RemoveSelected(const QString& stepText);
    /// The Delete key removes as the button does, if the button is enabled.
    void LVDirectory_KeyDown(int key);

private:
    void InsertNewRow(int position);
    void SelectAndShow(int row);
    void Renumber();
    void MoveSelected(int distance);
    void SwapOnward(std::vector<int> rows, int distance);
    void SwapEntries(int row, int other);
    void StartEditMode();
    void EndEditMode();
    void EnableListCommands(bool enabled);

    EditorForm& mForm;
    BusinessRules& mRules;
    DirectoryListEvents& mListEvents;
    History& mHistory;
    ListView& LVDirectory;
};

} // namespace qor
