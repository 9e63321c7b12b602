// Moving among the partition's directory nodes. Every move first settles unsaved changes.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

class BusinessRules;
class Commit;
class Drafts;
class EditorForm;
class EntryCommands;
class History;

class RecordNavigation
{
public:
    RecordNavigation(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands, Commit& commit,
                     History& history, Drafts& drafts);

    void cmdFirst_Click();
    void cmdPrevious_Click();
    void cmdNext_Click();
    void cmdLast_Click();
    /// Loads the chosen node; after Cancel the selector goes back to the node on display. While none is on display, the
    /// same one can be chosen again.
    void cmbNode_Click();

private:
    void Move(const QString& procedure, int end, int (*target)(int index, int last));
    qint16 NodeNumberAt(int index) const;
    void SelectNodeOnDisplay();

    EditorForm& mForm;
    BusinessRules& mRules;
    EntryCommands& mEntryCommands;
    Commit& mCommit;
    History& mHistory;
    Drafts& mDrafts;
};

} // namespace qor
