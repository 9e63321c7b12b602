#include "platform/data/FileEngine.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QUrl>
#include <unistd.h>

namespace qor {

namespace {

/// The engine's codes for a file that it cannot get at. It keeps to that, although the file may be back a moment later,
/// so a new engine has to look.
constexpr int readOnlyCode = 8;
constexpr std::array outOfReachCodes{readOnlyCode, 10, 14};

constexpr int logTimeout = 1000; ///< ms, for the log of a file that was replaced

class FileStatement : public Statement
{
public:
    FileStatement(const QSqlDatabase& database, QString text) : Statement(database), mText(std::move(text))
    {
        query.setForwardOnly(true);
    }
    bool Run(const QStringList& values) override
    {
        mIsPrepared = mIsPrepared || query.prepare(mText);
        if (!mIsPrepared)
            return false;
        for (int i = 0; i < values.size(); ++i)
            query.bindValue(i, values[i]);
        return query.exec();
    }
    QVariant Value(int column) const override { return query.value(column); }

private:
    QString mText;
    bool mIsPrepared = false;
};

} // namespace

QString EngineFileUri(const QString& fileName, Access access)
{
    static const QMap<Access, QString> modes{
        {Access::ReadWrite, u"rw"_s}, {Access::ReadOnly, u"ro"_s}, {Access::Unchanging, u"ro&immutable=1"_s}};
    const QByteArray path = QUrl::toPercentEncoding(QFileInfo(fileName).absoluteFilePath(), "/");
    return u"file://"_s + QString::fromLatin1(path) + u"?mode="_s + modes[access];
}

FileEngine::FileEngine(const QString& fileName)
    : DatabaseEngine(fileName),
      mPath(QFileInfo(fileName).absoluteFilePath()),
      mCanonicalPath(QFileInfo(fileName).canonicalFilePath()),
      mIdentity(IdentityOf(mPath)),
      mIsWritable(faccessat(AT_FDCWD, QFile::encodeName(mPath).constData(), W_OK, AT_EACCESS) == 0)
{
}

/// Opening succeeds with any file; the first statement tells whether it is a database.
QSqlError FileEngine::Open(const OpenOptions& options)
{
    if (mIsWritable && options.access == Access::ReadWrite)
        MendPermissions(mCanonicalPath);
    QSqlDatabase database = AddDatabase(fileDriver, fileDriverPackage);
    database.setDatabaseName(EngineFileUri(FileName(), options.access));
    database.setConnectOptions(u"QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1"_s.arg(options.lockTimeout));
    if (!database.open())
        return database.lastError();
    QSqlQuery query(database);
    return query.exec(u"PRAGMA schema_version"_s) && query.next() ? QSqlError() : query.lastError();
}

void FileEngine::ApplyLockTimeout(int milliseconds)
{
    QSqlQuery(Database()).exec(u"PRAGMA busy_timeout = %1"_s.arg(milliseconds));
}

EngineFailure FileEngine::Judge(const QSqlError& error) const
{
    const int code = PrimaryCode(error);
    // The file may be written, yet the engine only reads it. Looking at the file drops the locks that this process has
    // on it, so we do not when permissions explain the failure.
    const bool isTooNew = error.nativeErrorCode().toInt() == readOnlyCode && mIsWritable && HasNewerFormat(FileName());
    return {.error = isTooNew ? NewerFormatError(FileName()) : FileError(error, FileName()),
            .waitedInVain = IsLockCode(code),
            .endsEngine = std::ranges::find(outOfReachCodes, code) != outOfReachCodes.end()};
}

std::unique_ptr<Statement> FileEngine::Prepare(const QString& text, int /*parameterCount*/)
{
    return std::make_unique<FileStatement>(Database(), text);
}

std::optional<RuntimeError> FileEngine::Replacement(const QString& outcome, int lockTimeout)
{
    const auto found = IdentityOf(mPath);
    if (found == mIdentity)
        return std::nullopt;
    const QString sentence = found ? u"The database %1 was replaced by another file while it was open. %2 Try again to "
                                     "use the file that is there now."_s
                                   : u"The database %1 was moved or removed while it was open. %2 Put it back and try "
                                     "again."_s;
    // Merges the log into its own file, wherever that is now, and empties it: whoever opens the new file would take the
    // log for its own.
    ApplyLockTimeout(std::min(lockTimeout, logTimeout));
    QSqlQuery(Database()).exec(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
    return RuntimeError(ErrorNumber::Provider, sentence.arg(FileName(), outcome));
}

std::unique_ptr<EngineLock> FileEngine::Lock(Connection& /*connection*/, qint64 section, int timeout)
{
    return LockBeside(mCanonicalPath, FileName(), section, timeout);
}

} // namespace qor
