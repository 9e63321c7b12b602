#include "TextFindings.h"

#include "Query.h"
#include "Schema.h"

namespace qor {

namespace {

QStringList TextColumns(const SchemaTable& table)
{
    QStringList columns;
    for (const SchemaColumn& column : table.columns) {
        if (column.type == ColumnType::Text)
            columns << QString::fromLatin1(column.name);
    }
    return columns;
}

QString RowName(const Recordset& row, const SchemaTable& table, int keyLength)
{
    QStringList key;
    for (int i = 0; i < keyLength; ++i)
        key << row.Field(i).toString();
    return u"%1 (%2) = (%3)"_s.arg(QString::fromLatin1(table.name), KeyText(table), key.join(u", "_s));
}

void LookAt(Connection& connection, const SchemaTable& table, Finding& finding)
{
    const QStringList columns = TextColumns(table);
    const int keyLength = static_cast<int>(KeyText(table).count(u',')) + 1;
    QStringList selected{KeyText(table)};
    for (const QString& column : columns)
        selected << StoredTexts(connection, column);
    ForEachRow(connection, u"SELECT %1 FROM %2"_s.arg(selected.join(u", "_s), QString::fromLatin1(table.name)),
               [&](const Recordset& row) {
                   for (int i = 0; i < columns.size(); ++i) {
                       if (!row.Field(keyLength + i).toByteArray().isValidUtf8())
                           finding.AddPlace([&] { return RowName(row, table, keyLength) + u": "_s + columns[i]; });
                   }
               });
}

} // namespace

Finding FindForeignTexts(Connection& connection)
{
    Finding finding{u"texts of nodes that the editor shows and saves with other characters, as they are not UTF-8"_s};
    for (const SchemaTable& table : Schema()) {
        if (table.id != TableId::Detail_DIR)
            LookAt(connection, table, finding);
    }
    return finding;
}

} // namespace qor
