// Brings earlier versions of the node on display back into the list.
#pragma once

namespace qor {

class EditorForm;
class EntryCommands;
class History;

class Versions
{
public:
    Versions(EditorForm& form, EntryCommands& entryCommands, History& history);

    /// Whether there are any.
    bool CanShow() const;
    /// Shows them with what restoring each would change. The entries of the chosen one replace the list, in one step;
    /// the header stays.
    void Show();

private:
    EditorForm& mForm;
    EntryCommands& mEntryCommands;
    History& mHistory;
};

} // namespace qor
