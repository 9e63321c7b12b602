// The twelve named commands: the only SQL of the editor, as data.
#pragma once

#include "platform/runtime/Text.h"

#include <QStringList>
#include <span>

namespace qor {

/// The commands by name, in the order of the catalog.
enum class CommandId {
    Get_Specific_Node_Type_Max,
    Get_All_DIR_Nodes,
    Get_DIR_Node,
    Get_DIR_DetailsNode,
    Get_All_Existing_MSG_NodeNumber,
    Delete_DIR_DetailsNode,
    Update_DIR_Node,
    Update_Node_General_Pool,
    Add_Detail_DIR,
    Duplicate_MSG_Node,
    Get_Description,
    Duplicate_Node_In_General_Pool,
};

struct StoredCommand
{
    CommandId id;
    const char* name;
    const char* recordset; ///< "rs" + name for a command that returns rows, else null
    const char* sql;       ///< as stored, with its parameters as Given_ names
};

std::span<const StoredCommand> CommandCatalog();
const StoredCommand& CatalogEntry(CommandId id);

/// A stored statement in the engine's syntax.
struct EngineStatement
{
    QString text;           ///< with ?1, ?2, ... for the parameters
    QStringList parameters; ///< the Given_ names in order of first appearance
};

/// Replaces every Given_ name, in back-quotes or bare, by a placeholder, the same for the same name.
EngineStatement TranslateStoredSql(const QString& sql);

/// Node type ids as the commands take them.
inline const QString NODE_TYPE_DIR = u"16"_s;
inline const QString NODE_TYPE_MSG = u"0"_s;

} // namespace qor
