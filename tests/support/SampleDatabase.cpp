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

QString SampleDatabase::FileName() const
{
    return mFolder.filePath(u"Quorvanta/KELDAR+/Database/NewDB.mdb"_s);
}

QStringList SampleDatabase::Run(const QString& statement) const
{
    QStringList rows;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, connectionName);
        database.setDatabaseName(FileName());
        database.open();
        QSqlQuery query(database);
        if (!query.exec(statement))
            qFatal("%s: %s", qUtf8Printable(statement), qUtf8Printable(query.lastError().text()));
        rows = ReadRows(query);
    }
    QSqlDatabase::removeDatabase(connectionName);
    return rows;
}

} // namespace qor
