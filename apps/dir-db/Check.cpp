#include "Check.h"

#include "EntryFindings.h"
#include "NodeFindings.h"
#include "platform/data/Connection.h"
#include "platform/runtime/RuntimeError.h"
#include "Progress.h"
#include "Query.h"
#include "ReadAccess.h"
#include "RecordingFiles.h"
#include "Schema.h"
#include "store/CommandCatalog.h"
#include "TextFindings.h"

#include <algorithm>
#include <QHash>

namespace qor {

namespace {

struct FoundColumn
{
    QString type;
    int keyPlace;
};
using FoundColumns = QHash<QString, FoundColumn>; ///< by the name in lower case

FoundColumns ReadColumns(Connection& connection, const SchemaTable& table)
{
    FoundColumns found;
    Recordset columns =
        Query(connection, u"SELECT name, type, pk FROM pragma_table_info(?1)"_s, {QString::fromLatin1(table.name)});
    for (; !columns.EndOfFile(); columns.MoveNext()) {
        found.insert(columns.Field(0).toString().toLower(),
                     {columns.Field(1).toString().toUpper(), columns.Field(2).toInt()});
    }
    return found;
}

/// Whether the engine compares and sorts a column that was declared with `declared` as one of `type`.
bool ServesAs(ColumnType type, const QString& declared)
{
    if (declared.contains(u"INT"))
        return type == ColumnType::Integer;
    const QStringList textWords{u"CHAR"_s, u"CLOB"_s, u"TEXT"_s};
    return type == ColumnType::Text &&
           std::ranges::any_of(textWords, [&](const QString& word) { return declared.contains(word); });
}

bool HasKey(const SchemaTable& table, const FoundColumns& found)
{
    const auto inKey = [](const auto& column) { return column.keyPlace > 0; };
    return std::ranges::count_if(found, inKey) == std::ranges::count_if(table.columns, inKey) &&
           std::ranges::all_of(table.columns, [&](const SchemaColumn& column) {
               return found.value(QString::fromLatin1(column.name).toLower()).keyPlace == column.keyPlace;
           });
}

QStringList TableReasons(const SchemaTable& table, const FoundColumns& found)
{
    const QString tableName = QString::fromLatin1(table.name);
    if (found.isEmpty())
        return {u"The table %1 is missing."_s.arg(tableName)};
    QStringList reasons;
    for (const SchemaColumn& column : table.columns) {
        const QString name = QString::fromLatin1(column.name);
        const auto place = found.constFind(name.toLower());
        if (place == found.cend())
            reasons << u"The table %1 lacks the column %2."_s.arg(tableName, name);
        else if (!ServesAs(column.type, place->type))
            reasons << u"The column %1 of the table %2 has the type \"%3\", not %4."_s.arg(
                name, tableName, place->type, column.type == ColumnType::Integer ? u"INTEGER"_s : u"TEXT"_s);
    }
    if (!HasKey(table, found))
        reasons << u"The primary key of the table %1 is not (%2)."_s.arg(tableName, KeyText(table));
    return reasons;
}

QStringList IntegrityReasons(Connection& connection)
{
    QStringList reasons;
    Recordset findings = Query(connection, u"PRAGMA integrity_check(10)"_s);
    for (; !findings.EndOfFile(); findings.MoveNext()) {
        const QString finding = findings.Field(0).toString();
        if (finding != u"ok")
            reasons << u"The file is damaged: %1."_s.arg(finding.simplified());
    }
    return reasons;
}

QStringList SchemaReasons(Connection& connection)
{
    QStringList reasons;
    for (const SchemaTable& table : Schema())
        reasons << TableReasons(table, ReadColumns(connection, table));
    return reasons;
}

void LookAtContents(Connection& connection, const RecordingFiles* recordings, CheckResult& result)
{
    const Progress progress("Looking at the entries");
    result.directoryNodes = CountOf(connection, u"Node_DIR WHERE NodeTypeID = ?1"_s, {NODE_TYPE_DIR});
    result.entries = CountOf(connection, u"Detail_DIR"_s);
    result.findings = FindInNodes(connection) + FindInEntries(connection, recordings);
    result.findings << FindForeignTexts(connection);
}

/// A step that the damage stops does not keep the next ones from telling what they find.
template <typename Step>
void Collect(QStringList& reasons, Step step)
{
    try {
        reasons << step();
    } catch (const RuntimeError& error) {
        reasons << error.Description();
    }
}

} // namespace

QStringList FindUnsoundness(Connection& connection)
{
    const Progress progress("Checking the pages of the database");
    QStringList reasons;
    Collect(reasons, [&] { return IntegrityReasons(connection); });
    Collect(reasons, [&] { return SchemaReasons(connection); });
    reasons.removeDuplicates();
    return reasons;
}

void RequireSound(Connection& connection, const QString& fileName)
{
    const QStringList reasons = FindUnsoundness(connection);
    if (!reasons.isEmpty())
        throw RuntimeError(ErrorNumber::Provider,
                           u"The database %1 is not sound. %2 Choose another file; \"dir-db check\" tells more."_s.arg(
                               fileName, reasons[0]));
}

CheckResult CheckDatabase(const QString& fileName, const QString& recordings)
{
    std::optional<RecordingFiles> files;
    if (!recordings.isEmpty())
        files.emplace(recordings);
    Connection connection;
    connection.SetConnectionString(ConnectionStringFor(fileName));
    const ReadAccess access(connection, fileName);
    CheckResult result;
    result.reasons = FindUnsoundness(connection);
    if (result.reasons.isEmpty())
        LookAtContents(connection, files ? &*files : nullptr, result);
    access.RequireUnchanged();
    return result;
}

} // namespace qor
