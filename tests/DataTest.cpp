// The database as the floors above rely on it: commands, files that are none, permissions and locks.
#include "platform/data/Command.h"
#include "platform/data/Connection.h"
#include "support/Cases.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <sys/stat.h>

using namespace qor;

namespace {

/// A database that another program has open.
class OtherProgram
{
public:
    explicit OtherProgram(const QString& fileName)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
        database.setDatabaseName(fileName);
    }
    ~OtherProgram() { QSqlDatabase::removeDatabase(u"other"_s); }
    Q_DISABLE_COPY_MOVE(OtherProgram)

    QString Run(const QString& statement)
    {
        QSqlQuery query(QSqlDatabase::database(u"other"_s));
        if (!query.exec(statement))
            qFatal("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
        return query.next() ? query.value(0).toString() : QString();
    }
};

/// Runs a statement on its own connection; what it raised.
QString RunOn(const QString& connectionString, const QString& statement)
{
    Connection connection;
    connection.SetConnectionString(connectionString);
    return RaisedBy([&] { Command(connection, u"Run"_s, statement, 0).Execute({}); });
}

} // namespace

class DataTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> mFolder;
    QString mFile;

    QString Path(const QString& name) const { return mFolder->filePath(name); }
    void SetModes(int file, int folder) const
    {
        chmod(QFile::encodeName(mFile), static_cast<mode_t>(file));
        chmod(QFile::encodeName(mFolder->path()), static_cast<mode_t>(folder));
    }

private Q_SLOTS:
    void init()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        mFile = Path(u"file"_s);
    }
    void cleanup() { SetModes(0600, 0700); }

    void commandsAndRecordsets()
    {
        OtherProgram(mFile).Run(u"CREATE TABLE t (n INTEGER, s TEXT)"_s);
        Connection connection;
        connection.SetConnectionString(ConnectionStringFor(mFile));
        Command add(connection, u"Add"_s, u"INSERT INTO t VALUES (?1, nullif(?2, 'Null'))"_s, 2);
        for (const QString& text : {u"O'Neil; \u4e2d\"--"_s, u"Null"_s, QString()})
            QCOMPARE(add.Execute({u"2"_s, text}), 1);
        QVERIFY(RaisedBy([&] { add.Execute({u"2"_s}); }).contains(u"Add takes 2 values, not 1"_s));
        Command all(connection, u"All"_s, u"SELECT s, n AS Number FROM t WHERE n = ?1 ORDER BY rowid"_s, 1);
        Recordset rows = all.Open({u"2"_s});
        QCOMPARE(rows.RecordCount(), 3);
        QCOMPARE(rows.Field(u"NUMBER"_s), QVariant(2));
        QString texts;
        for (; !rows.EndOfFile(); rows.MoveNext())
            texts += rows.Field(0).isNull() ? u"Null|"_s : rows.Field(0).toString() + u'|';
        QCOMPARE(texts, u"O'Neil; \u4e2d\"--|Null||"_s);
        QVERIFY(RaisedBy([&] { rows.Field(0); }).startsWith(u"3000"_s));
        QVERIFY(RaisedBy([&] { rows.MoveNext(); }).startsWith(u"3000"_s));

        QCOMPARE(add.Execute({u"3"_s, u"while rows are open"_s}), 1);
        QVERIFY(RaisedBy([&] { all.Open({u"2"_s}); }).contains(u"its recordset is open"_s));
        rows.Close();
        for (int i = 0; i < 2; ++i) // the recordset that went closed itself
            QCOMPARE(all.Open({u"3"_s}).RecordCount(), 1);
    }

    void filesThatAreNoDatabase()
    {
        const QString data = u";Data Source="_s + mFile;
        QVERIFY(RunOn(u"Provider=Other"_s + data, {}).contains(u"\"Other\" is not known"_s));
        QVERIFY(RunOn(data, {}).contains(u"must have the form"_s));
        QVERIFY(RunOn(ConnectionStringFor(mFile), {}).contains(mFile + u" does not exist"_s));
        QCOMPARE(EntriesOf(mFolder->path()), QStringList());
        const QByteArray noise(4096, 'x');
        for (const auto& [bytes, expected] : {std::pair(noise, u"is not a configuration database"_s),
                                              {QByteArray("SQLite format 3\0", 16) + noise, u"is damaged"_s}}) {
            WriteFile(mFile, bytes);
            const QString raised = RunOn(ConnectionStringFor(mFile), u"DELETE FROM t"_s);
            QVERIFY2(raised.contains(mFile) && raised.contains(expected), qPrintable(raised));
            QCOMPARE(ReadFile(mFile), bytes);
            QCOMPARE(EntriesOf(mFolder->path()), QStringList(u"file"_s));
        }
    }

    void lockedDatabase()
    {
        OtherProgram(mFile).Run(u"CREATE TABLE t (n)"_s);
        Connection connection;
        connection.SetConnectionString(ConnectionStringFor(mFile));
        connection.SetLockTimeout(50);
        Command add(connection, u"Add"_s, u"INSERT INTO t VALUES (?1)"_s, 1);
        {
            OtherProgram other(mFile);
            other.Run(u"BEGIN EXCLUSIVE"_s);
            QVERIFY(RaisedBy([&] { connection.Open(); }).contains(u"is locked"_s) && !connection.IsOpen());
            other.Run(u"COMMIT"_s);
            add.Execute({u"1"_s});
            other.Run(u"BEGIN EXCLUSIVE"_s);
            QVERIFY(RaisedBy([&] { add.Execute({u"2"_s}); }).contains(u"is locked"_s));
        }
        QCOMPARE(add.Execute({u"3"_s}), 1);
        QCOMPARE(OtherProgram(mFile).Run(u"SELECT group_concat(n) FROM t"_s), u"1,3"_s);
        QCOMPARE(OtherProgram(mFile).Run(u"PRAGMA journal_mode"_s), u"delete"_s);
    }

    void readOnlyDatabase()
    {
        for (const auto& [journal, fileMode, folderMode] :
             {std::tuple(u"DELETE"_s, 0444, 0777), {u"WAL"_s, 0666, 0555}, {u"DELETE"_s, 0, 0555}}) {
            init();
            OtherProgram(mFile).Run(u"PRAGMA journal_mode="_s + journal);
            OtherProgram(mFile).Run(u"CREATE TABLE t (n)"_s);
            const QByteArray before = ReadFile(mFile);
            SetModes(fileMode, folderMode);
            QString raised;
            if (!RunAsOrdinaryUser([&] { raised = RunOn(ConnectionStringFor(mFile), u"DELETE FROM t"_s); }))
                QSKIP("cannot become an ordinary user");
            QVERIFY2(raised.contains(mFile) && raised.contains(u"its folder."_s), qPrintable(raised));
            SetModes(0600, 0700);
            QCOMPARE(ReadFile(mFile), before);
        }
    }
};

QTEST_GUILESS_MAIN(DataTest)
#include "DataTest.moc"
