#include "RowWriter.h"

namespace qor {

namespace {

QString InsertText(const SchemaTable& table)
{
    QStringList columns;
    QStringList values;
    for (const SchemaColumn& column : table.columns) {
        columns << Quoted(column.name);
        values << u'?' + QString::number(columns.size());
    }
    return u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(Quoted(table.name), columns.join(u", "_s), values.join(u", "_s));
}

Command InsertCommand(Connection& connection, const SchemaTable& table)
{
    return {connection, u"insert into "_s + QString::fromLatin1(table.name), InsertText(table),
            static_cast<int>(table.columns.size()), NullText::IsNull};
}

} // namespace

RowWriter::RowWriter(Connection& connection, TableId table) : mInsert(InsertCommand(connection, SchemaEntry(table))) {}

void RowWriter::Write(const QStringList& values)
{
    mInsert.Execute(values);
}

} // namespace qor
