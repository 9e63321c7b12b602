#include "SampleDatabase.h"

#include "support/Files.h"

#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

namespace qor {

namespace {

void RunTool(const QStringList& arguments)
{
    if (QProcess::execute(QString::fromLocal8Bit(DIR_DB), arguments) != 0)
        qFatal("dir-db %s failed", qUtf8Printable(arguments.join(u' ')));
}

QSqlQuery Execute(const QSqlDatabase& database, const QString& statement)
{
    QSqlQuery query(database);
    if (!query.exec(statement))
        qFatal("%s: %s", qUtf8Printable(statement), qUtf8Printable(query.lastError().text()));
    return query;
}

/// The sample as it was made, once for the test program.
const QString& FreshSample()
{
    static const QTemporaryDir folder;
    static const QString fileName = [] {
        QString name = folder.filePath(u"sample.mdb"_s);
        RunTool({u"sample"_s, name});
        return name;
    }();
    return fileName;
}

void WriteLink(const QString& fileName)
{
    WriteFile(fileName, "Provider=PostgreSQL;Service=" + qgetenv("QOR_SERVICE") + "\n");
}

/// The server's tables as they were made, once for the test program, in a schema of their own; then a copy of them for
/// each test.
void MakeServerSample(const QString& link, QSqlDatabase database)
{
    static const QStringList tables = [&] {
        RunTool({u"copy"_s, FreshSample(), link});
        QStringList names = database.tables();
        Execute(database, u"ALTER SCHEMA public RENAME TO fresh"_s);
        return names;
    }();
    QString text = u"SET client_min_messages = warning; DROP SCHEMA IF EXISTS public CASCADE; CREATE SCHEMA public;"_s;
    for (const QString& table : tables)
        text +=
            u"CREATE TABLE public.%1 (LIKE fresh.%1 INCLUDING ALL); INSERT INTO public.%1 TABLE fresh.%1;"_s.arg(table);
    Execute(database, text);
}

} // namespace

bool SampleDatabase::IsOnServer()
{
    return qEnvironmentVariableIsSet("QOR_SERVICE");
}

void SampleDatabase::Use() const
{
    const QByteArray folder = QFile::encodeName(mFolder.path());
    qputenv("KELDAR_COMMON_APPDATA", folder);
    qputenv("KELDAR_COMMON_DOCUMENTS", folder);
    qputenv("KELDAR_REGISTRY", folder + "/registry.reg");
}

SampleDatabase::SampleDatabase()
{
    Use();
    QDir().mkpath(QFileInfo(FileName()).path());
    QSqlDatabase database = QSqlDatabase::addDatabase(IsOnServer() ? u"QPSQL"_s : u"QSQLITE"_s, FileName());
    if (IsOnServer()) {
        database.setConnectOptions(u"service="_s + qEnvironmentVariable("QOR_SERVICE"));
        WriteLink(FileName());
    } else if (!QFile::copy(FreshSample(), FileName())) {
        qFatal("%s cannot be made", qUtf8Printable(FileName()));
    }
    database.setDatabaseName(IsOnServer() ? QString() : FileName());
    if (!database.open())
        qFatal("%s", qUtf8Printable(database.lastError().text()));
    if (IsOnServer())
        MakeServerSample(FileName(), database);
}

SampleDatabase::~SampleDatabase()
{
    QSqlDatabase::removeDatabase(FileName());
}

QStringList SampleDatabase::Run(const QString& statement) const
{
    const QSqlDatabase database = QSqlDatabase::database(FileName());
    if (IsOnServer())
        Execute(database, u"BEGIN"_s);
    QSqlQuery query = Execute(database, statement);
    QStringList rows;
    while (query.next()) {
        QStringList values;
        for (int column = 0; column < query.record().count(); ++column)
            values << (query.isNull(column) ? u"Null"_s : query.value(column).toString());
        rows << values.join(u'|');
    }
    if (IsOnServer()) {
        mOwnCommits += Execute(database, u"SELECT WHERE pg_current_xact_id_if_assigned() IS NOT NULL"_s).size();
        Execute(database, u"COMMIT"_s);
    }
    return rows;
}

QStringList SampleDatabase::Entries(int node) const
{
    return Run(u"SELECT LastName, FirstName, Extension, NamePrompt, Password FROM Detail_DIR WHERE ConfigID = 1 AND "
               "PartID = 1 AND NodeMasterID = %1 ORDER BY SequenceNo"_s.arg(node));
}

void SampleDatabase::SetEntries(int node, const QStringList& entries) const
{
    Run(u"DELETE FROM Detail_DIR WHERE ConfigID = 1 AND PartID = 1 AND NodeMasterID = %1"_s.arg(node));
    QStringList rows;
    for (QString entry : entries) {
        entry.replace(u'\'', u"''"_s).replace(u'|', u"','"_s);
        rows << u"(1, 1, %1, %2, '"_s.arg(node).arg(rows.size() + 1) + entry + u"')"_s;
    }
    if (!rows.isEmpty())
        Run(u"INSERT INTO Detail_DIR (ConfigID, PartID, NodeMasterID, SequenceNo, LastName, FirstName, Extension, "
            "NamePrompt, Password) VALUES "_s +
            rows.join(u", "_s));
}

void SampleDatabase::Refuse(const QString& event, const QString& condition) const
{
    const QString when = condition.isEmpty() ? QString() : u" WHEN (%1)"_s.arg(condition);
    if (!IsOnServer()) {
        Run(u"CREATE TRIGGER fault BEFORE %1%2 BEGIN SELECT RAISE(ABORT, 'refused'); END"_s.arg(event, when));
        return;
    }
    Run(u"CREATE FUNCTION fault() RETURNS trigger LANGUAGE plpgsql AS $$BEGIN RAISE 'refused'; END$$"_s);
    Run(u"CREATE TRIGGER fault BEFORE %1 FOR EACH ROW%2 EXECUTE FUNCTION fault()"_s.arg(event, when));
}

void SampleDatabase::RefuseNoMore() const
{
    Run(IsOnServer() ? u"DROP FUNCTION fault CASCADE"_s : u"DROP TRIGGER fault"_s);
}

int SampleDatabase::DataVersion() const
{
    if (IsOnServer())
        return Run(u"SELECT pg_snapshot_xmax(pg_current_snapshot())"_s).first().toInt() - mOwnCommits;
    return Run(u"PRAGMA data_version"_s).first().toInt();
}

} // namespace qor
