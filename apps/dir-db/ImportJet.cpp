#include "ImportJet.h"

#include "EntryFindings.h"
#include "jet/JetFile.h"
#include "NewDatabase.h"
#include "NewFile.h"
#include "Output.h"
#include "platform/runtime/RuntimeError.h"
#include "Progress.h"
#include "Query.h"
#include "RowWriter.h"

#include <algorithm>
#include <QFileInfo>
#include <QMap>

namespace qor {

namespace {

using Identity = QList<qint64>;

/// The kinds of warnings, in the order of the report; missing message nodes follow.
enum class Kind { InUse, ColumnMissing, MoreRows, NullIdentity, SameIdentity };

Findings NoFindings()
{
    return {
        {u"another program seems to use the source or did not close it"_s},
        {u"columns that the source does not have and that stay empty"_s},
        {u"tables with more rows than they say; the source was not closed properly"_s},
        {u"tables with rows whose identity has a missing value; these rows were not taken"_s},
        {u"identities of more than one row, of which the first was taken"_s},
    };
}

struct TakenRow
{
    Identity identity;
    QStringList values; ///< in the order of the schema
};

struct TakenTable
{
    TableId id;
    QList<TakenRow> rows; ///< in the order of their identities
    qsizetype readRows;
};

class Import
{
public:
    explicit Import(const QString& sourceName);

    /// Writes the rows and looks at what is then in the database.
    void Fill(DataBase& dataBase);
    void Print(const QString& sourceName) const;
    const Findings& Warnings() const { return mWarnings; }

private:
    void TakeTable(const SchemaTable& schema, const JetTable& source);
    void Warn(Kind kind, const QString& place) { mWarnings[static_cast<int>(kind)].Add(place); }
    QList<TakenRow> WithIdentity(const SchemaTable& schema, const JetTable& source);
    QList<TakenRow> WithoutRepeats(const SchemaTable& schema, const QList<TakenRow>& rows);

