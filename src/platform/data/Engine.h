// The engine behind a connection; for the sources of this folder only.
#pragma once

#include "platform/data/Connection.h"
#include "platform/data/DatabaseFile.h"
#include "platform/runtime/RuntimeError.h"

#include <QPointer>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>

namespace qor {

struct Connection::Engine
{
    /// Looks at the file before it is opened: one that is put in its place in between is found by the first save.
    explicit Engine(const QString& databaseName);

    QString name;          ///< of the connection in Qt's table of connections
    QString fileName;      ///< as people know it
    QString path;          ///< absolute; it may end in a link
    QString canonicalPath; ///< where the engine's other files lie beside it
    std::optional<FileIdentity> identity;
    bool isWritable;             ///< at the time of opening
    QPointer<QSqlDriver> driver; ///< null once the toolkit has dropped the connection
    bool logIsOnDisk = false;    ///< the write-ahead log's entry in its folder has been synced

    QSqlDatabase Database() const { return QSqlDatabase::database(name, false); }
};

/// An engine's failure as a sentence that names the file, what is wrong and what to do.
RuntimeError ProviderError(const QSqlError& error, const QString& fileName);

/// The same for a file that the engine reads but is too old to write.
RuntimeError NewerFormatError(const QString& fileName);

/// The engine's code without what it says of the place.
int PrimaryCode(const QSqlError& error);
bool IsLockCode(int primaryCode);

/// Raises RuntimeError when the toolkit has no such driver.
void RequireDriver(const QString& driver);

/// A connection name of our own that no connection of the host has.
QString NewConnectionName();

/// The database name and options that open `fileName` without creating it.
QString EngineFileUri(const QString& fileName, Access access = Access::ReadWrite);

} // namespace qor
