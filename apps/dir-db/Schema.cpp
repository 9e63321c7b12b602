#include "Schema.h"

#include <array>
#include <QMap>
#include <QStringList>

namespace qor {

namespace {

using enum ColumnType;

// The places in the keys make each key's index serve the commands that read: the columns that they compare come first,
// then the one that they sort by.

constexpr std::array nodeTypeMaxColumns{
    SchemaColumn{"Config_ID", Integer, 1},
    SchemaColumn{"PartitionID", Integer, 2},
    SchemaColumn{"NodeType_ID", Integer, 3},
    SchemaColumn{"Max_number", Integer},
};

constexpr std::array nodeDirColumns{
    SchemaColumn{"ConfigID", Integer, 1},   SchemaColumn{"PartID", Integer, 2},
    SchemaColumn{"NodeTypeID", Integer, 4}, SchemaColumn{"NodeNumber", Integer, 3},
    SchemaColumn{"NodeDescription", Text},  SchemaColumn{"UsePasswords", Integer},
    SchemaColumn{"AccessCode", Text},       SchemaColumn{"StartingPromptNumber", Integer},
};

constexpr std::array detailDirColumns{
    SchemaColumn{"ConfigID", Integer, 1},     SchemaColumn{"PartID", Integer, 2},
    SchemaColumn{"NodeMasterID", Integer, 3}, SchemaColumn{"SequenceNo", Integer, 4},
    SchemaColumn{"LastName", Text},           SchemaColumn{"FirstName", Text},
    SchemaColumn{"Extension", Text},          SchemaColumn{"NamePrompt", Integer},
    SchemaColumn{"Password", Text},
};

constexpr std::array nodeMsgColumns{
    SchemaColumn{"ConfigID", Integer, 1},
    SchemaColumn{"PartID", Integer, 2},
    SchemaColumn{"NodeTypeID", Integer},
    SchemaColumn{"NodeNumber", Integer, 3},
    SchemaColumn{"MaxLength", Integer},
    SchemaColumn{"OnOff", Integer},
    SchemaColumn{"DTMF", Text},
    SchemaColumn{"Password", Text},
    SchemaColumn{"Directory", Text},
    SchemaColumn{"KELFilename", Text},
    SchemaColumn{"Comment", Text},
    SchemaColumn{"SkipCount", Integer},
    SchemaColumn{"Permission", Integer},
    SchemaColumn{"WarningTone", Integer},
    SchemaColumn{"LineAssignment", Text},
    SchemaColumn{"NodeType", Text},
    SchemaColumn{"NodeDescription", Text},
    SchemaColumn{"MSGArchive", Integer},
};

constexpr std::array nodeGeneralPoolColumns{
    SchemaColumn{"ConfigID", Integer, 1},   SchemaColumn{"PartID", Integer, 2}, SchemaColumn{"NodeTypeID", Integer, 3},
    SchemaColumn{"NodeNumber", Integer, 4}, SchemaColumn{"NodeType", Text},     SchemaColumn{"NodeDescription", Text},
    SchemaColumn{"DateModified", Text},
};

constexpr std::array tables{
    SchemaTable{TableId::Node_Type_Max, "Node_Type_Max", nodeTypeMaxColumns},
    SchemaTable{TableId::Node_DIR, "Node_DIR", nodeDirColumns},
    SchemaTable{TableId::Detail_DIR, "Detail_DIR", detailDirColumns},
    SchemaTable{TableId::Node_MSG, "Node_MSG", nodeMsgColumns},
    SchemaTable{TableId::Node_General_Pool, "Node_General_Pool", nodeGeneralPoolColumns},
};

constexpr bool StandsInOrder()
{
    for (std::size_t i = 0; i < tables.size(); ++i) {
        if (tables[i].id != static_cast<TableId>(i))
            return false;
    }
    return true;
}
static_assert(StandsInOrder(), "a table is found by its position");

QString ColumnText(const SchemaColumn& column)
{
    return Quoted(column.name) + (column.type == Integer ? u" INTEGER"_s : u" TEXT"_s) +
           (column.keyPlace > 0 ? u" NOT NULL"_s : QString());
}

QStringList KeyColumns(const SchemaTable& table)
{
    QMap<int, QString> places;
    for (const SchemaColumn& column : table.columns) {
        if (column.keyPlace > 0)
            places.insert(column.keyPlace, QString::fromLatin1(column.name));
    }
    return places.values();
}

} // namespace

std::span<const SchemaTable> Schema()
{
    return tables;
}

const SchemaTable& SchemaEntry(TableId id)
{
    return tables.at(static_cast<std::size_t>(id));
}

QString Quoted(const char* name)
{
    return u'`' + QString::fromLatin1(name) + u'`';
}

QString KeyText(const SchemaTable& table)
{
    return KeyColumns(table).join(u", "_s);
}

QString CreateTableText(const SchemaTable& table)
{
    QStringList lines;
    for (const SchemaColumn& column : table.columns)
        lines << ColumnText(column);
    lines << u"PRIMARY KEY (%1)"_s.arg(KeyText(table));
    return u"CREATE TABLE %1 (%2)"_s.arg(Quoted(table.name), lines.join(u", "_s));
}

} // namespace qor
