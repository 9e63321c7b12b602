#include "platform/data/Connection.h"

#include "platform/data/DatabaseFile.h"
#include "platform/data/Engine.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSqlQuery>
#include <QUrl>
#include <QUuid>
#include <unistd.h>

namespace qor {

namespace {

/// Which engine serves a provider.
struct Provider
{
    QLatin1String name;
    const char* driver;
};

constexpr QLatin1String jetProvider("Microsoft.Jet.OLEDB.4.0");
constexpr QLatin1String providerKey("Provider=");
constexpr QLatin1String sourceKey(";Data Source=");

constexpr std::array providers{
    Provider{jetProvider, "QSQLITE"},
};

QString DriverFor(const QString& providerName)
{
    for (const Provider& provider : providers) {
        if (providerName.compare(provider.name, Qt::CaseInsensitive) == 0)
            return QString::fromLatin1(provider.driver);
    }
    throw RuntimeError(
        ErrorNumber::Provider,
        u"The provider \"%1\" is not known. The connection string must name %2."_s.arg(providerName, jetProvider));
}

struct ConnectionParts
{
    QString provider;
    QString fileName;
};

ConnectionParts Split(const QString& connectionString)
{
    const qsizetype source = connectionString.indexOf(sourceKey);
    if (!connectionString.startsWith(providerKey) || source < 0) {
        throw RuntimeError(ErrorNumber::Provider,
                           u"The connection string \"%1\" must have the form \"Provider=NAME;Data Source=FILE\"."_s.arg(
                               connectionString));
    }
    return {connectionString.sliced(providerKey.size(), source - providerKey.size()),
            connectionString.sliced(source + sourceKey.size())};
}

/// Opens the database; only a first statement tells whether the file is one.
QSqlError OpenError(QSqlDatabase& database)
{
    if (!database.open())
        return database.lastError();
    QSqlQuery query(database);
    return query.exec(u"PRAGMA schema_version"_s) && query.next() ? QSqlError() : query.lastError();
}

constexpr int impatientTimeout = 1000; ///< ms, of a wait for a lock that the one before was in vain for

/// The engine's codes of a file that it could not get at. What it found stays with the engine, although the next moment
/// may give the file back, so another one has to look.
constexpr int readOnlyCode = 8;
constexpr std::array outOfReachCodes{readOnlyCode, 10, 14};

} // namespace

void RequireDriver(const QString& driver)
{
    if (!QSqlDatabase::isDriverAvailable(driver)) {
        throw RuntimeError(ErrorNumber::Provider,
                           u"The database driver %1 is not installed. Install the package libqt6sql6-sqlite and start "
                           "the program again."_s.arg(driver));
    }
}

QString ConnectionStringFor(const QString& fileName)
{
    return providerKey + jetProvider + sourceKey + fileName;
}

QString NewConnectionName()
{
    return u"QOR_DIR_NODE-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QString EngineFileUri(const QString& fileName, Access access)
{
    static const QMap<Access, QString> modes{
        {Access::ReadWrite, u"rw"_s}, {Access::ReadOnly, u"ro"_s}, {Access::Unchanging, u"ro&immutable=1"_s}};
    const QByteArray path = QUrl::toPercentEncoding(QFileInfo(fileName).absoluteFilePath(), "/");
    return u"file://"_s + QString::fromLatin1(path) + u"?mode="_s + modes[access];
}

Connection::Engine::Engine(const QString& databaseName)
    : name(NewConnectionName()),
      fileName(databaseName),
      path(QFileInfo(databaseName).absoluteFilePath()),
      canonicalPath(QFileInfo(databaseName).canonicalFilePath()),
      identity(IdentityOf(path)),
      isWritable(faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) == 0)
{
}

Connection::Connection() = default;

Connection::~Connection()
{
    Close();
}

void Connection::Close()
{
    if (IsOpen())
        QSqlDatabase::removeDatabase(mEngine->name);
    mEngine.reset();
}

bool Connection::IsOpen() const
{
    return mEngine && !mEngine->driver.isNull();
}

void Connection::Open()
{
    if (IsOpen())
        return;
    const ConnectionParts parts = Split(mConnectionString);
    const QString driver = DriverFor(parts.provider);
    RequireDriver(driver);
    RequireDatabaseFile(parts.fileName);
    auto engine = std::make_unique<Engine>(parts.fileName);
    if (engine->isWritable && mAccess == Access::ReadWrite)
        MendPermissions(engine->canonicalPath);
    QSqlDatabase database = QSqlDatabase::addDatabase(driver, engine->name);
    database.setDatabaseName(EngineFileUri(parts.fileName, mAccess));
    database.setConnectOptions(u"QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1"_s.arg(LockTimeout()));
    engine->driver = database.driver();
    const QSqlError error = OpenError(database);
    database = QSqlDatabase();
    mEngine = std::move(engine);
    if (error.isValid()) {
        const RuntimeError failure = Failure(error);
        Close();
        throw failure;
    }
}

void Connection::OpenForWriting()
{
    if (IsOpen() && !mEngine->isWritable)
        Close();
    Open();
}

void Connection::SetLockTimeout(int milliseconds)
{
    mLockTimeout = milliseconds;
    ApplyLockTimeout();
}

int Connection::LockTimeout() const
{
    return mWaitedInVain ? std::min(mLockTimeout, impatientTimeout) : mLockTimeout;
}

void Connection::ApplyLockTimeout() const
{
    if (IsOpen())
        QSqlQuery(mEngine->Database()).exec(u"PRAGMA busy_timeout = %1"_s.arg(LockTimeout()));
}

RuntimeError Connection::Failure(const QSqlError& error)
{
    RuntimeError failure = ProviderError(error, mEngine->fileName);
    const int code = PrimaryCode(error);
    // Written it may be, but the engine only reads it. To look at the file drops the locks that this process has on it,
    // so it is not done where permissions explain the failure.
    if (error.nativeErrorCode().toInt() == readOnlyCode && mEngine->isWritable && HasNewerFormat(mEngine->fileName))
        failure = NewerFormatError(mEngine->fileName);
    if (IsLockCode(code)) {
        mWaitedInVain = true;
        ApplyLockTimeout();
    }
    if (std::ranges::find(outOfReachCodes, code) != outOfReachCodes.end())
        Close();
    return failure;
}

void Connection::Succeeded()
{
    if (!mWaitedInVain)
        return;
    mWaitedInVain = false;
    ApplyLockTimeout();
}

void Connection::RequireSameFile(const QString& outcome)
{
    if (!IsOpen())
        return;
    const auto found = IdentityOf(mEngine->path);
    if (found == mEngine->identity)
        return;
    const QString sentence = found ? u"The database %1 was replaced by another file while it was open. %2 Try again to "
                                     "use the file that is there now."_s
                                   : u"The database %1 was moved or removed while it was open. %2 Put it back and try "
                                     "again."_s;
    const RuntimeError error(ErrorNumber::Provider, sentence.arg(mEngine->fileName, outcome));
    // Takes the log into the file that it belongs to, wherever that is, and leaves it empty: whoever opens the new file
    // would read the log as its own.
    QSqlQuery log(mEngine->Database());
    log.exec(u"PRAGMA busy_timeout = %1"_s.arg(std::min(LockTimeout(), impatientTimeout)));
    log.exec(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
    log.finish();
    Close();
    throw error;
}

} // namespace qor
