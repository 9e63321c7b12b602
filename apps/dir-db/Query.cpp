#include "Query.h"

#include "platform/data/Command.h"

namespace qor {

Recordset Query(Connection& connection, const QString& text, const QStringList& values)
{
    return Command(connection, text, text, static_cast<int>(values.size())).Open(values);
}

int CountOf(Connection& connection, const QString& rows, const QStringList& values)
{
    return Query(connection, u"SELECT COUNT(*) FROM "_s + rows, values).Field(0).toInt();
}

} // namespace qor
