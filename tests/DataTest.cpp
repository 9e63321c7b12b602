// The database as the floors above rely on it: commands, files that are none, locks, and faults while it is open.
#include "platform/data/AnswerWatch.h"
#include "platform/data/Command.h"
#include "platform/data/Connection.h"
#include "platform/data/DatabaseFile.h"
#include "platform/data/DeferredSync.h"
#include "platform/data/SavingLock.h"
#include "support/Cases.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"

#include <poll.h>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>

using namespace qor;

namespace {

int folderSyncs = 0;

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

/// A connection with a command that adds a row to the table t.
struct Writer
{
    Connection connection;
    Command add{connection, u"Add"_s, u"INSERT INTO t VALUES (?1)"_s, 1};

    explicit Writer(const QString& fileName, const QString& provider = ConnectionStringFor({}))
    {
        connection.SetConnectionString(provider + fileName);
    }

    QString Add(int number)
    {
        return RaisedBy([&] { add.Execute({QString::number(number)}); });
    }
    QString Save(int number)
    {
        return RaisedBy([&] {
            DeferredSync sync(connection);
            add.Execute({QString::number(number)});
            sync.Finish();
        });
    }
    int Answer(const QString& text) { return Command(connection, text, text, 0).Open({}).Field(0).toInt(); }
};

} // namespace

/// In place of the system's, for the code in this program.
extern "C" int fsync(int descriptor)
{
    struct stat status;
    if (fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode))
        ++folderSyncs;
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}

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
    static void MakeTable(const QString& fileName, const QString& journal, const QString& more = u"SELECT 1"_s)
    {
        for (const QString& text : {u"PRAGMA journal_mode = "_s + journal, u"CREATE TABLE t (n UNIQUE)"_s, more})
            OtherProgram(fileName).Run(text);
    }
    /// Whether the file is sound, and its numbers; the empty text when there is none.
    static QString Rows(const QString& fileName)
    {
        if (!QFile::exists(fileName))
            return {};
        OtherProgram other(fileName);
        const QString soundness = other.Run(u"PRAGMA integrity_check"_s);
        return soundness + u' ' + other.Run(u"SELECT group_concat(n) FROM t"_s);
    }

