// The files of dir-db: those that it makes, copies and restores, what is left when it is ended, and folders in which it
// may not write.

#include "ReadAccess.h"
#include "support/Cases.h"
#include "support/OrdinaryUser.h"
#include "support/SampleDatabase.h"
#include "support/Tool.h"

#include <fcntl.h>
#include <sys/file.h>

using namespace qor;

namespace {

/// Permissions stop whoever has no privileges, and root has them all.
Outcome DirDbWithoutPrivileges(const QStringList& arguments)
{
    const QString script = u"exec setpriv --bounding-set -all --inh-caps -all \"$@\""_s;
    return DirDb(arguments, geteuid() == 0 ? script : u"exec \"$@\""_s);
}

bool IsForOwner(const QString& fileName)
{
    const auto others = QFileDevice::Permissions(0x0077);
    return !(QFileInfo(fileName).permissions() & others);
}

const QString lastLabel = u"SELECT DISTINCT NodeDescription FROM Node_DIR"_s;

} // namespace

class DirDbFilesTest : public FileTest
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;

    /// A file of the changed sample and its log, in which the change is, as a program that is killed leaves them.
    QString LeftBehind() const
    {
        mSample->Run(u"UPDATE Node_DIR SET NodeDescription = 'Last'"_s);
        QString fileName = Path(u"left"_s);
        for (const QString& suffix : {u""_s, u"-wal"_s})
            RunProgram(u"/bin/cp"_s, {mSample->FileName() + suffix, fileName + suffix});
        return fileName;
    }