    QList<TakenTable> mTables;
    QStringList mOtherTables;
    QStringList mOtherColumns;
    Findings mWarnings = NoFindings();
};

QList<JetWish> Wishes()
{
    QList<JetWish> wishes;
    for (const SchemaTable& table : Schema()) {
        JetWish wish{QString::fromLatin1(table.name), {}};
        for (const SchemaColumn& column : table.columns)
            wish.columns << QString::fromLatin1(column.name);
        wishes << wish;
    }
    return wishes;
}

[[noreturn]] void ThrowNotImported(ErrorNumber number, const QString& why)
{
    throw RuntimeError(number, u"The source cannot be imported: %1."_s.arg(why));
}

/// The position of each column of the schema in the source's rows; -1 for one that the source does not have.
QList<qsizetype> Positions(const SchemaTable& schema, const JetTable& source)
{
    QList<qsizetype> positions;
    for (const SchemaColumn& column : schema.columns) {
        const QString name = QString::fromLatin1(column.name);
        const auto place = std::ranges::find(source.columns, name, &JetColumn::name);
        const bool found = place != source.columns.cend();
        if (!found && column.keyPlace > 0)
            ThrowNotImported(ErrorNumber::InvalidFileFormat,
                             u"its table %1 lacks the column %2"_s.arg(source.name, name));
        if (found && column.type == ColumnType::Integer && !place->isNumber)
            ThrowNotImported(ErrorNumber::InvalidFileFormat,
                             u"the column %1 of its table %2 holds texts, not numbers"_s.arg(name, source.name));
        positions << (found ? place - source.columns.cbegin() : -1);
    }
    return positions;
}

/// Nothing for a row with Null in its identity.
Identity IdentityOf(const SchemaTable& schema, const QStringList& values)
{
    QMap<int, qint64> places;
    for (qsizetype i = 0; i < values.size(); ++i) {
        const int place = schema.columns[static_cast<std::size_t>(i)].keyPlace;
        if (place > 0 && values[i].isNull())
            return {};
        if (place > 0)
            places.insert(place, values[i].toLongLong());
    }
    return places.values();
}

QString IdentityText(const Identity& identity)
{
    QStringList numbers;
    for (const qint64 number : identity)
        numbers << QString::number(number);
    return numbers.join(u", "_s);
}

Import::Import(const QString& sourceName)
{
    const Progress progress("Reading the source");
    const JetDatabase source = ReadJetFile(sourceName, Wishes());
    mOtherTables = source.otherTables;
    for (qsizetype i = 0; i < source.tables.size(); ++i)
        TakeTable(Schema()[static_cast<std::size_t>(i)], source.tables[i]);
    const QFileInfo info(sourceName);
    const QString lockName = info.path() + u'/' + info.completeBaseName() + u".ldb"_s;
    if (QFileInfo::exists(lockName))
        Warn(Kind::InUse, u"there is %1"_s.arg(lockName));
}

void Import::TakeTable(const SchemaTable& schema, const JetTable& source)
{
    for (const QString& column : source.otherColumns)
        mOtherColumns << source.name + u'.' + column;
    if (source.rows.size() > source.ownRowCount)
        Warn(Kind::MoreRows, u"%1: %2, not %3"_s.arg(source.name).arg(source.rows.size()).arg(source.ownRowCount));
    QList<TakenRow> rows = WithIdentity(schema, source);
    // The file keeps its rows in any order.
    std::ranges::stable_sort(rows, {}, &TakenRow::identity);
    mTables << TakenTable{schema.id, WithoutRepeats(schema, rows), source.rows.size()};
}

QList<TakenRow> Import::WithIdentity(const SchemaTable& schema, const JetTable& source)
{
    const QList<qsizetype> positions = Positions(schema, source);
    for (qsizetype i = 0; i < positions.size(); ++i) {
        if (positions[i] < 0)
            Warn(Kind::ColumnMissing,
                 source.name + u'.' + QString::fromLatin1(schema.columns[static_cast<std::size_t>(i)].name));
    }
    QList<TakenRow> rows;
    for (const QStringList& sourceRow : source.rows) {
        QStringList values;
        for (const qsizetype position : positions)
            values << (position < 0 ? QString() : sourceRow[position]);
        const Identity identity = IdentityOf(schema, values);
        if (!identity.isEmpty())
            rows << TakenRow{identity, values};
    }
    if (rows.size() < source.rows.size())
        Warn(Kind::NullIdentity,
             u"%1 (%2): %3 rows"_s.arg(source.name, KeyText(schema)).arg(source.rows.size() - rows.size()));
    return rows;
}

QList<TakenRow> Import::WithoutRepeats(const SchemaTable& schema, const QList<TakenRow>& rows)
{
    QList<TakenRow> taken;
    for (auto row = rows.cbegin(); row != rows.cend();) {
        const auto next = std::ranges::find_if(
            row, rows.cend(), [&](const Identity& other) { return other != row->identity; }, &TakenRow::identity);
        if (next - row > 1)
            Warn(Kind::SameIdentity,
                 u"%1 (%2) = (%3): %4 rows"_s
                     .arg(QString::fromLatin1(schema.name), KeyText(schema), IdentityText(row->identity))
                     .arg(next - row));
        taken << *row;
        row = next;
    }
    return taken;
}

void Import::Fill(DataBase& dataBase)
{
    const Progress progress("Writing the database");
    for (const TakenTable& table : mTables) {
        RowWriter writer(dataBase.Conn, table.id);
        for (const TakenRow& row : table.rows)
            writer.Write(row.values);
        const char* const name = SchemaEntry(table.id).name;
        const int written = CountOf(dataBase.Conn, Quoted(name));
        if (written != table.rows.size())
            ThrowNotImported(ErrorNumber::Provider,
                             u"of %1 rows of the table %2, %3 were written"_s.arg(table.rows.size())
                                 .arg(QString::fromLatin1(name))
                                 .arg(written));
    }
    mWarnings << FindMissingMessages(dataBase.Conn);
}

void Import::Print(const QString& sourceName) const
{
    PrintLine(u"Rows taken from %1:"_s.arg(sourceName));
    for (const TakenTable& table : mTables)
        PrintLine(u"  %1%2 of %3"_s.arg(QString::fromLatin1(SchemaEntry(table.id).name), -20)
                      .arg(table.rows.size())
                      .arg(table.readRows));
    if (!mOtherTables.isEmpty())
        PrintLine(u"Tables not taken: "_s + mOtherTables.join(u", "_s));
    if (!mOtherColumns.isEmpty())
        PrintLine(u"Columns not taken: "_s + mOtherColumns.join(u", "_s));
    PrintFindings(mWarnings);
}

} // namespace

bool ImportJet(const QString& sourceName, const QString& newName, bool dryRun)
{
    if (!newName.isEmpty())
        RequireFreeName(newName);
    Import import(sourceName);
    const auto fill = [&](DataBase& dataBase) { import.Fill(dataBase); };
    if (dryRun)
        TryDatabase(fill);
    else
        MakeDatabase(newName, fill);
    import.Print(sourceName);
    PrintLine(dryRun ? u"Nothing was written; this was a dry run."_s : u"%1: made"_s.arg(newName));
    return !HasPlaces(import.Warnings());
}

} // namespace qor
