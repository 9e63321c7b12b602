// The embedded engine, which keeps a database in a file.
#pragma once

#include "platform/data/DatabaseFile.h"
#include "platform/data/Engine.h"

namespace qor {

class FileEngine : public DatabaseEngine
{
public:
    /// Remembers which file it is before it is opened, so that the first save notices one that was put in its place in
    /// between.
    explicit FileEngine(const QString& fileName);

    bool IsShared() const override { return false; }
    QSqlError Open(const OpenOptions& options) override;
    void ApplyLockTimeout(int milliseconds) override;
    bool IsReadOnly() const override { return !mIsWritable; }
    EngineFailure Judge(const QSqlError& error) const override;
    std::unique_ptr<Statement> Prepare(const QString& text, int parameterCount) override;
    std::optional<RuntimeError> Replacement(const QString& outcome, int lockTimeout) override;
    std::unique_ptr<EngineLock> Lock(Connection& connection, qint64 section, int timeout) override;
    std::unique_ptr<EngineSync> DeferSync(Connection& connection) override;

private:
    class FileSync;

    QString mPath;          ///< absolute; it may end in a link
    QString mCanonicalPath; ///< where the engine's other files lie beside it
    std::optional<FileIdentity> mIdentity;
    bool mIsWritable;          ///< at the time of opening
    bool mLogIsOnDisk = false; ///< the write-ahead log's entry in its folder has been synced
};

/// The toolkit's driver for these files, and the package that has it.
inline const QString fileDriver = u"QSQLITE"_s;
inline const QString fileDriverPackage = u"libqt6sql6-sqlite"_s;

/// An engine's failure as a sentence that names the file, what is wrong and what to do.
RuntimeError FileError(const QSqlError& error, const QString& fileName);

/// The same for a file that the engine can read but is too old to write.
RuntimeError NewerFormatError(const QString& fileName);

/// The engine's primary result code, of which the extended ones are variants.
int PrimaryCode(const QSqlError& error);
bool IsLockCode(int primaryCode);

/// The database name and options that open `fileName` without creating it.
QString EngineFileUri(const QString& fileName, Access access = Access::ReadWrite);

/// The lock of a SavingLock: a byte of an empty file beside the database.
std::unique_ptr<EngineLock> LockBeside(const QString& canonicalPath, const QString& fileName, qint64 section,
                                       int timeout);

} // namespace qor
