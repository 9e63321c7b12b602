#include "store/DataBase.h"

#include "store/KELDARPlusFilesAndFolders.h"

namespace qor {

DataBase::DataBase()
{
    for (const StoredCommand& stored : CommandCatalog()) {
        const EngineStatement statement = TranslateStoredSql(QString::fromLatin1(stored.sql));
        mCommands.emplace_back(Conn, QString::fromLatin1(stored.name), statement.text,
                               static_cast<int>(statement.parameters.size()));
    }
    DataEnvironment_Initialize();
}

void DataBase::DataEnvironment_Initialize()
{
    Conn.SetConnectionString(GetConnectionString());
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
