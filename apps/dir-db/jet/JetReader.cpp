#include "JetReader.h"

#include "JetValues.h"
#include "platform/runtime/RuntimeError.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <mdbtools.h>
#include <memory>
#include <span>
#include <vector>

namespace qor {

namespace {

template <auto function>
struct Releaser
{
    template <typename T>
    void operator()(T* object) const
    {
        function(object);
    }
};
using Handle = std::unique_ptr<MdbHandle, Releaser<mdb_close>>;
using TableDefinition = std::unique_ptr<MdbTableDef, Releaser<mdb_free_tabledef>>;
using Memory = std::unique_ptr<char, Releaser<g_free>>; // which frees what malloc gave

template <typename T>
std::span<T*> ItemsOf(const GPtrArray* array)
{
    return {reinterpret_cast<T**>(array->pdata), array->len};
}

bool HasName(const char* name, const QString& wanted)
{
    return QString::fromUtf8(name).compare(wanted, Qt::CaseInsensitive) == 0;
}

/// The bytes of a long text, which lie in the row, in one row elsewhere or in a chain of them. Its field holds
/// the length, with flags above it, and where the text begins.
QByteArray LongTextBytes(MdbHandle& file, MdbColumn& column, const MdbField& field)
{
    constexpr quint32 lengthBits = 0x3fffffff;
    if (field.siz < MDB_MEMO_OVERHEAD)
        ThrowInvalidFile(u"it is damaged; a long text has no beginning"_s);
    const auto length = static_cast<quint32>(mdb_get_int32(file.pg_buf, field.start)) & lengthBits;
    std::array<char, MDB_PGSIZE> part{};
    std::memcpy(part.data(), file.pg_buf + field.start, MDB_MEMO_OVERHEAD);
    // Bound here alone, because the library turns bound columns into texts at each step to another row.
    column.bind_ptr = part.data();
    std::size_t size = 0;
    const Memory bytes(static_cast<char*>(mdb_ole_read_full(&file, &column, &size)));
    column.bind_ptr = nullptr;
    if (!bytes || size < length)
        ThrowInvalidFile(u"it is damaged; a long text is cut off"_s);
    return {bytes.get(), static_cast<qsizetype>(length)};
}

QString ValueText(MdbHandle& file, MdbColumn& column, const MdbField& field)
{
    if (column.col_type == MDB_BOOL) // its value is kept where others have the mark of Null
        return field.is_null != 0 ? u"0"_s : u"1"_s;
    if (field.is_null != 0)
        return {};
    const JetType* const type = FindJetType(column.col_type);
    if (field.start < 0 || field.siz < 0 || field.start + field.siz > file.fmt->pg_size ||
        (type->width != 0 && field.siz != type->width))
        ThrowInvalidFile(u"it is damaged; a value of the column %1 does not fit"_s.arg(QString::fromUtf8(column.name)));
    if (column.col_type == MDB_MEMO)
        return type->text(LongTextBytes(file, column, field));
    return type->text({file.pg_buf + field.start, field.siz});
}

class TableReader
{
public:
    TableReader(MdbCatalogEntry& entry, const JetWish& wish);

    JetTable Read();

private:
    void ChooseColumns(const JetWish& wish);
    std::vector<MdbField> CurrentFields();
    QStringList CurrentRow();

