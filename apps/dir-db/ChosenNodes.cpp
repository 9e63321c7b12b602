#include "ChosenNodes.h"

#include "platform/runtime/RuntimeError.h"
#include "rules/NodeLoading.h"

namespace qor {

namespace {

[[noreturn]] void ThrowNotThere(const NodeChoice& choice)
{
    const QString wanted = choice.node ? u"no DIR %1"_s.arg(*choice.node) : u"no directory node"_s;
    throw RuntimeError(ErrorNumber::SubscriptOutOfRange,
                       u"There is %1 in partition %2 of configuration %3. \"dir-db show\" tells which there are."_s.arg(
                           wanted, QString::number(choice.partition.number), QString::number(choice.partition.config)));
}

} // namespace

void ForEachChosenNode(DataBase& dataBase, const NodeChoice& choice,
                       const std::function<void(const DirectoryNode& node)>& take)
{
    std::vector<qint16> numbers = FindDirectoryNodes(dataBase, choice.partition).numbers;
    if (choice.node)
        std::erase_if(numbers, [&](qint16 number) { return number != *choice.node; });
    if (numbers.empty())
        ThrowNotThere(choice);
    const int highest = HighestMessageNode(dataBase, choice.partition).value_or(0);
    for (const qint16 number : numbers) {
        if (const auto node = LoadNode(dataBase, {choice.partition, number}, highest))
            take(*node);
    }
}

} // namespace qor
