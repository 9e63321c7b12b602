// The message nodes that entries name: whether they exist, which are missing, and how a missing one is made.
#pragma once

#include "rules/DirectoryNode.h"

#include <functional>

namespace qor {

class DataBase;

/// Whether the general pool has the node; the types 817 and 818 are looked up as message nodes. Raises RuntimeError
/// when the pool cannot be read.
bool IsNodeExisted(DataBase& dataBase, const Partition& partition, const QString& nodeTypeId,
                   const QString& nodeNumber);

/// What may be answered when a message node is missing.
enum class ConfirmationAnswer : int {
    Closed = 0,
    Yes = 2,
    No = 3, ///< any value that is none of the others counts as No
    YesToAll = 4,
    Stop = 5,
};

/// A set of prompts that the caller keeps.
struct PromptSet
{
    std::function<bool(const QString& prompt)> contains;
    std::function<void(const QString& prompt)> add;
};

/// What the caller of MakeMissingMessageNodes does in between.
struct MissingNodeCallbacks
{
    PromptSet checked; ///< prompts in it are not looked up again
    std::function<ConfirmationAnswer(const QString& prompt)> ask;
    std::function<void(const QString& prompt)> made;
    /// In a shared database: the node of this prompt was made by another station while the question was asked. The
    /// answer is the prompt that the entry has from now on, which may be the same.
    std::function<QString(std::size_t entry)> taken = {};
};

/// Looks up the message node of each entry and makes those that are missing as copies of the partition's message node
/// 0, where the answer wants it: with Yes this one, with YesToAll this and every further one without asking; Stop and
/// Closed end it, and that prompt is not checked. Where there is no message node 0 nothing is written, and it is told
/// as made all the same. In a shared database one station at a time makes nodes in a partition. Raises RuntimeError
/// when the database fails; nodes that were made stay.
void MakeMissingMessageNodes(DataBase& dataBase, const Partition& partition, std::vector<DirectoryEntry> entries,
                             const MissingNodeCallbacks& callbacks);

/// "P01M005.wav": at least two digits of the partition and three of the node, a sign before them. A prompt that is no
/// number stands as it is.
QString WaveFileName(qint16 partition, const QString& prompt);

/// What a message node made for an entry is called: first name, blank and last name, cut to 31 characters.
QString MessageNodeDescription(const DirectoryEntry& entry);

} // namespace qor
