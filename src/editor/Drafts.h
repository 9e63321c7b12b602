// The draft of the node on display: what was changed and not saved, kept in a file for the next opening in case the
// process dies or a save fails. A draft that cannot be written is told on standard error, once, and stops nobody.
#pragma once

#include "platform/ui/MsgBox.h"
#include "rules/DraftFiles.h"

namespace qor {

class EditorForm;
class History;

class Drafts
{
public:
    /// From now on every step keeps a draft.
    Drafts(EditorForm& form, History& history);
    ~Drafts();
    Drafts(const Drafts&) = delete;
    Drafts& operator=(const Drafts&) = delete;

    /// Keeps what the form shows, where anything is changed; it outlives the process.
    void Keep();
    /// The same, changed or not, before a save: it outlives a power loss. False when it cannot be written.
    bool KeepForSave();
    /// Drops the draft once the database holds what the form shows.
    void DropIfSaved();
    /// Nobody wants the changes. After a save that failed they go aside, as discarded ones do: the database may hold
    /// less than before.
    void Drop();

    /// Looks for a draft of the node on display that nobody works on any more, and asks whether to restore it: one
    /// step, and the form is changed. One that is stored by now is removed without a question. Nothing while the form
    /// is changed already.
    void Offer();

private:
    bool Write(bool synced);
    bool IsStored(const DirectoryNode& node) const;
    void OfferOne(LeftDraft left);
    MsgBoxAnswer AskWhetherWanted(const KeptNode& draft) const;
    void Restore(LeftDraft left);

    EditorForm& mForm;
    History& mHistory;
};

} // namespace qor
