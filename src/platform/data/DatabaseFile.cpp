#include "platform/data/DatabaseFile.h"

#include "platform/data/FileEngine.h"

#include <array>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>
#include <sys/stat.h>
#include <unistd.h>

namespace qor {

namespace {

/// A format by its first bytes, and what to say of such a file.
struct Signature
{
    QByteArray bytes;
    const char* sentence;
};

constexpr qsizetype startLength = 32; ///< bytes that identify a format

/// By the versions that a reader and a writer have to know, of which the engine knows the first two. Three bytes that
/// every sound header has tell a newer file from a damaged one.
bool IsNewerFormat(const QByteArray& start)
{
    constexpr char knownVersion = 2;
    return start.size() == startLength && start.startsWith("SQLite format 3") && start.sliced(21, 3) == "@  " &&
           (start[18] > knownVersion || start[19] > knownVersion);
}

QByteArray ReadStart(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.read(startLength) : QByteArray();
}

const std::array<Signature, 3>& Signatures()
{
    static constexpr char jet[] =
        "is a Jet database, which the editor does not open. Convert it with \"dir-db import-jet SOURCE.mdb "
        "FILE\" and put the new file in its place.";
    static const std::array<Signature, 3> signatures{
        Signature{QByteArray("SQLite format 3\0", 16), "is damaged. Restore it from a backup."},
        Signature{QByteArray("\0\1\0\0Standard Jet DB", 19), jet},
        Signature{QByteArray("\0\1\0\0Standard ACE DB", 19), jet},
    };
    return signatures;
}

[[noreturn]] void ThrowDatabaseFault(const QString& fileName, const char* what)
{
    throw RuntimeError(ErrorNumber::Provider, u"The database %1 %2"_s.arg(fileName, QString::fromLatin1(what)));
}

/// Sets write-ahead mode, which writes the header of an empty file. The engine answers with the mode that now holds and
/// writes after its answer, so a full disk shows only when the query is read on.
void SetWriteAheadMode(const QString& connectionName, const QString& fileName)
{
    QSqlDatabase database = QSqlDatabase::database(connectionName, false);
    if (!database.open())
        throw FileError(database.lastError(), fileName);
    QSqlQuery query(database);
    const bool isAnswered = query.exec(u"PRAGMA journal_mode = WAL"_s) && query.next();
    const QString mode = isAnswered ? query.value(0).toString() : QString();
    if (!isAnswered || query.next() || query.lastError().isValid())
        throw FileError(query.lastError(), fileName);
    if (mode != u"wal"_s)
        ThrowDatabaseFault(fileName,
                           "cannot be kept in write-ahead mode on this file system. Choose a folder on a local disk.");
}

/// Writes the header of an empty database in write-ahead mode into an empty file.
void WriteHeader(const QString& fileName)
{
    RequireDriver(fileDriver, fileDriverPackage);
    const QString name = NewConnectionName();
    struct Remove
    {
        QString name;
        ~Remove() { QSqlDatabase::removeDatabase(name); }
    } const remove{name};
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(fileDriver, name);
        database.setDatabaseName(EngineFileUri(fileName));
        database.setConnectOptions(u"QSQLITE_OPEN_URI"_s);
    }
    SetWriteAheadMode(name, fileName);
}

} // namespace

void RequireDatabaseFile(const QString& fileName)
{
    const QFileInfo info(fileName);
    if (!info.exists()) {
        ThrowDatabaseFault(fileName, "does not exist or cannot be reached. The editor looks for NewDB.mdb in "
                                     "Quorvanta/KELDAR+/Database below /var/lib, or below the folder that "
                                     "KELDAR_COMMON_APPDATA names. Make one there with \"dir-db create\".");
    }
    if (!info.isFile())
        ThrowDatabaseFault(fileName, "is not a file. Choose another name.");
    if (info.size() == 0)
        ThrowDatabaseFault(fileName, "is empty. Restore it from a backup or make a new one with \"dir-db create\".");
}

std::optional<FileIdentity> IdentityOf(const QString& fileName)
{
    struct stat status;
    if (stat(QFile::encodeName(fileName).constData(), &status) != 0)
        return std::nullopt;
    return FileIdentity{status.st_dev, status.st_ino};
}

void MendPermissions(const QString& canonicalPath)
{
    struct stat database;
    if (stat(QFile::encodeName(canonicalPath).constData(), &database) != 0)
        return;
    for (const QString& ending : {u"-wal"_s, u"-shm"_s}) {
        const QByteArray path = QFile::encodeName(canonicalPath + ending);
        struct stat beside;
        if (lstat(path.constData(), &beside) == 0 && S_ISREG(beside.st_mode) && beside.st_uid == geteuid() &&
            (beside.st_mode & S_IWUSR) == 0)
            chmod(path.constData(), database.st_mode & ACCESSPERMS);
    }
}

bool HasNewerFormat(const QString& fileName)
{
    return IsNewerFormat(ReadStart(fileName));
}

QString ForeignFileSentence(const QString& fileName)
{
    const QByteArray start = ReadStart(fileName);
    if (start.isEmpty())
        return u"cannot be read. Check the disk."_s;
    if (IsNewerFormat(start))
        return QString::fromLatin1(newerFormatSentence);
    for (const Signature& signature : Signatures()) {
        if (start.startsWith(signature.bytes))
            return QString::fromLatin1(signature.sentence);
    }
    return u"is not a configuration database. Choose another file or make one with \"dir-db create\"."_s;
}

void ThrowFileNotMade(const QString& fileName, const QString& why)
{
    throw RuntimeError(ErrorNumber::FileAccess, u"The file %1 cannot be made: %2."_s.arg(fileName, why));
}

void ThrowFileExists(const QString& fileName)
{
    ThrowFileNotMade(fileName, u"it exists already; choose another name"_s);
}

void CreateDatabaseFile(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFileDevice::ReadOwner | QFileDevice::WriteOwner)) {
        if (QFileInfo::exists(fileName))
            ThrowFileExists(fileName);
        ThrowFileNotMade(fileName, file.errorString());
    }
    file.close();
    try {
        WriteHeader(fileName);
    } catch (...) {
        for (const char* const ending : {"", "-wal", "-shm", "-journal"})
            QFile::remove(fileName + QString::fromLatin1(ending));
        throw;
    }
}

} // namespace qor
