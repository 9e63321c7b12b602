// Inserts rows into one table of a configuration database.
#pragma once

#include "platform/data/Command.h"
#include "Schema.h"

namespace qor {

class RowWriter
{
public:
    RowWriter(Connection& connection, TableId table);

    /// A value for each column, in the order of the schema; a null text is written as Null.
    void Write(const QStringList& values);

private:
    Command mInsert;
};

} // namespace qor
