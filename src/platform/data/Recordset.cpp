#include "platform/data/Recordset.h"

#include "platform/runtime/RuntimeError.h"

namespace qor {

const RecordRows& Recordset::Rows() const
{
    if (!mRows)
        throw RuntimeError(ErrorNumber::ObjectNotSet, u"The recordset is closed."_s);
    return *mRows;
}

void Recordset::MoveNext()
{
    if (EndOfFile())
        throw RuntimeError(ErrorNumber::Provider, u"There is no row after the last one."_s);
    ++mRow;
}

int Recordset::FieldIndex(const QString& column) const
{
    const QStringList& columns = Rows().columns;
    for (int i = 0; i < columns.size(); ++i) {
        if (columns[i].compare(column, Qt::CaseInsensitive) == 0)
            return i;
    }
    throw RuntimeError(
        ErrorNumber::Provider,
        u"The column %1 is missing from the configuration database. Run \"dir-db check\" on the file."_s.arg(column));
}

const QVariant& Recordset::Field(int index) const
{
    if (EndOfFile())
        throw RuntimeError(ErrorNumber::Provider, u"There is no current row to read."_s);
    return mRows->values[static_cast<std::size_t>(mRow * mRows->columns.size() + index)];
}

} // namespace qor
