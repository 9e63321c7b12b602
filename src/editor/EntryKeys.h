// What the form's own keys do: walking the fields over the rows, adding while editing, undo and redo.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

class DirectoryListEvents;
class EditorForm;
class EntryCommands;
class History;
class ListView;

class EntryKeys
{
public:
    EntryKeys(EditorForm& form, EntryCommands& commands, DirectoryListEvents& listEvents, History& history);

    /// Lays the fields over the row above (-1) or below (1); the field that has the focus keeps it, with its text
    /// selected. At the ends, and outside of edit mode, nothing happens.
    void WalkFields(int distance);
    /// Ends edit mode, adds a row and edits it: the three buttons in turn. If no row could be added, edit mode comes
    /// back over the row where it was.
    void AddAndEdit();

    /// Both end edit mode first.
    void Undo();
    void Redo();

private:
    EditorForm& mForm;
    EntryCommands& mCommands;
    DirectoryListEvents& mListEvents;
    History& mHistory;
    ListView& LVDirectory;
};

} // namespace qor
