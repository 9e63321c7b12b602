// Apply, OK, Cancel, and the question about unsaved changes. Whether cmdApply is enabled is the only dirty
// mark.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>

namespace qor {

class BusinessRules;
class Drafts;
class EditorForm;
class EntryCommands;
enum class MsgBoxAnswer;

/// What CheckDirectoryData found in a directory that may not be saved without asking.
struct DirectoryFault
{
    bool invalidEntry; ///< a row cannot be saved; else prompts are used twice
    QString rowKey;    ///< that row, or the last one whose prompt came before
};

class Commit
{
public:
    Commit(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands, Drafts& drafts);

    void cmdApply_Click();
    void cmdOK_Click();
    void cmdCancel_Click();

    /// Asks "Do you want to save changes?" when there are any, and saves on Yes. Yes after a save; Cancel
    /// also when the save was refused; No also when there was nothing to ask. Errors go to the caller.
    MsgBoxAnswer AskToSaveChanges();

    /// Looks for a row that cannot be saved, and for prompts that are used twice.
    std::optional<DirectoryFault> CheckDirectoryData();

private:
    enum class Outcome { Saved, AccessCodeRefused, DirectoryRefused, LabelRefused, OverwritingRefused };

    Outcome RunSequence();
    bool DirectoryMayBeSaved();
    bool LabelMayBeSaved();
    void ShowRow(const QString& rowKey);

    EditorForm& mForm;
    BusinessRules& mRules;
    EntryCommands& mEntryCommands;
    Drafts& mDrafts;
};

} // namespace qor
