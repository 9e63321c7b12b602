// The rows that a command returned: static, read-only, held on the client's side.
#pragma once

#include "platform/runtime/Text.h"

#include <memory>
#include <QStringList>
#include <QVariant>
#include <vector>

namespace qor {

/// All rows of one result, row after row.
struct RecordRows
{
    QStringList columns;
    std::vector<QVariant> values;
    qsizetype rowCount = 0;
};

/// A cursor over the rows, standing on the first one, or at the end if there is none. Its command cannot run
/// again before it is closed; the destructor closes it.
class Recordset
{
public:
    explicit Recordset(std::shared_ptr<const RecordRows> rows) : mRows(std::move(rows)) {}
    Recordset(Recordset&&) = default;
    Recordset& operator=(Recordset&&) = default;
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    void Close() { mRows.reset(); }

    qsizetype RecordCount() const { return Rows().rowCount; }
    bool EndOfFile() const { return mRow >= Rows().rowCount; }
    /// Steps to the next row; at the end of file it raises RuntimeError.
    void MoveNext();

    /// The column's position, found without regard to case. Raises RuntimeError when it is missing.
    int FieldIndex(const QString& column) const;
    /// A value of the current row; raises RuntimeError at the end of file.
    const QVariant& Field(int index) const;
    const QVariant& Field(const QString& column) const { return Field(FieldIndex(column)); }

private:
    const RecordRows& Rows() const;

    std::shared_ptr<const RecordRows> mRows;
    qsizetype mRow = 0;
};

} // namespace qor
