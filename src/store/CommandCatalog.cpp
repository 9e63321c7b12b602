#include "store/CommandCatalog.h"

#include <array>
#include <QRegularExpression>

namespace qor {

namespace {

// clang-format off: the statements stand as they are stored
constexpr std::array catalog{
    StoredCommand{CommandId::Get_Specific_Node_Type_Max, "Get_Specific_Node_Type_Max", "rsGet_Specific_Node_Type_Max",
                  "SELECT Node_Type_Max.* FROM Node_Type_Max WHERE Config_ID = `Given_ConfigID` AND "
                  "PartitionID=`Given_PartID` AND NodeType_ID = `Given_NodeTypeID` "},
    StoredCommand{CommandId::Get_All_DIR_Nodes, "Get_All_DIR_Nodes", "rsGet_All_DIR_Nodes",
                  "SELECT * FROM Node_DIR WHERE ConfigID = `Given_ConfigID` AND PartID = `Given_PartID` AND "
                  "NodeTypeID = `Given_NodeTypeID` ORDER BY NodeNumber"},
    StoredCommand{CommandId::Get_DIR_Node, "Get_DIR_Node", "rsGet_DIR_Node",
                  "SELECT Node_DIR.* FROM Node_DIR WHERE ConfigID = `Given_ConfigID` AND PartID = "
                  "`Given_PartID` AND NodeNumber = `Given_NodeNumber` AND NodeTypeID = `Given_NodeTypeID`"},
    StoredCommand{CommandId::Get_DIR_DetailsNode, "Get_DIR_DetailsNode", "rsGet_DIR_DetailsNode",
                  "SELECT Detail_DIR.* FROM Detail_DIR WHERE ConfigID = `Given_ConfigID` AND PartID = "
                  "`Given_PartID` AND NodeMasterID = `Given_NodeMasterID` ORDER BY SequenceNo"},
    StoredCommand{CommandId::Get_All_Existing_MSG_NodeNumber, "Get_All_Existing_MSG_NodeNumber",
                  "rsGet_All_Existing_MSG_NodeNumber",
                  "SELECT NodeNumber FROM Node_MSG WHERE ConfigID = `Given_ConfigID` AND PartID = "
                  "`Given_PartID` ORDER BY NodeNumber"},
    StoredCommand{CommandId::Delete_DIR_DetailsNode, "Delete_DIR_DetailsNode", nullptr,
                  "DELETE FROM Detail_Dir WHERE ConfigID = `Given_ConfigID` AND PartID = `Given_PartID` AND "
                  "NodeMasterID = `Given_NodeMasterID`"},
    StoredCommand{CommandId::Update_DIR_Node, "Update_DIR_Node", nullptr,
                  "UPDATE Node_DIR SET NodeDescription = Given_NodeDescription, UsePasswords = Given_UsePasswords, "
                  "AccessCode = Given_AccessCode, StartingPromptNumber = `Given_StartingPromptNumber` WHERE (ConfigID "
                  "= Given_ConfigID) AND (PartID = Given_PartID) AND (NodeNumber = Given_NodeNumber)"},
    StoredCommand{CommandId::Update_Node_General_Pool, "Update_Node_General_Pool", nullptr,
                  "UPDATE Node_General_Pool\r\n"
                  "SET NodeDescription = `Given_Description`, \r\n"
                  "    DateModified = `Given_DateModified`\r\n"
                  "WHERE ConfigID = `Given_ConfigID` AND \r\n"
                  "    PartID = `Given_PartID` AND \r\n"
                  "    NodeTypeID = `Given_NodeTypeID` AND \r\n"
                  "    NodeNumber = `Given_NodeNumber`"},
    StoredCommand{CommandId::Add_Detail_DIR, "Add_Detail_DIR", nullptr,
                  "INSERT INTO Detail_DIR (ConfigID, PartID, SequenceNo, NodeMasterID, FirstName, LastName, "
                  "Extension, NamePrompt, `Password`) VALUES (`Given_ConfigID`, `Given_PartID`, "
                  "`Given_SequenceNo`, `Given_NodeMasterID`, `Given_FirstName`, `Given_LastName`, "
                  "`Given_Extension`, `Given_NamePrompt`, `Given_Password`)"},
    StoredCommand{CommandId::Duplicate_MSG_Node, "Duplicate_MSG_Node", nullptr,
                  "INSERT INTO Node_MSG (ConfigID, PartID, NodeTypeID, NodeNumber, MaxLength, OnOff, DTMF, `Password`, "
                  "Directory, KELFilename, Comment, SkipCount, Permission, WarningTone, LineAssignment, NodeType, "
                  "NodeDescription, MSGArchive) SELECT ConfigID, PartID, NodeTypeID, Given_DesNodeNumber, MaxLength, "
                  "OnOff, DTMF, `Password`, Directory, Given_KELFilename, Comment, SkipCount, Permission, WarningTone, "
                  "LineAssignment, NodeType, `Given_NodeDescription`, MSGArchive FROM Node_MSG WHERE (ConfigID = "
                  "Given_ConfigID) AND (PartID = Given_PartID) AND (NodeNumber = Given_NodeNumber)"},
    StoredCommand{CommandId::Get_Description, "Get_Description", "rsGet_Description",
                  "SELECT * FROM Node_General_Pool WHERE ConfigID = `Given_ConfigID` AND PartID = "
                  "`Given_PartID` AND NodeTypeID = `Given_NodeTypeID` AND NodeNumber = `Given_NodeNumber`"},
    StoredCommand{CommandId::Duplicate_Node_In_General_Pool, "Duplicate_Node_In_General_Pool", nullptr,
                  "INSERT INTO Node_General_Pool (ConfigID, PartID, NodeTypeID, NodeNumber, NodeType, "
                  "NodeDescription, DateModified) SELECT ConfigID, PartID, NodeTypeID, "
                  "`Given_DesNodeNumber`, NodeType, `Given_NodeDescription`, `Given_DateModified` FROM "
                  "Node_General_Pool WHERE (ConfigID = Given_ConfigID) AND (PartID = Given_PartID) AND "
                  "(NodeNumber = Given_NodeNumber) AND NodeTypeID = `Given_NodeTypeID`"},
};
// clang-format on

constexpr bool StandsInOrder()
{
    for (std::size_t i = 0; i < catalog.size(); ++i) {
        if (catalog[i].id != static_cast<CommandId>(i))
            return false;
    }
    return true;
}
static_assert(StandsInOrder(), "a command is found by its position");

} // namespace

std::span<const StoredCommand> CommandCatalog()
{
    return catalog;
}

const StoredCommand& CatalogEntry(CommandId id)
{
    return catalog.at(static_cast<std::size_t>(id));
}

EngineStatement TranslateStoredSql(const QString& sql)
{
    static const QRegularExpression givenName(u"(`?)\\b(Given_\\w+)\\1"_s);
    EngineStatement statement;
    qsizetype copied = 0;
    for (auto names = givenName.globalMatch(sql); names.hasNext();) {
        const QRegularExpressionMatch match = names.next();
        const QString name = match.captured(2);
        if (!statement.parameters.contains(name))
            statement.parameters << name;
        statement.text += QStringView(sql).sliced(copied, match.capturedStart() - copied);
        statement.text += u'?' + QString::number(statement.parameters.indexOf(name) + 1);
        copied = match.capturedEnd();
    }
    statement.text += QStringView(sql).sliced(copied);
    return statement;
}

} // namespace qor
