// The data environment: one connection to the configuration database and the twelve named commands on it.
#pragma once

#include "platform/data/Command.h"
#include "platform/data/Connection.h"
#include "store/CommandCatalog.h"

#include <vector>

namespace qor {

class DataBase
{
public:
    /// Uses the connection string of GetConnectionString. The connection opens with the first command and closes with
    /// this object.
    DataBase();
    /// The same with another connection string.
    explicit DataBase(const QString& connectionString);
    ~DataBase();
    Q_DISABLE_COPY_MOVE(DataBase)

    Connection Conn;

    /// Runs a command that returns rows. The values go to the parameters in the order of the catalog. Raises
    /// RuntimeError as Command does.
    Recordset Open(CommandId id, const QStringList& values);
    /// Runs a command without rows.
    void Execute(CommandId id, const QStringList& values);

private:
    void DataEnvironment_Initialize();
    Command& Named(CommandId id);

    std::vector<Command> mCommands; ///< in the order of the catalog
};

} // namespace qor
