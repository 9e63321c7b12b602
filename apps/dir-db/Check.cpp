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

/// Whether the file engine compares and sorts a column declared as `declared` like one of `type`.
bool ServesInFile(ColumnType type, const QString& declared)
{
    if (declared.contains(u"INT"))
        return type == ColumnType::Integer;
    const QStringList textWords{u"CHAR"_s, u"CLOB"_s, u"TEXT"_s};
    return type == ColumnType::Text &&
           std::ranges::any_of(textWords, [&](const QString& word) { return declared.contains(word); });
}

/// A server refuses other values, and longer ones than a column allows: a text with a limit is another type.
bool ServesOnServer(ColumnType type, const QString& declared)
{
    const QStringList types = type == ColumnType::Integer ? QStringList{u"SMALLINT"_s, u"INTEGER"_s, u"BIGINT"_s}
                                                          : QStringList{u"TEXT"_s, u"CHARACTER VARYING"_s};
    return types.contains(declared);
}

/// How to ask an engine for its tables.
struct Catalog
{
    const char* columns;   ///< of the table ?1, in small letters: name, type, 1-based place in the primary key or 0
    const char* integrity; ///< null when that is up to an administrator
    bool (*serves)(ColumnType type, const QString& declared);
};

constexpr Catalog fileCatalog{"SELECT name, type, pk FROM pragma_table_info(?1)", "PRAGMA integrity_check(10)",
                              ServesInFile};

/// The commands name columns without quotes, which the server reads in small letters: one with a capital letter is
/// another column.
constexpr Catalog serverCatalog{
    "SELECT attname, format_type(atttypid, atttypmod), "
    "COALESCE((SELECT place FROM unnest(indkey) WITH ORDINALITY AS k(number, place) "
    "WHERE number = attnum AND place <= indnkeyatts), 0) "
    "FROM pg_attribute LEFT JOIN pg_index ON indrelid = attrelid AND indisprimary "
    "WHERE attrelid = to_regclass(?1) AND attnum > 0 AND NOT attisdropped AND attname = lower(attname)",
    nullptr, ServesOnServer};

const Catalog& CatalogOf(const Connection& connection)
{
    return connection.IsShared() ? serverCatalog : fileCatalog;
}

FoundColumns ReadColumns(Connection& connection, const SchemaTable& table)
{
    FoundColumns found;
    Recordset columns = Query(connection, QString::fromLatin1(CatalogOf(connection).columns),
                              {QString::fromLatin1(table.name).toLower()});
    for (; !columns.EndOfFile(); columns.MoveNext()) {
        found.insert(columns.Field(0).toString().toLower(),
                     {columns.Field(1).toString().toUpper(), columns.Field(2).toInt()});
    }
    return found;
}

bool HasKey(const SchemaTable& table, const FoundColumns& found)
{
    const auto inKey = [](const auto& column) { return column.keyPlace > 0; };
    return std::ranges::count_if(found, inKey) == std::ranges::count_if(table.columns, inKey) &&
           std::ranges::all_of(table.columns, [&](const SchemaColumn& column) {
               return found.value(QString::fromLatin1(column.name).toLower()).keyPlace == column.keyPlace;
           });
}

QStringList TableReasons(const Catalog& catalog, const SchemaTable& table, const FoundColumns& found)
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
        else if (!catalog.serves(column.type, place->type))
            reasons << u"The column %1 of the table %2 has the type \"%3\", not %4."_s.arg(
                name, tableName, place->type, column.type == ColumnType::Integer ? u"INTEGER"_s : u"TEXT"_s);
    }
    if (!HasKey(table, found))
        reasons << u"The primary key of the table %1 is not (%2)."_s.arg(tableName, KeyText(table));
    return reasons;
}

QStringList IntegrityReasons(Connection& connection)
{
    const char* const text = CatalogOf(connection).integrity;
    if (text == nullptr)
        return {};
    const Progress progress("Checking the pages of the database");
    QStringList reasons;
    Recordset findings = Query(connection, QString::fromLatin1(text));
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
        reasons << TableReasons(CatalogOf(connection), table, ReadColumns(connection, table));
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

/// Damage that stops one step does not keep the others from reporting what they find.
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
    CheckResult result{.isShared = connection.IsShared()};
    result.reasons = FindUnsoundness(connection);
    if (result.reasons.isEmpty())
        LookAtContents(connection, files ? &*files : nullptr, result);
    access.RequireUnchanged();
    return result;
}

} // namespace qor
