#include "store/DataBase.h"

#include "store/KELDARPlusFilesAndFolders.h"

namespace qor {

namespace {

/// The catalog in the engine's syntax, translated once for all instances.
const std::vector<EngineStatement>& EngineStatements()
{
    static const std::vector<EngineStatement> statements = [] {
        std::vector<EngineStatement> translated;
        for (const StoredCommand& stored : CommandCatalog())
            translated.push_back(TranslateStoredSql(QString::fromLatin1(stored.sql)));
        return translated;
    }();
    return statements;
}

} // namespace

DataBase::DataBase() : DataBase(QString())
{
    DataEnvironment_Initialize();
}

void DataBase::DataEnvironment_Initialize()
{
    Conn.SetConnectionString(GetConnectionString());
}

DataBase::DataBase(const QString& connectionString)
{
    Conn.SetConnectionString(connectionString);
    for (const StoredCommand& stored : CommandCatalog()) {
        const EngineStatement& statement = EngineStatements()[static_cast<std::size_t>(stored.id)];
        mCommands.emplace_back(Conn, QString::fromLatin1(stored.name), statement.text,
                               static_cast<int>(statement.parameters.size()));
    }
}

/// The connection goes before the commands, which would each tell a server that they end, and wait for its answer.
DataBase::~DataBase()
{
    Conn.Close();
}

Recordset DataBase::Open(CommandId id, const QStringList& values)
{
    return Named(id).Open(values);
}

void DataBase::Execute(CommandId id, const QStringList& values)
{
    Named(id).Execute(values);
}

Command& DataBase::Named(CommandId id)
{
    return mCommands.at(static_cast<std::size_t>(id));
}

} // namespace qor
