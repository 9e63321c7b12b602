// The node rules of one instance: its own database environment and its own remembered message-node number.
// Every procedure but the constructor reports its errors itself and then answers False, 0 or nothing.
#pragma once

#include "store/DataBase.h"

#include <optional>

namespace qor {

class EditorForm;

/// The numbers of a partition's message nodes, in ascending order.
using MessageNodeNumbers = std::vector<int>;

class BusinessRules
{
public:
    /// Whether the editor was opened for a new node (node number 0).
    bool IsNewNode = false;

    /// Fills the record selector with the partition's directory nodes and selects the one with this number,
    /// or the first. For a new node it hides the navigation row and closes the gap.
    void LoadExistingNodesInRecordSelector(EditorForm& form, qint16 nodeNumber);

    /// Fills both lists of message-node numbers with 1 to the partition's maximum. False, and a pending
    /// message, when the partition has no such maximum.
    bool LoadPromptMSGNodeNumber(EditorForm& form);

    /// Fills the form with a directory node. False, after a notice, when the node does not exist.
    bool LoadData(EditorForm& form, qint16 nodeNumber);

    /// A free message-node number, or 0 when there is none. Successive calls count up from the starting prompt and
    /// wrap at the partition's maximum. With reset it restarts that count and returns 0.
    /// used: the numbers in use, where the caller has read them for many calls; otherwise they are read.
    qint16 GetNextAvailableMSGNODENUMBER(EditorForm& form, bool reset, const MessageNodeNumbers* used = nullptr);

    /// The prompt of a row that is about to be added: the next free number, or "1" when there is none. An empty list
    /// restarts the count.
    QString PromptForNewRow(EditorForm& form, const MessageNodeNumbers* used = nullptr);

    /// Nothing when they cannot be read; the report then names GetNextAvailableMSGNODENUMBER, which they are for.
    std::optional<MessageNodeNumbers> UsedMessageNodeNumbers(EditorForm& form);

    /// Whether the general pool has the node; the types 817 and 818 are looked up as message nodes.
    bool IsNodeExisted(EditorForm& form, const QString& nodeTypeId, const QString& nodeNumber);

    /// Tests once per form whether the message nodes exist that the entries name, and offers to create the
    /// missing ones as copies of message node 0. The status bar is left visible with its last text.
    void CheckForUnReferencedNodes(EditorForm& form);

    /// Writes the form's node, its general-pool row and all its entries under this number. What ran before a
    /// failure stays written; everything written is on disk when it returns.
    void SaveChanges(EditorForm& form, qint16 nodeNumber);

private:
    /// A node's identity as the commands take it.
    struct NodeIdentity
    {
        QString config;
        QString partition;
        QString number;
    };

    void CreateMessageNode(EditorForm& form, const QString& prompt, const QString& description);
    void SaveHeader(EditorForm& form, const NodeIdentity& node);
    void SaveEntries(EditorForm& form, const NodeIdentity& node);

    DataBase mDataBase;
    int mLastMSGNodeNumber = 0;
};

} // namespace qor
