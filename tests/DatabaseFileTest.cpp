// The file of a database: one that is none, that cannot be written or grow, and what happens to it while it is open.
#include "platform/data/DatabaseFile.h"
#include "support/OrdinaryUser.h"
#include "support/TableFile.h"

#include <sys/mount.h>
#include <sys/syscall.h>

using namespace qor;

namespace {

int folderSyncs = 0;

} // namespace

/// In place of the system's, for the code in this program.
extern "C" int fsync(int fd)
{
    struct stat status;
    if (fstat(fd, &status) == 0 && S_ISDIR(status.st_mode))
        ++folderSyncs;
    return static_cast<int>(syscall(SYS_fsync, fd));
}

class DatabaseFileTest : public TableFileTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { StartAnew(); }
    void cleanup() { SetModes(0600, 0700); }

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
        for (const auto& mode :
             {std::pair(u"DELETE"_s, false), {u"DELETE"_s, true}, {u"WAL"_s, false}, {u"WAL"_s, true}}) {
            const bool saves = mode.second;
            init();
            MakeTable(mFile, mode.first);
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
        const bool isReplaced = (bits & 1) != 0;
        const bool isKept = (bits & 2) != 0; // under another name
        const bool isSaving = (bits & 4) != 0;
        const QString newFile = Path(u"new"_s);
        const QString oldFile = Path(u"old"_s);
        MakeTable(mFile, (bits & 8) != 0 ? u"WAL"_s : u"DELETE"_s);
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
};

QTEST_GUILESS_MAIN(DatabaseFileTest)
#include "DatabaseFileTest.moc"
