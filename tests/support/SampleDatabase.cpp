#include "SampleDatabase.h"

#include <QDir>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

namespace qor {

namespace {

const QString connectionName = u"test"_s;

QStringList ReadRows(QSqlQuery& query)
{
    QStringList rows;
    while (query.next()) {
        QStringList values;
        for (int column = 0; column < query.record().count(); ++column)
            values << (query.isNull(column) ? u"Null"_s : query.value(column).toString());
        rows << values.join(u'|');
    }
    return rows;
}

/// A connection that stays open as long as it has this name.
QSqlDatabase Opened(const QString& name, const QString& fileName)
{
    if (QSqlDatabase::contains(name))
        return QSqlDatabase::database(name);
    QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, name);
    database.setDatabaseName(fileName);
    database.open();
    return database;
}

QStringList RunOn(const QSqlDatabase& database, const QString& statement)
{
    QSqlQuery query(database);
    if (!query.exec(statement))
        qFatal("%s: %s", qUtf8Printable(statement), qUtf8Printable(query.lastError().text()));
    return ReadRows(query);
}

/// The sample as it was made, once for the test program.
QString FreshSample()
{
    static const QTemporaryDir folder;
    QString fileName = folder.filePath(u"sample.mdb"_s);
    if (QFile::exists(fileName))
        return fileName;
    QProcess dirDb;
    dirDb.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    dirDb.start(QString::fromLocal8Bit(DIR_DB), {u"sample"_s, fileName});
    if (!dirDb.waitForFinished() || dirDb.exitStatus() != QProcess::NormalExit || dirDb.exitCode() != 0)
        qFatal("%s cannot be made", qUtf8Printable(fileName));
    return fileName;
}

} // namespace

SampleDatabase::SampleDatabase()
{
    const QByteArray folder = QFile::encodeName(mFolder.path());
    qputenv("KELDAR_COMMON_APPDATA", folder);
    qputenv("KELDAR_COMMON_DOCUMENTS", folder);
    qputenv("KELDAR_REGISTRY", folder + "/registry.reg");
    QDir().mkpath(QFileInfo(FileName()).path());
    if (!QFile::copy(FreshSample(), FileName()))
        qFatal("%s cannot be made", qUtf8Printable(FileName()));
}

SampleDatabase::~SampleDatabase()
{
    QSqlDatabase::removeDatabase(FileName());
}

QStringList SampleDatabase::Run(const QString& statement) const
{
    QStringList rows = RunOn(Opened(connectionName, FileName()), statement);
    QSqlDatabase::removeDatabase(connectionName);
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

int SampleDatabase::DataVersion() const
{
    return RunOn(Opened(FileName(), FileName()), u"PRAGMA data_version"_s).first().toInt();
}

} // namespace qor
