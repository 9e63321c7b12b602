#include "NewDatabase.h"

#include "NewFile.h"
#include "platform/data/Command.h"
#include "platform/data/DatabaseFile.h"
#include "platform/runtime/RuntimeError.h"
#include "Query.h"
#include "Schema.h"

#include <QDir>

namespace qor {

namespace {

void RunStatement(Connection& connection, const QString& text)
{
    Command(connection, text, text, 0).Execute({});
}

void Build(const QString& fileName, const FillDatabase& fill)
{
    CreateDatabaseFile(fileName);
    DataBase dataBase(ConnectionStringFor(fileName));
    Connection& connection = dataBase.Conn;
    RunStatement(connection, u"BEGIN"_s);
    for (const SchemaTable& table : Schema())
        RunStatement(connection, CreateTableText(table));
    fill(dataBase);
    RunStatement(connection, u"COMMIT"_s);
    // Closing would do this too, but keep a full disk to itself.
    if (Query(connection, u"PRAGMA wal_checkpoint(TRUNCATE)"_s).Field(0).toInt() != 0)
        ThrowFileNotMade(fileName, u"its log cannot be taken into it"_s);
}

} // namespace

void MakeDatabase(const QString& fileName, const FillDatabase& fill)
{
    RequireFreeName(fileName);
    NewFile file(fileName);
    try {
        Build(file.BuiltName(), fill);
    } catch (const RuntimeError& error) {
        // People know the file by the name that they gave.
        throw RuntimeError(error.Number(), QString(error.Description()).replace(file.BuiltName(), fileName));
    }
    file.Appear();
}

void TryDatabase(const FillDatabase& fill)
{
    const NewFile file(QDir::temp().filePath(u"trial"_s));
    Build(file.BuiltName(), fill);
}

} // namespace qor
