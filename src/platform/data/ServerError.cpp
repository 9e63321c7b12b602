#include "platform/data/ServerEngine.h"

#include <array>

namespace qor {

namespace {

struct ServerSentence
{
    const char* sign; ///< how the code begins; without a code, a part of the message
    const char* sentence;
};

/// By the server's codes, longer ones before those that begin them.
constexpr std::array stateSentences{
    ServerSentence{"28",
                   "does not admit the user of its service. Check the user in pg_service.conf and the rights on the "
                   "server."},
    ServerSentence{"3D", "does not exist on its server. Check the name in pg_service.conf or make it there."},
    ServerSentence{"42P01", "lacks a table. Run \"dir-db check\" on the file; \"dir-db create\" makes the tables."},
    ServerSentence{"42703", "lacks a column. Run \"dir-db check\" on the file."},
    ServerSentence{"42501",
                   "does not allow that to the user of its service. Ask whoever keeps the server for the rights "
                   "that \"dir-db grants\" prints."},
    ServerSentence{"25006",
                   "can only be read at the moment. Wait until its server takes changes again, or use one that "
                   "does."},
    ServerSentence{"531", "cannot grow: the disk of its server is full. Free some space there and try again."},
    ServerSentence{"53", "has a server at its limits. Wait a little and try again, or ask whoever keeps the server."},
    ServerSentence{"55P03", "is locked by another station. Wait until it has finished and try again."},
    ServerSentence{"40", "was changed by another station at the same moment. Try again."},
    ServerSentence{"57014", "took too long. Try again when its server has less to do."},
    ServerSentence{"57", "has a server that is stopping or starting. Wait a little and try again."},
    ServerSentence{"23", "refuses a row that contradicts what it holds. Another station may have saved the same: try "
                         "again, or run \"dir-db check\" on the file."},
    ServerSentence{"22", "cannot hold a value in the column that it is for. Run \"dir-db check\" on the file."},
    ServerSentence{"0A000", "was changed in its tables meanwhile. Try again."},
    ServerSentence{"58", "has a server with a fault. Ask whoever keeps the server to look at its log."},
    ServerSentence{"XX", "has a server with a fault. Ask whoever keeps the server to look at its log."},
};

/// A connection that cannot be made has no code.
constexpr std::array connectionSentences{
    ServerSentence{"definition of service", "names a service that is not defined here. Add it to pg_service.conf."},
    ServerSentence{"service file", "needs pg_service.conf, which cannot be read. Mend that file."},
    ServerSentence{"no password supplied",
                   "needs a password, and the passfile gives none. Add a line for it to .pgpass, "
                   "which only you may read (chmod 0600)."},
    ServerSentence{"authentication failed", "refuses its user and password. Correct pg_service.conf or .pgpass."},
    ServerSentence{"no pg_hba.conf entry", "does not admit this station, its user or this kind of connection. Ask "
                                           "whoever keeps the server (pg_hba.conf)."},
    ServerSentence{"role",
                   "does not admit the user of its service. Check the user in pg_service.conf and the rights on "
                   "the server."},
    ServerSentence{"permission denied for database", "does not admit the user of its service. Ask whoever keeps the "
                                                     "server for the right to connect."},
    ServerSentence{"database \"", "does not exist on its server. Check the name in pg_service.conf or make it there."},
    ServerSentence{"certificate",
                   "has a server that cannot be trusted. Check sslmode and sslrootcert in pg_service.conf "
                   "and the server's certificate."},
    ServerSentence{"SSL",
                   "does not reach its server over TLS as its service wants it. Check sslmode in pg_service.conf "
                   "and the server's settings."},
    ServerSentence{"the database system is", "has a server that is stopping or starting. Wait a little and try again."},
    ServerSentence{"too many", "has a server that takes no more connections. Wait a little and try again."},
    ServerSentence{"remaining connection", "has a server that takes no more connections. Wait a little and try again."},
};

constexpr char unreachable[] = "cannot be reached. Check that its server runs and that the network leads there.";

QString SentenceFor(const QString& state, const QString& serverText)
{
    if (state.isEmpty()) {
        for (const ServerSentence& entry : connectionSentences) {
            if (serverText.contains(QLatin1String(entry.sign)))
                return QString::fromLatin1(entry.sentence);
        }
        return QString::fromLatin1(unreachable);
    }
    for (const ServerSentence& entry : stateSentences) {
        if (state.startsWith(QLatin1String(entry.sign)))
            return QString::fromLatin1(entry.sentence);
    }
    return u"gave an error."_s;
}

/// Without its severity.
QString FirstLine(const QSqlError& error)
{
    QString line = error.databaseText().section(u'\n', 0, 0).trimmed();
    for (const QLatin1String severity : {QLatin1String("ERROR:"), QLatin1String("FATAL:"), QLatin1String("PANIC:")}) {
        if (line.startsWith(severity))
            line = line.sliced(severity.size()).trimmed();
    }
    return line;
}

} // namespace

RuntimeError ServerError(const QSqlError& error, const QString& fileName, const QString& service)
{
    const QString state = error.nativeErrorCode();
    return {state == u"55P03" ? ErrorNumber::DatabaseLocked : ErrorNumber::Provider,
            u"The shared database %1 (service %2) %3 (%4)"_s.arg(
                fileName, service, SentenceFor(state, error.databaseText()), FirstLine(error))};
}

RuntimeError LostServerError(const QSqlError& error, const QString& fileName, bool hasGivenUp)
{
    const QString why = hasGivenUp ? u"no answer for 35 seconds"_s : FirstLine(error);
    return {ErrorNumber::ConnectionLost,
            u"The connection to the shared database %1 was lost. Check that its server runs "
            "and that the network leads there, and try again. (%2)"_s.arg(fileName, why)};
}

} // namespace qor
