#include "rules/MessageNodes.h"

#include "platform/data/SavingLock.h"
#include "platform/runtime/DateText.h"
#include "platform/runtime/Numbers.h"
#include "rules/CommandValues.h"
#include "rules/SavingSections.h"
#include "store/DataBase.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <QDateTime>

namespace qor {

namespace {

constexpr QLatin1String templateNode("0"); // new message nodes are copies of it

/// At least this many digits, after the sign if there is one.
QString PaddedNumber(long long number, int digits)
{
    const QString text = QString::number(std::abs(number)).rightJustified(digits, u'0');
    return number < 0 ? u'-' + text : text;
}

void MakeMessageNode(DataBase& dataBase, const Partition& partition, const DirectoryEntry& entry)
{
    const QString description = MessageNodeDescription(entry);
    const QStringList source = ValuesOf(partition) << templateNode;
    dataBase.Execute(CommandId::Duplicate_MSG_Node,
                     QStringList{entry.prompt, WaveFileName(partition.number, entry.prompt), description} + source);
    dataBase.Execute(CommandId::Duplicate_Node_In_General_Pool,
                     QStringList{entry.prompt, description, GeneralDateText(QDateTime::currentDateTime())} + source +
                         QStringList{NODE_TYPE_MSG});
}

bool IsMessageNode(DataBase& dataBase, const Partition& partition, const QString& prompt)
{
    return IsNodeExisted(dataBase, partition, NODE_TYPE_MSG, prompt);
}

/// In a shared database another station may have been faster: looks again, and keeps others out until the node is made.
void MakeAlone(DataBase& dataBase, const Partition& partition, DirectoryEntry& entry,
               const std::function<QString()>& taken, const std::function<void(const QString&)>& made)
{
    std::optional<SavingLock> lock;
    if (dataBase.Conn.IsShared()) {
        lock.emplace(dataBase.Conn, SectionOf(partition));
        while (IsMessageNode(dataBase, partition, entry.prompt)) {
            const QString prompt = taken();
            if (prompt == entry.prompt)
                return;
            entry.prompt = prompt;
        }
    }
    MakeMessageNode(dataBase, partition, entry);
    made(entry.prompt);
}

bool StopsCheck(ConfirmationAnswer answer)
{
    return answer == ConfirmationAnswer::Stop || answer == ConfirmationAnswer::Closed;
}

bool MakesNode(ConfirmationAnswer answer)
{
    return answer == ConfirmationAnswer::Yes || answer == ConfirmationAnswer::YesToAll;
}

} // namespace

bool IsNodeExisted(DataBase& dataBase, const Partition& partition, const QString& nodeTypeId, const QString& nodeNumber)
{
    constexpr std::array messageNodeKinds{817.0, 818.0};
    const double type = NumberFromText(nodeTypeId).value_or(0);
    const bool isMessageNode = std::ranges::find(messageNodeKinds, type) != messageNodeKinds.end();
    const Recordset node = dataBase.Open(
        CommandId::Get_Description, ValuesOf(partition) << (isMessageNode ? NODE_TYPE_MSG : nodeTypeId) << nodeNumber);
    return !node.EndOfFile();
}

void MakeMissingMessageNodes(DataBase& dataBase, const Partition& partition, std::vector<DirectoryEntry> entries,
                             const MissingNodeCallbacks& callbacks)
{
    auto answer = ConfirmationAnswer::No;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        DirectoryEntry& entry = entries[i];
        if (callbacks.checked.contains(entry.prompt))
            continue;
        if (!IsMessageNode(dataBase, partition, entry.prompt)) {
            if (answer != ConfirmationAnswer::YesToAll)
                answer = callbacks.ask(entry.prompt);
            if (StopsCheck(answer))
                return;
            if (MakesNode(answer))
                MakeAlone(
                    dataBase, partition, entry, [&] { return callbacks.taken(i); }, callbacks.made);
        }
        callbacks.checked.add(entry.prompt);
    }
}

QString WaveFileName(qint16 partition, const QString& prompt)
{
    const auto number = NumberFromText(prompt);
    const QString node = number ? PaddedNumber(std::llround(*number), 3) : prompt;
    return u'P' + PaddedNumber(partition, 2) + u'M' + node + u".wav"_s;
}

QString MessageNodeDescription(const DirectoryEntry& entry)
{
    constexpr qsizetype highestLength = 31;
    return CutAtCharacter(entry.firstName + u' ' + entry.lastName, highestLength);
}

} // namespace qor
