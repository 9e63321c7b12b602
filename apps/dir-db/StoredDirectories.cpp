#include "StoredDirectories.h"

#include "platform/runtime/Numbers.h"
#include "Query.h"
#include "rules/EntryColumns.h"
#include "Schema.h"

#include <array>

namespace qor {

namespace {

const QStringList identity{u"ConfigID"_s, u"PartID"_s, u"NodeMasterID"_s, u"SequenceNo"_s};
constexpr int ownerColumns = 3; // the first ones of the identity: whose entry it is

/// Reads an entry from a row whose texts may come as bytes.
class EntryValues
{
public:
    EntryValues()
    {
        for (const EntryColumn& column : entryColumns)
            mRow->columns << QString::fromLatin1(column.name);
        mRow->values.resize(entryColumns.size());
        mRow->rowCount = 1;
        mReader.emplace(mCurrent);
    }

    StoredEntry Take(const Recordset& row)
    {
        StoredEntry entry;
        for (int i = 0; i < mRow->columns.size(); ++i) {
            QVariant& value = mRow->values[static_cast<std::size_t>(i)];
            value = row.Field(static_cast<int>(identity.size()) + i);
            if (value.typeId() != QMetaType::QByteArray)
                continue;
            const QByteArray bytes = value.toByteArray();
            if (!bytes.isValidUtf8())
                entry.foreignColumns << mRow->columns[i];
            value = QString::fromUtf8(bytes);
        }
        entry.position = row.Field(ownerColumns).toString();
        entry.shown = mReader->Read(mCurrent, &entry.replacedColumns);
        return entry;
    }

private:
    std::shared_ptr<RecordRows> mRow = std::make_shared<RecordRows>();
    Recordset mCurrent{mRow};
    std::optional<EntryReader> mReader;
};

/// Collects the rows of each directory.
class DirectoryReader
{
public:
    explicit DirectoryReader(const std::function<void(const StoredDirectory&)>& look) : mLook(look) {}

    void Take(const Recordset& row)
    {
        if (!IsOfSameDirectory(row)) {
            Finish();
            Start(row);
        }
        mDirectory.entries.push_back(mValues.Take(row));
    }
    void Finish()
    {
        if (!mDirectory.entries.empty())
            mLook(mDirectory);
        mDirectory.entries.clear();
    }

private:
    bool IsOfSameDirectory(const Recordset& row) const
    {
        for (int i = 0; i < ownerColumns; ++i) {
            if (row.Field(i) != mOwner.at(static_cast<std::size_t>(i)))
                return false;
        }
        return !mDirectory.entries.empty();
    }
    void Start(const Recordset& row)
    {
        mOwner = {row.Field(0), row.Field(1), row.Field(2)};
        mDirectory.name = u"configuration %1, partition %2, DIR %3"_s.arg(
            row.Field(0).toString(), row.Field(1).toString(), row.Field(2).toString());
        const auto config = WholeNumber16(row.Field(0));
        const auto number = WholeNumber16(row.Field(1));
        mDirectory.partition = config && number ? std::optional(Partition{*config, *number}) : std::nullopt;
    }

    const std::function<void(const StoredDirectory&)>& mLook;
    EntryValues mValues;
    std::array<QVariant, ownerColumns> mOwner;
    StoredDirectory mDirectory;
};

} // namespace

void ForEachDirectory(Connection& connection, const std::function<void(const StoredDirectory& directory)>& look)
{
    QStringList columns = identity;
    for (const EntryColumn& column : entryColumns)
        columns << StoredTexts(connection, Quoted(column.name));
    DirectoryReader reader(look);
    ForEachRow(connection,
               u"SELECT %1 FROM Detail_DIR ORDER BY %2"_s.arg(columns.join(u", "_s), identity.join(u", "_s)),
               [&](const Recordset& row) { reader.Take(row); });
    reader.Finish();
}

} // namespace qor
