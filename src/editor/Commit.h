// Apply, OK, Cancel, and the question about unsaved changes. Whether cmdApply is enabled is the only dirty
// mark.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

class BusinessRules;
class EditorForm;
class EntryCommands;
enum class MsgBoxAnswer;

/// What CheckDirectoryData found.
struct DirectoryCheck
{
    bool Sound = true;            ///< the directory may be saved without asking
    QString RowKey;               ///< the row that is to be shown
    bool InvalidEntry = false;    ///< that row cannot be saved
    bool DuplicatePrompt = false; ///< prompts are used twice; that row is the last of them, unless InvalidEntry
};

class Commit
{
public:
    Commit(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands);

    void cmdApply_Click();
    void cmdOK_Click();
    void cmdCancel_Click();

    /// Asks "Do you want to save changes?" when there are any, and saves on Yes. Yes after a save; Cancel
    /// also when the save was refused; No also when there was nothing to ask. Errors go to the caller.
    MsgBoxAnswer AskToSaveChanges();

    /// Looks for a row that cannot be saved, and for prompts that are used twice.
    DirectoryCheck CheckDirectoryData();

private:
    enum class Outcome { Saved, AccessCodeRefused, DirectoryRefused, LabelRefused };

    Outcome RunSequence();
    bool DirectoryMayBeSaved();
    bool LabelMayBeSaved();
    void ShowRow(const QString& rowKey);

    EditorForm& mForm;
    BusinessRules& mRules;
    EntryCommands& mEntryCommands;
};

} // namespace qor
