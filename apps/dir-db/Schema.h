// The tables and columns of a configuration database, as data, for making one and for checking one.
#pragma once

#include "platform/runtime/Text.h"

#include <span>

namespace qor {

enum class ColumnType { Integer, Text };

struct SchemaColumn
{
    const char* name;
    ColumnType type;
    int keyPlace = 0; ///< 1-based place in the primary key; 0 for a column outside of it
};

/// The tables, in the order of the schema.
enum class TableId { Node_Type_Max, Node_DIR, Detail_DIR, Node_MSG, Node_General_Pool };

struct SchemaTable
{
    TableId id;
    const char* name;
    std::span<const SchemaColumn> columns;
};

std::span<const SchemaTable> Schema();
const SchemaTable& SchemaEntry(TableId id);

/// A name in the engine's quotes, so that reserved words are allowed.
QString Quoted(const char* name);
/// "ConfigID, PartID, ...": the columns of the primary key, in its order.
QString KeyText(const SchemaTable& table);
QString CreateTableText(const SchemaTable& table);

} // namespace qor
