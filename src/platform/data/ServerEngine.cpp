#include "platform/data/ServerEngine.h"

#include "platform/data/LinkFile.h"
#include "platform/runtime/Numbers.h"

#include <algorithm>
#include <dlfcn.h>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlField>

namespace qor {

namespace {

constexpr int longestLockWait = 25'000; ///< ms; shorter than any statement may take, so that a lock is told as a lock

/// What every session begins with. The server looks after its side of the connection, so that the locks of a station
/// that is gone are free after half a minute.
QString SessionText(Access access)
{
    const QString text =
        u"SET statement_timeout = 30000; SET client_min_messages = warning; SET tcp_keepalives_idle = 10; "
        "SET tcp_keepalives_interval = 5; SET tcp_keepalives_count = 4; SET tcp_user_timeout = 30000"_s;
    return access == Access::ReadWrite ? text : text + u"; SET default_transaction_read_only = on"_s;
}

/// timeout: for the network, in seconds.
QString ConnectOptions(const QString& service, int timeout)
{
    return u"service=%1;connect_timeout=%2;keepalives_idle=10;keepalives_interval=5;keepalives_count=4;"
           "tcp_user_timeout=30000"_s.arg(service)
               .arg(timeout);
}

/// The connection's socket. The toolkit does not hand it out; the client library, which the driver has loaded, does.
/// Less than zero when there is none.
int SocketOf(const QSqlDriver& driver)
{
    void* const library = dlopen("libpq.so.5", RTLD_NOW | RTLD_NOLOAD);
    if (!library)
        return -1;
    const auto socketOf = reinterpret_cast<int (*)(const void*)>(dlsym(library, "PQsocket"));
    const QVariant handle = driver.handle(); // a pointer to the library's connection
    const int socket = socketOf && handle.isValid() ? socketOf(*static_cast<void* const*>(handle.constData())) : -1;
    dlclose(library);
    return socket;
}

/// Without one a server may keep the program waiting for ever, but the rest goes on.
std::unique_ptr<AnswerWatch> WatchOver(const QSqlDriver& driver)
{
    const int socket = SocketOf(driver);
    try {
        return socket < 0 ? nullptr : std::make_unique<AnswerWatch>(socket);
    } catch (const std::system_error&) { // no thread can be made
        return nullptr;
    }
}

/// $1 for ?1. Names without back-quotes are found whatever their case.
QString InServersWords(QString text)
{
    static const QRegularExpression placeholder(uR"(\?(\d+))"_s);
    return text.remove(u'`').replace(placeholder, uR"($\1)"_s);
}

class ServerStatement : public Statement
{
public:
    ServerStatement(ServerEngine& engine, const QString& text, int parameterCount)
        : Statement(engine.Database()), mEngine(engine), mText(InServersWords(text)), mHasParameters(parameterCount > 0)
    {
    }

    ~ServerStatement() override
    {
        if (mIsPrepared && query.driver())
            mEngine.End(query);
    }
    Q_DISABLE_COPY_MOVE(ServerStatement)

    bool Run(const QStringList& values) override
    {
        if (!mHasParameters) // many of these cannot be prepared
            return mEngine.Run(query, mText);
        if (!mIsPrepared && !mEngine.PrepareIn(query, mText))
            return false;
        mIsPrepared = true;
        Bind(values);
        return mEngine.Run(query);
    }
    QVariant Value(int column) const override { return query.isNull(column) ? QVariant() : query.value(column); }

private:
    void Bind(const QStringList& values);
    QString Admitted(const QString& text, int parameter);
    QStringList ReadParameterTypes();

