#include "platform/data/Connection.h"

#include "platform/data/DatabaseFile.h"
#include "platform/data/Engine.h"

#include <array>
#include <optional>
#include <QFileInfo>
#include <QMap>
#include <QSqlQuery>
#include <QUrl>
#include <QUuid>

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
std::optional<RuntimeError> OpenError(QSqlDatabase& database, const QString& fileName)
{
    if (!database.open())
        return ProviderError(database.lastError(), fileName);
    QSqlQuery query(database);
    if (!query.exec(u"PRAGMA schema_version"_s) || !query.next())
        return ProviderError(query.lastError(), fileName);
    return std::nullopt;
}

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

Connection::Connection() = default;

Connection::~Connection()
{
    if (IsOpen())
        QSqlDatabase::removeDatabase(mEngine->name);
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

    auto engine = std::make_unique<Engine>(Engine{NewConnectionName(), parts.fileName, {}});
    QSqlDatabase database = QSqlDatabase::addDatabase(driver, engine->name);
    database.setDatabaseName(EngineFileUri(parts.fileName, mAccess));
    database.setConnectOptions(u"QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1"_s.arg(mLockTimeout));
    engine->driver = database.driver();
    const auto error = OpenError(database, parts.fileName);
    database = QSqlDatabase();
    if (error) {
        QSqlDatabase::removeDatabase(engine->name);
        throw RuntimeError(*error);
    }
    mEngine = std::move(engine);
}

} // namespace qor
