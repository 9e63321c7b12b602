#include "Show.h"

#include "Output.h"
#include "platform/data/Connection.h"
#include "Query.h"
#include "ReadAccess.h"
#include "rules/DelimitedWriter.h"
#include "rules/EntryColumns.h"
#include "store/CommandCatalog.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace qor {

namespace {

enum class Owner { Node, Entry };

struct ShownColumn
{
    Owner owner;
    const char* name;
    bool secret = false;
};

QList<ShownColumn> ChosenColumns(bool withSecrets)
{
    QList<ShownColumn> columns{
        {Owner::Node, "NodeNumber"},       {Owner::Node, "NodeDescription"},      {Owner::Node, "UsePasswords"},
        {Owner::Node, "AccessCode", true}, {Owner::Node, "StartingPromptNumber"}, {Owner::Entry, "SequenceNo"},
    };
    for (const EntryColumn& column : entryColumns)
        columns << ShownColumn{Owner::Entry, column.name, column.field == &DirectoryEntry::password};
    if (!withSecrets)
        columns.removeIf([](const ShownColumn& column) { return column.secret; });
    return columns;
}

/// One row for each entry; a node without entries has one row without an entry.
Recordset ReadRows(Connection& connection, const ShowRequest& request, const QList<ShownColumn>& columns)
{
    QStringList names;
    for (const ShownColumn& column : columns)
        names << (column.owner == Owner::Node ? u"Node_DIR."_s : u"Detail_DIR."_s) + QString::fromLatin1(column.name);
    const QString text = u"SELECT %1 FROM Node_DIR LEFT JOIN Detail_DIR ON Detail_DIR.ConfigID = Node_DIR.ConfigID AND "
                         "Detail_DIR.PartID = Node_DIR.PartID AND NodeMasterID = NodeNumber WHERE "
                         "Node_DIR.ConfigID = ?1 AND Node_DIR.PartID = ?2 AND NodeTypeID = ?3 "
                         "ORDER BY NodeNumber, SequenceNo"_s.arg(names.join(u", "_s));
    return Query(connection, text,
                 {QString::number(request.partition.config), QString::number(request.partition.number), NODE_TYPE_DIR});
}

QStringList Values(const Recordset& rows, const QList<ShownColumn>& columns, Owner owner)
{
    QStringList values;
    for (int i = 0; i < columns.size(); ++i) {
        if (columns[i].owner == owner)
            values << rows.Field(i).toString();
    }
    return values;
}

QStringList Names(const QList<ShownColumn>& columns, Owner owner)
{
    QStringList names;
    for (const ShownColumn& column : columns) {
        if (column.owner == owner)
            names << QString::fromLatin1(column.name);
    }
    return names;
}

void PrintCsvLine(const QStringList& values)
{
    PrintRecord(DelimitedLine(values, Quoting::WhereNeeded));
}

void PrintCsv(Recordset& rows, const QList<ShownColumn>& columns)
{
    PrintCsvLine(Names(columns, Owner::Node) + Names(columns, Owner::Entry));
    for (; !rows.EndOfFile(); rows.MoveNext())
        PrintCsvLine(Values(rows, columns, Owner::Node) + Values(rows, columns, Owner::Entry));
}

/// DIR 7: NodeDescription "Staff", UsePasswords "1", ...
QString NodeLine(const Recordset& rows, const QList<ShownColumn>& columns)
{
    const QStringList names = Names(columns, Owner::Node);
    const QStringList values = Values(rows, columns, Owner::Node);
    QStringList parts;
    for (qsizetype i = 1; i < names.size(); ++i)
        parts << u"%1 \"%2\""_s.arg(names[i], values[i]);
    return u"DIR %1: %2"_s.arg(values[0], parts.join(u", "_s));
}

/// Prints the node that the rows stand on, with its entries, and steps to the next node.
void PrintNode(Recordset& rows, const QList<ShownColumn>& columns)
{
    PrintLine(NodeLine(rows, columns));
    const QString node = rows.Field(0).toString();
    QList<QStringList> lines{Names(columns, Owner::Entry)};
    for (; !rows.EndOfFile() && rows.Field(0).toString() == node; rows.MoveNext()) {
        if (!rows.Field(u"SequenceNo"_s).isNull())
            lines << Values(rows, columns, Owner::Entry);
    }
    if (lines.size() > 1)
        PrintTable(lines);
    else
        PrintLine(u"  no entries"_s);
}

QJsonObject JsonOf(const Recordset& row, const QList<ShownColumn>& columns, Owner owner)
{
    QJsonObject object;
    for (int i = 0; i < columns.size(); ++i) {
        const QVariant& value = row.Field(i);
        if (columns[i].owner == owner)
            object[QLatin1String(columns[i].name)] =
                value.isNull() ? QJsonValue() : QJsonValue::fromVariant(value); // a Null would become an empty text
    }
    return object;
}

void PrintAsJson(Recordset& rows, const ShowRequest& request, const QList<ShownColumn>& columns)
{
    QJsonArray nodes;
    while (!rows.EndOfFile()) {
        QJsonObject node = JsonOf(rows, columns, Owner::Node);
        QJsonArray entries;
        for (const QVariant number = rows.Field(0); !rows.EndOfFile() && rows.Field(0) == number; rows.MoveNext()) {
            if (!rows.Field(u"SequenceNo"_s).isNull())
                entries << JsonOf(rows, columns, Owner::Entry);
        }
        node[u"Entries"_s] = entries;
        nodes << node;
    }
    PrintJson(QJsonDocument(QJsonObject{{u"ConfigID"_s, request.partition.config},
                                        {u"PartID"_s, request.partition.number},
                                        {u"Nodes"_s, nodes}})
                  .toJson());
}

void PrintTables(Recordset& rows, const ShowRequest& request, const QList<ShownColumn>& columns)
{
    if (rows.EndOfFile())
        PrintLine(u"There are no directory nodes in partition %1 of configuration %2."_s.arg(request.partition.number)
                      .arg(request.partition.config));
    while (!rows.EndOfFile())
        PrintNode(rows, columns);
}

} // namespace

void ShowPartition(const ShowRequest& request)
{
    Connection connection;
    const ReadAccess access(connection, request.fileName);
    const QList<ShownColumn> columns = ChosenColumns(request.withPasswords);
    Recordset rows = ReadRows(connection, request, columns);
    access.RequireUnchanged();
    switch (request.format) {
    case ShowFormat::Table:
        return PrintTables(rows, request, columns);
    case ShowFormat::Csv:
        return PrintCsv(rows, columns);
    case ShowFormat::Json:
        return PrintAsJson(rows, request, columns);
    }
}

} // namespace qor