    ServerEngine& mEngine; ///< the query's driver tells whether it is still there
    QString mText;
    bool mHasParameters;
    bool mIsPrepared = false;
    QStringList mTypes; ///< of the parameters, once one of them was asked for
};

void ServerStatement::Bind(const QStringList& values)
{
    for (int i = 0; i < values.size(); ++i) {
        mEngine.RequireStorable(values[i]);
        query.bindValue(i, Admitted(values[i], i));
    }
}

/// The embedded engine keeps any text in any column, and its readers take what is no number for missing. The server
/// refuses it, in the middle of a save: in its place stands Null, which is missing as well.
QString ServerStatement::Admitted(const QString& text, int parameter)
{
    const auto isDigit = [](QChar c) { return IsDigit(c); };
    constexpr qsizetype surelyInRange = 4; // digits
    if (text.isNull() || (!text.isEmpty() && text.size() <= surelyInRange && std::ranges::all_of(text, isDigit)))
        return text;
    if (mTypes.isEmpty())
        mTypes = ReadParameterTypes();
    const QString type = mTypes.value(parameter);
    if (type != u"integer" && type != u"bigint" && type != u"smallint")
        return text;
    const auto number = type == u"smallint" ? std::optional<int>(WholeNumber16(text)) : WholeNumber(text);
    return number ? QString::number(*number) : QString();
}

QStringList ServerStatement::ReadParameterTypes()
{
    QSqlField text({}, QMetaType::fromType<QString>());
    text.setValue(mText);
    QSqlQuery types(mEngine.Database());
    const bool isRead = mEngine.Run(
        types, u"SELECT array_to_string(parameter_types, ',') FROM pg_prepared_statements WHERE right(statement, "
               "length(%1)) = %1 LIMIT 1"_s.arg(query.driver()->formatValue(text)));
    return isRead && types.next() ? types.value(0).toString().split(u',') : QStringList();
}

} // namespace

ServerEngine::ServerEngine(const QString& fileName, QString service)
    : DatabaseEngine(fileName), mService(std::move(service)), mPath(QFileInfo(fileName).absoluteFilePath())
{
}

ServerEngine::~ServerEngine() = default;

QSqlError ServerEngine::Open(const OpenOptions& options)
{
    constexpr int patience = 10; // s
    constexpr int impatience = 2;
    QSqlDatabase database = AddDatabase(u"QPSQL"_s, u"libqt6sql6-psql"_s);
    database.setConnectOptions(ConnectOptions(mService, options.isImpatient ? impatience : patience));
    if (!database.open())
        return database.lastError();
    mWasConnected = true;
    mWatch = WatchOver(*database.driver());
    mLockTimeout = options.lockTimeout;
    QSqlQuery session(database);
    const AnswerWatch::Wait wait(mWatch.get());
    // Apart: of several statements the toolkit hands out what the first one says.
    if (!session.exec(SessionText(options.access)) || !session.exec(u"SHOW server_encoding"_s) || !session.next())
        return session.lastError();
    const QString encoding = session.value(0).toString();
    if (encoding != u"UTF8") {
        throw RuntimeError(
            ErrorNumber::Provider,
            u"The shared database %1 has the encoding %2, which cannot hold every name. Make one with the "
            "encoding UTF8 and copy it there with \"dir-db copy\"."_s.arg(FileName(), encoding));
    }
    return {};
}

/// Where that fails, what runs next fails, too.
void ServerEngine::SendLockTimeout()
{
    const int wanted = std::min(mLockTimeout, longestLockWait);
    if (wanted != mSentLockTimeout && QSqlQuery(Database()).exec(u"SET lock_timeout = %1"_s.arg(wanted)))
        mSentLockTimeout = wanted;
}

bool ServerEngine::Run(QSqlQuery& query, const QString& text)
{
    const AnswerWatch::Wait wait(mWatch.get());
    SendLockTimeout();
    return query.exec(text);
}

bool ServerEngine::Run(QSqlQuery& query)
{
    const AnswerWatch::Wait wait(mWatch.get());
    SendLockTimeout();
    return query.exec();
}

bool ServerEngine::PrepareIn(QSqlQuery& query, const QString& text)
{
    const AnswerWatch::Wait wait(mWatch.get());
    return query.prepare(text);
}

void ServerEngine::End(QSqlQuery& query)
{
    const AnswerWatch::Wait wait(mWatch.get());
    query = QSqlQuery(Database());
}

EngineFailure ServerEngine::Judge(const QSqlError& error) const
{
    if (!mWasConnected)
        return {.error = ServerError(error, FileName(), mService), .waitedInVain = true, .endsEngine = true};
    // An error without a code is none of the server's: its connection has ended, which the client library may notice
    // only at the next command.
    const QString state = error.nativeErrorCode();
    if (!Database().isOpen() || state.isEmpty()) {
        const bool hasGivenUp = mWatch && mWatch->HasGivenUp();
        return {.error = LostServerError(error, FileName(), hasGivenUp),
                .waitedInVain = true,
                .endsEngine = true,
                .mayRepeat = !hasGivenUp};
    }
    return {.error = ServerError(error, FileName(), mService),
            .waitedInVain = state == u"55P03",
            .mayRepeat = state == u"0A000"}; // another session changed the table under a prepared statement
}

std::unique_ptr<Statement> ServerEngine::Prepare(const QString& text, int parameterCount)
{
    return std::make_unique<ServerStatement>(*this, text, parameterCount);
}

void ServerEngine::RequireStorable(const QString& text) const
{
    if (text.contains(QChar(u'\0'))) {
        throw RuntimeError(ErrorNumber::Provider,
                           u"A text holds a character of the number 0, which the shared database "
                           "%1 cannot store. Type that text anew."_s.arg(FileName()));
    }
}

std::optional<RuntimeError> ServerEngine::Replacement(const QString& outcome, int /*lockTimeout*/)
{
    try {
        if (ServiceIn(mPath) == mService)
            return std::nullopt;
    } catch (const RuntimeError&) {
        // It is another text now, whatever is wrong with it.
    }
    return RuntimeError(ErrorNumber::Provider,
                        u"The link %1 to a shared database was replaced or removed while it was "
                        "open. %2 Try again to use what is there now."_s.arg(FileName(), outcome));
}

} // namespace qor
