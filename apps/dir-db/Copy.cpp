#include "Copy.h"

#include "Check.h"
#include "NewDatabase.h"
#include "Output.h"
#include "PauseOfSaves.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RuntimeError.h"
#include "Progress.h"
#include "Query.h"
#include "ReadAccess.h"
#include "RowWriter.h"

namespace qor {

namespace {

/// In the order in which the rows are stored, which is the order of a file. A server promises none; ctid is a row's
/// place there.
QString RowsText(Connection& source, const SchemaTable& table)
{
    QStringList columns;
    for (const SchemaColumn& column : table.columns) {
        const QString name = Quoted(column.name);
        columns << (column.type == ColumnType::Text ? StoredTexts(source, name) : name);
    }
    return u"SELECT %1 FROM %2"_s.arg(columns.join(u", "_s), Quoted(table.name)) +
           (source.IsShared() ? u" ORDER BY ctid"_s : QString());
}

/// Copies the rows of one table.
class TableCopy
{
public:
    TableCopy(const SchemaTable& table, Connection& target, Findings& findings)
        : mTable(table), mWriter(target, table.id), mTakesNumbersOnly(target.IsShared()), mFindings(findings)
    {
    }

    void Take(const Recordset& row)
    {
        QStringList values;
        QStringList lost;
        bool hasIdentity = true;
        for (int i = 0; i < static_cast<int>(mTable.columns.size()); ++i) {
            const SchemaColumn& column = mTable.columns[static_cast<std::size_t>(i)];
            values << Admitted(column, row.Field(i));
            if (!values.back().isNull())
                continue;
            hasIdentity = hasIdentity && column.keyPlace == 0;
            if (!row.Field(i).isNull())
                lost << QString::fromLatin1(column.name);
        }
        if (!lost.isEmpty() || !hasIdentity)
            mFindings[hasIdentity ? 0 : 1].AddPlace([&] { return NameOf(row) + u": "_s + lost.join(u", "_s); });
        if (!hasIdentity)
            return;
        mWriter.Write(values);
        ++mCount;
    }
    int Count() const { return mCount; }

private:
    /// Null for what the target cannot store. Texts come as bytes.
    QString Admitted(const SchemaColumn& column, const QVariant& value) const
    {
        if (value.isNull())
            return {};
        if (column.type == ColumnType::Integer && mTakesNumbersOnly) {
            const auto number = WholeNumber(value);
            return number ? QString::number(*number) : QString();
        }
        if (value.typeId() == QMetaType::QByteArray && !value.toByteArray().isValidUtf8())
            return {};
        const QString text = value.toString();
        if (mTakesNumbersOnly && text.contains(QChar(u'\0')))
            return {};
        return text.isNull() ? u""_s : text;
    }
    QString NameOf(const Recordset& row) const
    {
        QStringList key;
        for (int i = 0; i < static_cast<int>(mTable.columns.size()); ++i) {
            const SchemaColumn& column = mTable.columns[static_cast<std::size_t>(i)];
            if (column.keyPlace > 0)
                key << u"%1 %2"_s.arg(QString::fromLatin1(column.name), row.Field(i).toString());
        }
        return u"%1, %2"_s.arg(QString::fromLatin1(mTable.name), key.join(u", "_s));
    }

    const SchemaTable& mTable;
    RowWriter mWriter;
    bool mTakesNumbersOnly; ///< into number columns
    Findings& mFindings;
    int mCount = 0;
};

QString CopyTable(const SchemaTable& table, Connection& source, Connection& target, Findings& findings)
{
    TableCopy copy(table, target, findings);
    ForEachRow(source, RowsText(source, table), [&](const Recordset& row) { copy.Take(row); });
    const QString name = QString::fromLatin1(table.name);
    if (CountOf(target, Quoted(table.name)) != copy.Count()) {
        throw RuntimeError(ErrorNumber::Provider,
                           u"The table %1 of the copy does not have the rows that were written into it. Nothing was "
                           "copied."_s.arg(name));
    }
    return u"  %1: %2"_s.arg(name).arg(copy.Count());
}

} // namespace

bool CopyDatabase(const QString& fromName, const QString& toName)
{
    Connection source;
    const ReadAccess access(source, fromName);
    RequireSound(source, fromName);
    Findings findings{{u"values that the copy cannot hold, and that are missing in it"_s},
                      {u"rows left out, as the copy cannot hold a value of their identity"_s}};
    QStringList counts;
    MakeDatabase(toName, [&](DataBase& target) {
        const Progress progress("Copying the rows");
        const StillReading still(source, fromName);
        for (const SchemaTable& table : Schema())
            counts << CopyTable(table, source, target.Conn, findings);
        access.RequireUnchanged();
    });
    PrintLine(u"%1: made, with the rows of %2"_s.arg(toName, fromName));
    for (const QString& count : counts)
        PrintLine(count);
    PrintFindings(findings);
    return !HasPlaces(findings);
}

} // namespace qor
