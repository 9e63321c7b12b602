// The database as the floors above rely on it: its driver, commands and recordsets, locks, answers that do not come.
#include "platform/data/AnswerWatch.h"
#include "platform/data/SavingLock.h"
#include "support/TableFile.h"

#include <poll.h>
#include <sys/socket.h>

using namespace qor;

class DataTest : public TableFileTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { StartAnew(); }

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