    MdbHandle& mFile;
    TableDefinition mDefinition;
    std::vector<std::size_t> mChosen; ///< positions in the definition, in the order of the wish
    JetTable mTable;
};

TableReader::TableReader(MdbCatalogEntry& entry, const JetWish& wish)
    : mFile(*entry.mdb), mDefinition(mdb_read_table(&entry))
{
    mTable.name = wish.table;
    if (!mDefinition || mdb_read_columns(mDefinition.get()) == nullptr)
        ThrowInvalidFile(u"it is damaged; the table %1 has no definition"_s.arg(wish.table));
    ChooseColumns(wish);
}

void TableReader::ChooseColumns(const JetWish& wish)
{
    const auto columns = ItemsOf<MdbColumn>(mDefinition->columns);
    for (const QString& name : wish.columns) {
        const auto place =
            std::ranges::find_if(columns, [&](const MdbColumn* column) { return HasName(column->name, name); });
        if (place == columns.end())
            continue;
        const JetType* const type = FindJetType((*place)->col_type);
        if (type == nullptr)
            ThrowInvalidFile(
                u"the column %1 of its table %2 has a type that cannot be taken over (type %3)"_s.arg(name, wish.table)
                    .arg((*place)->col_type));
        mChosen.push_back(static_cast<std::size_t>(place - columns.begin()));
        mTable.columns << JetColumn{name, type->isNumber};
    }
    for (const MdbColumn* column : columns) {
        const QString name = QString::fromUtf8(column->name);
        if (!wish.columns.contains(name, Qt::CaseInsensitive))
            mTable.otherColumns << name;
    }
}

JetTable TableReader::Read()
{
    mTable.ownRowCount = mDefinition->num_rows;
    // The library does not look for rows when the count is zero, and the count can be wrong.
    mDefinition->num_rows = std::max(mDefinition->num_rows, 1U);
    mdb_rewind_table(mDefinition.get());
    while (mdb_fetch_row(mDefinition.get()) != 0)
        mTable.rows << CurrentRow();
    if (mTable.rows.size() < mTable.ownRowCount)
        ThrowInvalidFile(u"it is damaged; its table %1 should have %2 rows, but %3 can be read"_s.arg(mTable.name)
                             .arg(mTable.ownRowCount)
                             .arg(mTable.rows.size()));
    return std::move(mTable);
}

/// The library's own values do not tell Null from the empty text; the fields of the row do.
std::vector<MdbField> TableReader::CurrentFields()
{
    constexpr int positionBits = 0x1fff; // flags lie above
    int start = 0;
    std::size_t size = 0;
    std::vector<MdbField> fields(mDefinition->num_cols);
    if (mdb_find_row(&mFile, static_cast<int>(mDefinition->cur_row) - 1, &start, &size) != 0 ||
        mdb_crack_row(mDefinition.get(), start & positionBits, size, fields.data()) < 0)
        ThrowInvalidFile(u"it is damaged; a row of its table %1 cannot be read"_s.arg(mTable.name));
    return fields;
}

QStringList TableReader::CurrentRow()
{
    const std::vector<MdbField> fields = CurrentFields();
    const auto columns = ItemsOf<MdbColumn>(mDefinition->columns);
    QStringList row;
    for (const std::size_t position : mChosen)
        row << ValueText(mFile, *columns[position], fields.at(position));
    return row;
}

JetTable ReadTable(std::span<MdbCatalogEntry*> entries, const JetWish& wish)
{
    const auto place = std::ranges::find_if(entries, [&](const MdbCatalogEntry* entry) {
        return entry->object_type == MDB_TABLE && HasName(entry->object_name, wish.table);
    });
    if (place == entries.end())
        ThrowInvalidFile(
            u"it has no table %1, so it is not a configuration database or it is damaged"_s.arg(wish.table));
    return TableReader(**place, wish).Read();
}

QStringList OtherTables(std::span<MdbCatalogEntry*> entries, const QList<JetWish>& wishes)
{
    QStringList names;
    for (MdbCatalogEntry* entry : entries) {
        const bool wanted =
            std::ranges::any_of(wishes, [&](const JetWish& wish) { return HasName(entry->object_name, wish.table); });
        if (mdb_is_user_table(entry) != 0 && !wanted)
            names << QString::fromUtf8(entry->object_name);
    }
    return names;
}

} // namespace

JetDatabase ReadJetTables(int descriptor, const QList<JetWish>& wishes)
{
    // Both change what the library reads or prints.
    unsetenv("MDBICONV");
    unsetenv("MDBOPTS");
    const Handle file(mdb_open(QByteArray("/proc/self/fd/") + QByteArray::number(descriptor), MDB_NOFLAGS));
    if (!file || mdb_read_catalog(file.get(), MDB_TABLE) == nullptr)
        ThrowInvalidFile(u"it is damaged; its list of tables cannot be read"_s);
    const auto entries = ItemsOf<MdbCatalogEntry>(file->catalog);
    JetDatabase database;
    for (const JetWish& wish : wishes)
        database.tables << ReadTable(entries, wish);
    database.otherTables = OtherTables(entries, wishes);
    return database;
}

} // namespace qor