private Q_SLOTS:
    void init()
    {
        mSample = std::make_unique<SampleDatabase>();
        StartAnew();
    }

    void createMakesAnEmptyDatabase()
    {
        const QString fileName = Path(u"a#b?c%20 %1 ü.mdb"_s);
        QCOMPARE(DirDb({u"create"_s, fileName}).exitCode, 0);
        QVERIFY(IsForOwner(fileName));
        QCOMPARE(DirDb({u"check"_s, fileName}).output, fileName + u": sound (0 directory nodes, 0 entries)\n"_s);
        Query(fileName, u"ALTER TABLE Node_DIR ADD COLUMN Colour TEXT"_s);
        Query(fileName, u"CREATE TABLE Node_Other (Number INTEGER)"_s);
        QCOMPARE(DirDb({u"check"_s, fileName}).exitCode, 0);
    }

    void refusesToMake()
    {
        WriteFile(Path(u"taken"_s), "precious");
        WriteFile(Path(u"logged-wal"_s), "old");
        QVERIFY(QFile::link(u"nowhere"_s, Path(u"link"_s)));
        const QStringList before = EntriesOf(mFolder->path());
        for (const auto& [name, said] : {std::pair(u"taken"_s, u"exists already"_s),
                                         {u"link"_s, u"exists already"_s},
                                         {u"logged"_s, u"logged-wal is left over"_s},
                                         {u"missing/new"_s, u"choose a folder"_s}}) {
            const Outcome outcome = DirDb({u"create"_s, Path(name)});
            QCOMPARE(outcome.exitCode, 1);
            QVERIFY2(outcome.errors.contains(Path(name)) && outcome.errors.contains(said), qPrintable(outcome.errors));
        }
        QCOMPARE(EntriesOf(mFolder->path()), before);
        QCOMPARE(ReadFile(Path(u"taken"_s)), QByteArray("precious"));
    }

    void tellsWhenTheDiskIsFull()
    {
        const QString fileName = Path(u"new.mdb"_s);
        for (const QStringList& command : {QStringList{u"sample"_s}, {u"backup"_s, mSample->FileName()}}) {
            const Outcome made = DirDb(command + QStringList{fileName}, u"ulimit -f 100; exec \"$@\""_s);
            QVERIFY2(made.exitCode == 1 && made.errors.contains(fileName), qPrintable(made.errors));
            QCOMPARE(EntriesOf(mFolder->path()), QStringList());
        }

        const Outcome shown = DirDb({u"show"_s, mSample->FileName()}, u"exec \"$@\" >/dev/full"_s);
        QVERIFY2(shown.exitCode == 1 && shown.errors.contains(u"cannot be written"), qPrintable(shown.errors));
    }

    void backsUp()
    {
        const QString left = LeftBehind();
        const QByteArray before = ReadFile(left) + ReadFile(left + u"-wal"_s);
        const QStringList backup{u"backup"_s, mSample->FileName(), Path(u"copy"_s)};
        for (const QString& source : {backup[1], left}) { // one that is open here, one that is not
            QCOMPARE(DirDb({u"backup"_s, source, backup[2]}, u"umask 000; exec \"$@\""_s).exitCode, 0);
            QVERIFY(IsForOwner(backup[2]));
            QCOMPARE(Query(backup[2], lastLabel), QStringList{u"Last"_s});
            const Outcome again = DirDb(backup);
            QVERIFY2(again.exitCode == 1 && again.errors.contains(u"exists already"), qPrintable(again.errors));
            QVERIFY(QFile::remove(backup[2]));
        }
        QCOMPARE(ReadFile(left) + ReadFile(left + u"-wal"_s), before);

        const QStringList names = EntriesOf(mFolder->path());
        QFile saving(backup[1] + u"-saving"_s);
        QVERIFY(saving.open(QIODevice::ReadWrite));
        struct flock lock = {};
        lock.l_type = F_WRLCK;
        lock.l_start = 4711; // of some node
        lock.l_len = 1;
        QCOMPARE(fcntl(saving.handle(), F_OFD_SETLK, &lock), 0);
        const Outcome waiting = DirDb(
            backup, u"exec script -qec \"timeout --foreground 1.5 '$1' '$2' '$3' '$4'\" /dev/null"_s); // in a terminal
        QCOMPARE(waiting.exitCode, 124); // it still waited for the save when it was ended
        QVERIFY2(waiting.output.contains(u"\rWaiting for the end of a save (1 s) "), qPrintable(waiting.output));
        QCOMPARE(EntriesOf(mFolder->path()), names);
        saving.close();
        QCOMPARE(DirDb(backup).exitCode, 0);
    }

    void restores()
    {
        const QString copy = Path(u"copy"_s);
        QCOMPARE(DirDb({u"backup"_s, mSample->FileName(), copy}).exitCode, 0);
        WriteFile(Path(u"damaged"_s), ReadFile(copy).replace(16 * 4096 + 100, 99, QByteArray(99, 'x')));
        const QString left = LeftBehind();
        const auto permissions = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup;
        QVERIFY(QFile::setPermissions(left, permissions));
        const QByteArray log = ReadFile(left + u"-wal"_s);
        const QByteArray before = ReadFile(left) + log;
        const QStringList names = EntriesOf(mFolder->path());
        for (const auto& [from, to, said] : {std::tuple(Path(u"damaged"_s), left, u"The file is damaged"_s),
                                             {copy, mSample->FileName(), u"is open in another program"_s},
                                             {copy, mFolder->path(), u"something other than a file"_s},
                                             {left, left, u"the copy itself"_s}}) {
            const Outcome outcome = DirDb({u"restore"_s, from, to});
            QVERIFY2(outcome.exitCode == 1 && outcome.errors.contains(said), qPrintable(outcome.errors));
        }
        QCOMPARE(mSample->Run(lastLabel), QStringList{u"Last"_s});
        QCOMPARE(EntriesOf(mFolder->path()), names);
        QCOMPARE(ReadFile(left) + ReadFile(left + u"-wal"_s), before);

        // As a restore that was killed leaves it; what follows counts the names.
        QCOMPARE(link(QFile::encodeName(left), QFile::encodeName(left + u".before-restore"_s)), 0);
        QCOMPARE(DirDb({u"restore"_s, copy, left}).exitCode, 0);
        QVERIFY(QFileInfo(left).permissions().testFlags(permissions) && IsForOwner(left + u".before-restore"_s));
        QCOMPARE(Query(left + u".before-restore"_s, lastLabel), QStringList{u"Last"_s});
        QCOMPARE(Query(left, u"PRAGMA journal_mode"_s), QStringList{u"wal"_s});
        const auto shown = [](const QString& name) { return DirDb({u"show"_s, u"--passwords"_s, name}).output; };
        QCOMPARE(shown(left), shown(copy));

        WriteFile(left, "damaged"); // what is beside it is kept as it is, under the next name
        WriteFile(left + u"-wal"_s, log);
        QCOMPARE(DirDb({u"restore"_s, copy, left}).exitCode, 0);
        QCOMPARE(shown(left), shown(copy));
        QCOMPARE(ReadFile(left + u".before-restore-2"_s) + ReadFile(left + u".before-restore-2-wal"_s),
                 "damaged" + log);
    }

    // At chance moments, by a signal that the program hears and by one that it does not; QOR_KILLS says how many.
    void leavesNothingWhenItIsEnded()
    {
        QRandomGenerator moments(Seed("QOR_TOOL_SEED"));
        const QString folder = Path(u"work"_s);
        const QString made = folder + u"/made"_s;
        const QString old = folder + u"/old"_s;
        const QList<QStringList> commands{{u"sample"_s, made},
                                          {u"import-jet"_s, QStringLiteral(JET_FILE), u"made"_s},
                                          {u"backup"_s, mSample->FileName(), made},
                                          {u"copy"_s, mSample->FileName(), made},
                                          {u"restore"_s, Path(u"copy"_s), old}};
        QCOMPARE(DirDb({u"backup"_s, mSample->FileName(), Path(u"copy"_s)}).exitCode, 0);
        QVERIFY(QDir(Path({})).mkdir(u"work"_s) && QFile::copy(Path(u"copy"_s), old));
        for (int end = 0; end < qMax(60, qEnvironmentVariableIntValue("QOR_KILLS")); ++end) {
            QProcess process;
            process.setWorkingDirectory(folder);
            process.start(QStringLiteral(DIR_DB), commands[end % commands.size()]);
            QVERIFY(process.waitForStarted());
            usleep(moments.bounded(30'000U));
            const bool isHeard = end % 2 == 0;
            isHeard ? process.terminate() : process.kill();
            QVERIFY(process.waitForFinished());
            const auto isTidy = [&] { return EntriesOf(folder).filter(u".dir-db-"_s).isEmpty(); };
            QVERIFY(isHeard ? isTidy() : QTest::qWaitFor(isTidy));
            for (const QString& file : {made, old}) {
                if (QFile::exists(file))
                    QCOMPARE(Query(file, u"SELECT count(*) > 500 FROM Detail_DIR"_s), QStringList{u"1"_s});
            }
            QVERIFY(!QFile::exists(made) || QFile::remove(made));
        }
    }

    /// What a crash of the machine left goes with the next file that is made there; what belongs to somebody stays.
    void removesWhatACrashLeft()
    {
        const QString folder = Path(u".dir-db-%1"_s);
        for (const auto& [name, file] : {std::pair(u"left"_s, u"/database"_s),
                                         {u"left"_s, u"/database-wal"_s},
                                         {u"busy"_s, u"/database"_s},
                                         {u"else"_s, u"/notes"_s}}) {
            QDir().mkpath(folder.arg(name));
            WriteFile(folder.arg(name) + file, "Smith");
        }
        const int lock = open(QFile::encodeName(folder.arg(u"busy"_s)), O_RDONLY | O_CLOEXEC);
        QCOMPARE(flock(lock, LOCK_EX), 0);
        QCOMPARE(DirDb({u"create"_s, Path(u"new"_s)}).exitCode, 0);
        close(lock);
        QCOMPARE(EntriesOf(mFolder->path()), QStringList({u".dir-db-busy"_s, u".dir-db-else"_s, u"new"_s}));
    }

    void readsWhereNothingMayBeWritten()
    {
        const QString left = LeftBehind();
        RunProgram(u"/bin/cp"_s, {left, Path(u"alone"_s)});
        QFile writer(Path(u"alone"_s)); // of a program that began when it still might
        QVERIFY(writer.open(QIODevice::ReadWrite));
        RunProgram(u"/bin/chmod"_s, {u"a+rX,a-w"_s, u"-R"_s, mFolder->path()});
        const QStringList before = EntriesOf(mFolder->path());
        QList<Outcome> outcomes;
        for (const QString& name : {u"alone"_s, u"left"_s}) {
            for (const QString& command : {u"check"_s, u"show"_s})
                outcomes << DirDbWithoutPrivileges({command, Path(name)});
        }
        QString raised;
        QVERIFY(RunAsOrdinaryUser([&] {
            Connection connection;
            const ReadAccess access(connection, writer.fileName());
            QVERIFY(writer.write("S") == 1 && writer.flush());
            raised = RaisedBy([&] { access.RequireUnchanged(); });
        }));
        QFile::setPermissions(mFolder->path(),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        QVERIFY2(raised.contains(u"was changed while it was read"), qPrintable(raised));
        QVERIFY2(outcomes[0].output.contains(u"alone: sound"), qPrintable(outcomes[0].errors));
        QVERIFY2(outcomes[1].output.startsWith(u"DIR"), qPrintable(outcomes[1].errors));
        for (const Outcome& outcome : {outcomes[2], outcomes[3]})
            QVERIFY2(outcome.exitCode == 1 && outcome.errors.contains(u"has a log beside"), qPrintable(outcome.errors));
        QCOMPARE(EntriesOf(mFolder->path()), before);
    }
};

QTEST_GUILESS_MAIN(DirDbFilesTest)
#include "DirDbFilesTest.moc"
