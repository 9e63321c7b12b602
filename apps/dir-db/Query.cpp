#include "Query.h"

#include "platform/data/Command.h"
#include "platform/data/Connection.h"

namespace qor {

Recordset Query(Connection& connection, const QString& text, const QStringList& values)
{
    return Command(connection, text, text, static_cast<int>(values.size())).Open(values);
}

void ForEachRow(Connection& connection, const QString& text, const std::function<void(const Recordset& row)>& take)
{
    Command(connection, text, text, 0).ForEachRow({}, take);
}

QString StoredTexts(Connection& connection, const QString& column)
{
    const bool mayHoldAnyBytes =
        !connection.IsShared() && Query(connection, u"PRAGMA encoding"_s).Field(0).toString() == u"UTF-8";
    return mayHoldAnyBytes ? u"iif(typeof(%1) = 'text', CAST(%1 AS BLOB), %1)"_s.arg(column) : column;
}

int CountOf(Connection& connection, const QString& rows, const QStringList& values)
{
    return Query(connection, u"SELECT COUNT(*) FROM "_s + rows, values).Field(0).toInt();
}

} // namespace qor
