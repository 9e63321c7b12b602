#include "RowWriter.h"

namespace qor {

namespace {

/// A command binds a null text as the empty text, so Null travels as this one character, which no text holds,
/// and the statement turns it back.
const QString nullMark = u"\ufdd0"_s;

QString InsertText(const SchemaTable& table)
{
    QStringList columns;
    QStringList values;
    for (const SchemaColumn& column : table.columns) {
        columns << Quoted(column.name);
        values << u"NULLIF(?%1, char(0xfdd0))"_s.arg(columns.size());
    }
    return u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(Quoted(table.name), columns.join(u", "_s), values.join(u", "_s));
}

Command InsertCommand(Connection& connection, const SchemaTable& table)
{
    return {connection, u"insert into "_s + QString::fromLatin1(table.name), InsertText(table),
            static_cast<int>(table.columns.size())};
}

} // namespace

RowWriter::RowWriter(Connection& connection, TableId table) : mInsert(InsertCommand(connection, SchemaEntry(table))) {}

void RowWriter::Write(QStringList values)
{
    for (QString& value : values) {
        if (value.isNull())
            value = nullMark;
    }
    mInsert.Execute(values);
}

} // namespace qor
