// The message nodes that entries name: finds out which are missing, and makes them.
#pragma once

#include "rules/DirectoryNode.h"

#include <functional>

namespace qor {

class DataBase;

/// Whether the general pool has the node; the types 817 and 818 are looked up as message nodes. Raises RuntimeError
/// when the pool cannot be read.
bool IsNodeExisted(DataBase& dataBase, const Partition& partition, const QString& nodeTypeId,
                   const QString& nodeNumber);

/// Answers to the question whether to make a missing message node.
enum class ConfirmationAnswer : int {
    Closed = 0,
    Yes = 2,
    No = 3, ///< so is any value that is not listed here
    YesToAll = 4,
    Stop = 5,
};

/// A set of prompts that the caller keeps.
struct PromptSet
{
    std::function<bool(const QString& prompt)> contains;
    std::function<void(const QString& prompt)> add;
};

/// What MakeMissingMessageNodes asks of its caller.
struct MissingNodeCallbacks
{
    PromptSet checked; ///< prompts in it are not looked up again
    std::function<ConfirmationAnswer(const QString& prompt)> ask;
    std::function<void(const QString& prompt)> made;
    /// Only in a shared database: another station has made the node of this prompt while the question was open. Returns
    /// the prompt that the entry has from now on, which may be the same.
    std::function<QString(std::size_t entry)> taken = {};
};

/// Looks up the message node of each entry and makes those that are missing as copies of the partition's message node
/// 0, as the answer says: Yes makes this one, YesToAll this and all further ones without asking; Stop and Closed end
/// it, and that prompt does not count as checked. Without a message node 0 nothing is written, but `made` is called all
/// the same. In a shared database one station at a time makes nodes in a partition. Raises RuntimeError when the
/// database fails; nodes that were made stay.
void MakeMissingMessageNodes(DataBase& dataBase, const Partition& partition, std::vector<DirectoryEntry> entries,
                             const MissingNodeCallbacks& callbacks);

/// "P01M005.wav": at least two digits of the partition and three of the node, after their signs. A prompt that is not a
/// number stands as it is.
QString WaveFileName(qint16 partition, const QString& prompt);

/// The description of a message node that is made for an entry: first name, blank and last name, cut to 31 characters.
QString MessageNodeDescription(const DirectoryEntry& entry);

} // namespace qor
