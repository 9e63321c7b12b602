#include "NewDatabase.h"

#include "Check.h"
#include "NewFile.h"
#include "platform/data/Command.h"
#include "platform/data/DatabaseFile.h"
#include "platform/data/LinkFile.h"
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

/// Makes the tables that are missing; a file has none yet.
void MakeTables(Connection& connection)
{
    for (const SchemaTable& table : Schema()) {
        const bool isThere = connection.IsShared() && !Query(connection, u"SELECT to_regclass(?1)"_s,
                                                             {QString::fromLatin1(table.name).toLower()})
                                                           .Field(0)
                                                           .isNull();
        if (!isThere)
            RunStatement(connection, CreateTableText(table));
    }
}

void Build(const QString& fileName, const FillDatabase& fill)
{
    CreateDatabaseFile(fileName);
    DataBase dataBase(ConnectionStringFor(fileName));
    Connection& connection = dataBase.Conn;
    RunStatement(connection, u"BEGIN"_s);
    MakeTables(connection);
    fill(dataBase);
    RunStatement(connection, u"COMMIT"_s);
    // Closing does the same, but does not tell when the disk is full.
    if (Query(connection, u"PRAGMA wal_checkpoint(TRUNCATE)"_s).Field(0).toInt() != 0)
        ThrowFileNotMade(fileName, u"its log cannot be taken into it"_s);
}

/// Also locks them, so that nobody else writes into them until the transaction ends.
void RequireEmptyTables(Connection& connection, const QString& fileName)
{
    for (const SchemaTable& table : Schema()) {
        RunStatement(connection, u"LOCK TABLE %1 IN EXCLUSIVE MODE"_s.arg(Quoted(table.name)));
        if (CountOf(connection, Quoted(table.name)) > 0) {
            throw RuntimeError(
                ErrorNumber::Provider,
                u"The shared database %1 holds data already: the table %2 has rows. Use another "
                "database, or drop its tables if nobody needs them."_s.arg(fileName, QString::fromLatin1(table.name)));
        }
    }
}

void FillServer(const QString& fileName, const FillDatabase& fill)
{
    DataBase dataBase(ConnectionStringFor(fileName));
    Connection& connection = dataBase.Conn;
    connection.Open();
    connection.StayWithEngine(true); // another session would not be in the transaction
    RunStatement(connection, u"BEGIN"_s);
    MakeTables(connection);
    RequireEmptyTables(connection, fileName);
    RequireSound(connection, fileName);
    fill(dataBase);
    RunStatement(connection, u"COMMIT"_s);
}

} // namespace

void MakeDatabase(const QString& fileName, const FillDatabase& fill)
{
    if (ServiceIn(fileName)) {
        FillServer(fileName, fill);
        return;
    }
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
