#include "SampleDatabase.h"

#include <QDir>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

namespace qor {

namespace {

/// The sample as it was made, once for the test program.
const QString& FreshSample()
{
    static const QTemporaryDir folder;
    static const QString fileName = [] {
        QString name = folder.filePath(u"sample.mdb"_s);
        if (QProcess::execute(QString::fromLocal8Bit(DIR_DB), {u"sample"_s, name}) != 0)
            qFatal("%s cannot be made", qUtf8Printable(name));
        return name;
    }();
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
    QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, FileName());
    database.setDatabaseName(FileName());
    database.open();
}

SampleDatabase::~SampleDatabase()
{
    QSqlDatabase::removeDatabase(FileName());
}

QStringList SampleDatabase::Run(const QString& statement) const
{
    QSqlQuery query(QSqlDatabase::database(FileName()));
    if (!query.exec(statement))
        qFatal("%s: %s", qUtf8Printable(statement), qUtf8Printable(query.lastError().text()));
    QStringList rows;
    while (query.next()) {
        QStringList values;
        for (int column = 0; column < query.record().count(); ++column)
            values << (query.isNull(column) ? u"Null"_s : query.value(column).toString());
        rows << values.join(u'|');
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

int SampleDatabase::DataVersion() const
{
    return Run(u"PRAGMA data_version"_s).first().toInt();
}

} // namespace qor
