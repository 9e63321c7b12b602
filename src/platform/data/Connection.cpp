#include "platform/data/Connection.h"

#include "platform/data/FileEngine.h"
#include "platform/data/LinkFile.h"
#include "platform/data/ServerEngine.h"

#include <algorithm>
#include <QUuid>

namespace qor {

namespace {

constexpr QLatin1String jetProvider("Microsoft.Jet.OLEDB.4.0");
constexpr QLatin1String providerKey("Provider=");
constexpr QLatin1String sourceKey(";Data Source=");

/// The file that a connection string names.
QString FileIn(const QString& connectionString)
{
    const qsizetype source = connectionString.indexOf(sourceKey);
    if (!connectionString.startsWith(providerKey) || source < 0) {
        throw RuntimeError(ErrorNumber::Provider,
                           u"The connection string \"%1\" must have the form \"Provider=NAME;Data Source=FILE\"."_s.arg(
                               connectionString));
    }
    const QString provider = connectionString.sliced(providerKey.size(), source - providerKey.size());
    if (provider.compare(jetProvider, Qt::CaseInsensitive) != 0) {
        throw RuntimeError(
            ErrorNumber::Provider,
            u"The provider \"%1\" is not known. The connection string must name %2."_s.arg(provider, jetProvider));
    }
    return connectionString.sliced(source + sourceKey.size());
}

/// The engine that holds the data of this file.
std::unique_ptr<DatabaseEngine> EngineFor(const QString& fileName)
{
    RequireDatabaseFile(fileName);
    if (const auto service = ServiceIn(fileName))
        return std::make_unique<ServerEngine>(fileName, *service);
    return std::make_unique<FileEngine>(fileName);
}

[[noreturn]] void ThrowNoDriver(const QString& driver, const QString& package)
{
    throw RuntimeError(
        ErrorNumber::Provider,
        u"The database driver %1 is not installed. Install the package %2 and start the program again."_s.arg(driver,
                                                                                                              package));
}

constexpr int impatientTimeout = 1000; ///< ms, of a wait after one that was in vain

} // namespace

QString ConnectionStringFor(const QString& fileName)
{
    return providerKey + jetProvider + sourceKey + fileName;
}

QString NewConnectionName()
{
    return u"QOR_DIR_NODE-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces);
}

void RequireDriver(const QString& driver, const QString& package)
{
    if (!QSqlDatabase::isDriverAvailable(driver))
        ThrowNoDriver(driver, package);
}

DatabaseEngine::DatabaseEngine(QString fileName) : mFileName(std::move(fileName)), mName(NewConnectionName()) {}

DatabaseEngine::~DatabaseEngine()
{
    if (IsOpen())
        QSqlDatabase::removeDatabase(mName);
}

QSqlDatabase DatabaseEngine::AddDatabase(const QString& driver, const QString& package)
{
    RequireDriver(driver, package);
    QSqlDatabase database = QSqlDatabase::addDatabase(driver, mName);
    mDriver = database.driver();
    if (!database.isValid()) // what the driver needs is missing
        ThrowNoDriver(driver, package);
    return database;
}

Connection::Connection() = default;

Connection::~Connection()
{
    Close();
}

void Connection::Close()
{
    mEngine.reset();
}

bool Connection::IsOpen() const
{
    return mEngine && mEngine->IsOpen();
}

bool Connection::IsShared() const
{
    if (mEngine)
        return mEngine->IsShared();
    try {
        return ServiceIn(FileIn(mConnectionString)).has_value();
    } catch (const RuntimeError&) {
        return true; // meant as a link, but none
    }
}

void Connection::Open()
{
    if (IsOpen())
        return;
    if (mStaysWithEngine > 0)
        throw RuntimeError(ErrorNumber::ConnectionLost,
                           u"The connection to the shared database %1 was lost while it was saved. Nothing more was "
                           "written."_s.arg(FileIn(mConnectionString)));
    mEngine = EngineFor(FileIn(mConnectionString));
    try {
        const QSqlError error = mEngine->Open({mAccess, LockTimeout(), mWaitedInVain});
        if (error.isValid())
            throw Failure(error);
    } catch (...) {
        mMayRepeat = false;
        Close();
        throw;
    }
}

void Connection::OpenForWriting()
{
    if (IsOpen() && mEngine->IsReadOnly())
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
        mEngine->ApplyLockTimeout(LockTimeout());
}

RuntimeError Connection::Failure(const QSqlError& error)
{
    const EngineFailure failure = mEngine->Judge(error);
    mMayRepeat = failure.mayRepeat && (!failure.endsEngine || mStaysWithEngine == 0);
    if (failure.waitedInVain) {
        mWaitedInVain = true;
        ApplyLockTimeout();
    }
    if (failure.endsEngine)
        Close();
    return failure.error;
}

void Connection::Succeeded()
{
    if (!mWaitedInVain)
        return;
    mWaitedInVain = false;
    ApplyLockTimeout();
}

void Connection::RequireStorable(const QString& text)
{
    Open();
    mEngine->RequireStorable(text);
}

void Connection::StayWithEngine(bool stays)
{
    mStaysWithEngine += stays ? 1 : -1;
}

void Connection::RequireSameFile(const QString& outcome)
{
    if (!IsOpen())
        return;
    const auto error = mEngine->Replacement(outcome, LockTimeout());
    if (!error)
        return;
    Close();
    throw RuntimeError(*error);
}

} // namespace qor