private Q_SLOTS:
    void init()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        mFile = Path(u"file"_s);
    }
    void cleanup() { SetModes(0600, 0700); }

    /// First of all: a driver that was loaded once stays.
    void missingDriver()
    {
        const QStringList paths = QCoreApplication::libraryPaths();
        QCoreApplication::setLibraryPaths({});
        const auto guard = qScopeGuard([&] { QCoreApplication::setLibraryPaths(paths); });
        WriteFile(mFile, "x");
        QVERIFY(Writer(mFile).Add(1).contains(u"Install the package libqt6sql6-sqlite"_s));
    }

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

    void filesThatAreRefused()
    {
        QVERIFY(Writer(mFile, u"Provider=Other;Data Source="_s).Add(1).contains(u"\"Other\" is not known"_s));
        QVERIFY(Writer(mFile, u";Data Source="_s).Add(1).contains(u"must have the form"_s));
        QVERIFY(Writer(mFile).Add(1).contains(mFile + u" does not exist"_s));
        QCOMPARE(EntriesOf(mFolder->path()), QStringList());
        MakeTable(mFile, u"DELETE"_s, u"INSERT INTO t VALUES ('1')"_s);
        const QByteArray good = ReadFile(mFile);
        const QByteArray noise(4096, 'x');
        const auto with = [&](int place, char byte) { return QByteArray(good).replace(place, 1, QByteArray(1, byte)); };
        for (const auto& [bytes, expected] : {std::pair(noise, u"is not a configuration database"_s),
                                              {good.left(16) + noise, u"is damaged."_s},
                                              {good.left(4096), u"is damaged or cannot be read"_s},
                                              {with(18, 3), u"newer format"_s},
                                              {with(19, 3), u"newer format"_s},
                                              {with(47, 5), u"newer format"_s},
                                              {good, u"refuses a row"_s}}) {
            WriteFile(mFile, bytes);
            const QString raised = Writer(mFile).Add(1);
            QVERIFY2(raised.contains(mFile) && raised.contains(expected), qPrintable(raised));
            QCOMPARE(ReadFile(mFile), bytes);
            QCOMPARE(EntriesOf(mFolder->path()), QStringList(u"file"_s));
        }
    }

    void lockedDatabase()
    {
        MakeTable(mFile, u"DELETE"_s);
        Writer writer(mFile);
        writer.connection.SetLockTimeout(50);
        {
            OtherProgram other(mFile);
            other.Run(u"BEGIN EXCLUSIVE"_s);
            for (int i = 0; i < 2; ++i)
                QVERIFY(writer.Add(0).contains(u"is locked"_s) && !writer.connection.IsOpen());
            other.Run(u"COMMIT"_s);
            QCOMPARE(writer.Add(1), QString());
            other.Run(u"BEGIN EXCLUSIVE"_s);
            QVERIFY(writer.Add(2).startsWith(u"3006: "_s));
            other.Run(u"COMMIT"_s);
            DeferredSync(writer.connection).Finish(); // asks for no lock
            writer.connection.SetLockTimeout(30'000);
            for (const int timeout : {1000, 30'000}) // after a wait in vain, and after a success
                QCOMPARE(writer.Answer(u"PRAGMA busy_timeout"_s), timeout);
        }
        QCOMPARE(writer.Add(3), QString());
        QCOMPARE(Rows(mFile), u"ok 1,3"_s);
        QCOMPARE(OtherProgram(mFile).Run(u"PRAGMA journal_mode"_s), u"delete"_s);
    }

    void readOnlyDatabase()
    {
        for (const auto& [journal, fileMode, folderMode] :
             {std::tuple(u"DELETE"_s, 0444, 0777), {u"WAL"_s, 0666, 0555}, {u"DELETE"_s, 0, 0555}}) {
            init();
            MakeTable(mFile, journal);
            const QByteArray before = ReadFile(mFile);
            SetModes(fileMode, folderMode);
            QString raised;
            if (!RunAsOrdinaryUser([&] { raised = Writer(mFile).Add(1); }))
                QSKIP("cannot become an ordinary user");
            QVERIFY2(raised.contains(mFile) && raised.contains(u"its folder."_s), qPrintable(raised));
            SetModes(0600, 0700);
            QCOMPARE(ReadFile(mFile), before);
        }
    }

    void fullDisk()
    {
        const QByteArray place = QFile::encodeName(mFolder->path());
        if (mount("none", place, "tmpfs", 0, "size=192k") != 0)
            QSKIP("cannot mount a small disk");
        const auto guard = qScopeGuard([&] { umount2(place, MNT_DETACH); });
        MakeTable(mFile, u"WAL"_s);
        int written = 0;
        for (int used = 176; used > 112; used -= 4) {
            WriteFile(Path(u"filler"_s), QByteArray(used * qsizetype(1024), 'x'));
            const QString notMade = RaisedBy([&] { CreateDatabaseFile(Path(u"new"_s)); });
            QCOMPARE(QFileInfo(Path(u"new"_s)).size() > 0, notMade.isEmpty());
            QFile::remove(Path(u"new"_s));
            QCOMPARE(QDir(mFolder->path()).entryList({u"new*"_s}), QStringList());
            for (const QString& raised : {notMade, Writer(mFile).Save(used)}) {
                written += raised.isEmpty() ? 1 : 0;
                QVERIFY2(raised.isEmpty() || raised.contains(u"the disk is full. Free"_s), qPrintable(raised));
            }
        }
        QVERIFY2(written > 0 && written < 32, "some with room enough, some without");
    }

    void opensAnew()
    {
        for (const auto& [journal, saves] :
             {std::pair(u"DELETE"_s, false), {u"DELETE"_s, true}, {u"WAL"_s, false}, {u"WAL"_s, true}}) {
            init();
            MakeTable(mFile, journal);
            Writer writer(mFile);
            QString raised;
            SetModes(0444, 0777);
            if (!RunAsOrdinaryUser([&] {
                    raised = QString::number(writer.Answer(u"SELECT count(*) FROM t"_s));
                    if (!saves)
                        raised = writer.Add(1);
                }))
                QSKIP("cannot become an ordinary user");
            QVERIFY2(raised.contains(saves ? u"0"_s : u"cannot be written"_s), qPrintable(raised));
            SetModes(0666, 0777);
            RunAsOrdinaryUser([&] { raised = saves ? writer.Save(1) : writer.Add(1); });
            QCOMPARE(raised, QString());
        }
    }

    void fileGoesWhileOpen_data()
    {
        QTest::addColumn<int>("bits");
        for (int bits = 0; bits < 16; ++bits)
            QTest::addRow("%d", bits) << bits;
    }

    /// What was committed is in the old file, nothing of it in the new one, and what comes next is in the new one.
    void fileGoesWhileOpen()
    {
        QFETCH(int, bits);
        const bool isReplaced = bits & 1;
        const bool isKept = bits & 2; // under another name
        const bool isSaving = bits & 4;
        const QString newFile = Path(u"new"_s);
        const QString oldFile = Path(u"old"_s);
        MakeTable(mFile, bits & 8 ? u"WAL"_s : u"DELETE"_s);
        MakeTable(newFile, u"WAL"_s,
                  u"INSERT INTO t WITH RECURSIVE s(n) AS (SELECT 100 UNION ALL SELECT n + 1 FROM s WHERE n < 999) "
                  "SELECT n FROM s"_s);
        Writer writer(mFile);
        QCOMPARE(writer.Save(1), QString());
        const QString raised = RaisedBy([&] {
            std::optional<DeferredSync> sync;
            if (isSaving)
                sync.emplace(writer.connection);
            writer.Add(2);
            isKept ? QFile::rename(mFile, oldFile) : QFile::remove(mFile);
            if (isReplaced)
                QFile::rename(newFile, mFile);
            if (!isSaving)
                sync.emplace(writer.connection);
            sync->Finish();
        });
        QVERIFY2(raised.contains(isReplaced ? u"was replaced"_s : u"was moved or removed"_s) &&
                     raised.contains(isSaving ? u"went into the old file"_s : u"Nothing was saved"_s),
                 qPrintable(raised));
        if (!isReplaced) {
            QVERIFY(writer.Save(3).contains(u"does not exist"_s));
            QFile::rename(newFile, mFile);
        }
        QVERIFY(Rows(mFile).startsWith(u"ok 100,"_s) && Rows(mFile).endsWith(u",999"_s));
        QCOMPARE(writer.Save(3), QString());
        QVERIFY(Rows(mFile).endsWith(u",999,3"_s));
        QCOMPARE(Rows(oldFile), isKept ? u"ok 1,2"_s : QString());
    }

    void folderIsSynced()
    {
        for (const QString& journal : {u"DELETE"_s, u"WAL"_s}) {
            init();
            MakeTable(mFile, journal);
            SetModes(0666, 0333);
            folderSyncs = 0;
            RunAsOrdinaryUser([&] {
                Writer writer(mFile);
                QCOMPARE(writer.Save(1), QString());
            });
            QCOMPARE(folderSyncs, 0); // it cannot be read
            SetModes(0666, 0777);
            Writer writer(mFile);
            for (int i = 2; i < 4; ++i)
                QCOMPARE(writer.Save(i), QString());
            QCOMPARE(folderSyncs, journal == u"WAL"_s ? 1 : 2); // the log's name stays
        }
    }

    void savesOneAtATime()
    {
        MakeTable(mFile, u"WAL"_s);
        QFile::link(mFile, Path(u"link"_s));
        SetModes(0666, 0700);
        const mode_t mask = umask(077);
        const auto guard = qScopeGuard([&] { umask(mask); });
        Writer one(mFile);
        Writer two(Path(u"link"_s));
        two.connection.SetLockTimeout(20);
        const auto lock = [&](qint64 section) { return RaisedBy([&] { SavingLock(two.connection, section); }); };
        {
            const SavingLock held(one.connection, 7);
            QCOMPARE(lock(8), QString());
            QVERIFY(lock(7).startsWith(u"3006: Another program is saving"_s));
        }
        QCOMPARE(lock(7), QString());
        struct stat status;
        QVERIFY(stat(QFile::encodeName(mFile + u"-saving"_s), &status) == 0 && (status.st_mode & 0777) == 0666);

        QFile::remove(mFile + u"-saving"_s);
        QFile::link(Path(u"none"_s), mFile + u"-saving"_s);
        const SavingLock unlocked(one.connection, 7);
        QVERIFY(!QFile::exists(Path(u"none"_s)));
        QCOMPARE(lock(7), QString());
    }

    // A server that answers in time keeps its connection, and one that is halted does not keep the program.
    void answersThatDoNotCome()
    {
        std::array<int, 2> sockets{};
        QCOMPARE(socketpair(AF_UNIX, SOCK_STREAM, 0, sockets.data()), 0);
        const auto guard = qScopeGuard([&] { std::ranges::for_each(sockets, close); });
        AnswerWatch watch(sockets[0], std::chrono::seconds(1));
        const auto waitFor = [&](int milliseconds) {
            const AnswerWatch::Wait wait(&watch);
            pollfd answer{sockets[0], POLLIN, 0};
            return poll(&answer, 1, milliseconds);
        };
        QCOMPARE(waitFor(100), 0);
        QVERIFY(!watch.HasGivenUp());
        QCOMPARE(waitFor(30'000), 1);
        QVERIFY(watch.HasGivenUp());
    }
};

QTEST_GUILESS_MAIN(DataTest)
#include "DataTest.moc"
