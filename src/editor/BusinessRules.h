// The node procedures of one instance on the form: its own database environment and its own count of prompt numbers.
// What they know of nodes stands in the rules; here controls are filled and read, and people are asked and told. Every
// procedure reports its errors itself and then answers False, 0 or nothing.
#pragma once

#include "rules/PromptNumbers.h"
#include "store/DataBase.h"

#include <optional>
#include <QSet>

namespace qor {

class EditorForm;

enum class SaveOutcome {
    Ended,     ///< well, or with a report
    Overtaken, ///< another station saved the node since it was looked at; nothing was saved here
};

class BusinessRules
{
public:
    /// Whether the editor was opened for a new node (node number 0).
    bool IsNewNode = false;

    /// Opens the database, for which another program may have to give up a lock first: then the administrator sees a
    /// dialog and may cancel. False on Cancel, and after a report when the lock did not go or a server cannot be used.
    /// What is wrong with a file the loaders report.
    bool WaitForDatabase();

    /// Fills the record selector with the partition's directory nodes and selects the one with this number,
    /// or the first. For a new node it hides the navigation row and closes the gap. Stored numbers that are no node
    /// numbers are reported and left out.
    void LoadExistingNodesInRecordSelector(EditorForm& form, qint16 nodeNumber);

    /// Fills both lists of message-node numbers with 1 to the partition's maximum. False, and a pending
    /// message, when the partition has no such maximum.
    bool LoadPromptMSGNodeNumber(EditorForm& form);

    /// Fills the form with a directory node. False, after a notice, when the node does not exist or cannot be read; the
    /// form then shows no node.
    bool LoadData(EditorForm& form, qint16 nodeNumber);

    /// A free message-node number, or 0 when there is none. Successive calls count up from the starting prompt and
    /// wrap at the partition's maximum. With reset it restarts that count and returns 0.
    /// used: the numbers in use, where the caller has read them for many calls; otherwise they are read.
    qint16 GetNextAvailableMSGNODENUMBER(EditorForm& form, bool reset, const MessageNodeNumbers* used = nullptr);

    /// Nothing when they cannot be read; the report then names GetNextAvailableMSGNODENUMBER, which they are for.
    std::optional<MessageNodeNumbers> ReadUsedNumbers(EditorForm& form);

    /// Tests once per form whether the message nodes exist that the entries name, and offers to create the
    /// missing ones as copies of message node 0. The first error ends it. The status bar is left visible with its
    /// last text.
    void CheckForUnReferencedNodes(EditorForm& form);

    /// In a shared database: whether the node there is as the form knows it, or the administrator wants to overwrite
    /// what another station changed. False as well when that cannot be read, after a report. Always true elsewhere.
    bool MayOverwrite(EditorForm& form);

    /// Raises RuntimeError when the disk may be full before a save is done. To be asked before one whose list is not
    /// kept.
    void RequireRoomForSave() const;

    /// Writes the form's node, its general-pool row and all its entries under this number, and remembers on the form
    /// what is stored then. What ran before a failure stays written; everything written is on disk when it returns.
    SaveOutcome SaveChanges(EditorForm& form, qint16 nodeNumber);

private:
    bool ShowStoredNode(EditorForm& form, qint16 nodeNumber);
    qint16 NextPrompt(EditorForm& form, const MessageNodeNumbers& used);
    /// Whether entries have this prompt from their making on this form, and nobody has made its message node here.
    bool IsNewHere(const EditorForm& form, const QString& prompt) const;

    DataBase mDataBase;
    PromptNumbers mPromptNumbers;
    QSet<QString> mGivenPrompts; ///< whose message nodes nobody has made here
};

/// The prompts of the rows that one operation adds. The numbers in use are read once, for the first row; when that
/// fails, which is reported once, every row gets 1.
class NewRowPrompts
{
public:
    NewRowPrompts(EditorForm& form, BusinessRules& rules) : mForm(form), mRules(rules) {}

    /// The next free number, or "1" when there is none. For a list that is empty before its first row the count
    /// restarts.
    QString Next();

private:
    EditorForm& mForm;
    BusinessRules& mRules;
    bool mHaveRead = false;
    std::optional<MessageNodeNumbers> mUsed;
};

} // namespace qor
