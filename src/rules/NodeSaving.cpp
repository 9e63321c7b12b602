#include "rules/NodeSaving.h"

#include "platform/data/DeferredSync.h"
#include "platform/runtime/DateText.h"
#include "rules/CommandValues.h"
#include "store/DataBase.h"

#include <QDateTime>

namespace qor {

namespace {

void SaveHeader(DataBase& dataBase, const DirectoryNode& node)
{
    const NodeHeader& header = node.header;
    dataBase.Execute(CommandId::Update_DIR_Node, QStringList{header.description, header.usePasswords ? u"1"_s : u"0"_s,
                                                             header.accessCode, header.startingPrompt} +
                                                     ValuesOf(node.identity));
    dataBase.Execute(CommandId::Update_Node_General_Pool,
                     QStringList{header.description, GeneralDateText(QDateTime::currentDateTime())} +
                         ValuesOf(node.identity.partition) +
                         QStringList{NODE_TYPE_DIR, QString::number(node.identity.number)});
}

void SaveEntries(DataBase& dataBase, const DirectoryNode& node)
{
    const QStringList partition = ValuesOf(node.identity.partition);
    const QString number = QString::number(node.identity.number);
    int sequenceNo = 0;
    for (const DirectoryEntry& entry : node.entries) {
        dataBase.Execute(CommandId::Add_Detail_DIR,
                         {partition[0], partition[1], QString::number(++sequenceNo), number, entry.firstName,
                          entry.lastName, entry.extension, entry.prompt, entry.password});
    }
}

} // namespace

void SaveNode(DataBase& dataBase, const DirectoryNode& node)
{
    DeferredSync sync(dataBase.Conn);
    dataBase.Execute(CommandId::Delete_DIR_DetailsNode, ValuesOf(node.identity));
    SaveHeader(dataBase, node);
    SaveEntries(dataBase, node);
    sync.Finish();
}

} // namespace qor
