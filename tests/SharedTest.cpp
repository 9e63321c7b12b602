// A configuration database on a server: what link files may say, what a server refuses or cannot hold, servers that go
// away, saves at once. Run by scripts/with-server.
#include "platform/data/DeferredSync.h"
#include "rules/MessageNodes.h"
#include "rules/NodeLoading.h"
#include "rules/NodeSaving.h"
#include "store/DataBase.h"
#include "support/Cases.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/SampleDatabase.h"
#include "support/Tool.h"

#include <csignal>
#include <future>
#include <QElapsedTimer>
#include <QRandomGenerator>

using namespace qor;

namespace {

constexpr NodeIdentity node7{{1, 1}, 7};
constexpr int highestNode = 250;

/// The server's pg_ctl.
Outcome Control(const QStringList& arguments)
{
    return RunProgram(qEnvironmentVariable("QOR_SERVER") + u"/control"_s, arguments);
}

/// To all its processes at once.
void SignalServer(int signal)
{
    const QByteArray server = ReadFile(qEnvironmentVariable("QOR_SERVER") + u"/data/postmaster.pid"_s).split('\n')[0];
    const QByteArray others = ReadFile(u"/proc/%1/task/%1/children"_s.arg(QString::fromLatin1(server)));
    for (const QByteArray& process : (server + ' ' + others).simplified().split(' '))
        kill(process.toInt(), signal);
}

/// So that nothing is written any more.
void KillServer()
{
    const QString folder = qEnvironmentVariable("QOR_SERVER");
    SignalServer(SIGKILL);
    // Where nobody waits for their ends their numbers stay in use.
    for (const QString& lock : {u"/data/postmaster.pid"_s, u"/.s.PGSQL.5432.lock"_s})
        QFile::remove(folder + lock);
}

DirectoryNode NodeWith(int entryCount, const QString& lastName = u"Smith"_s, const QString& prompt = u"1"_s)
{
    DirectoryNode node{node7, {u"Staff"_s, {}, false, u"1"_s}, {}};
    for (int i = 1; i <= entryCount; ++i)
        node.entries.push_back({lastName, u"Anne"_s, QString::number(i), prompt, u"1"_s});
    return node;
}

DirectoryNode StoredNode()
{
    DataBase dataBase;
    return LoadNode(dataBase, node7, highestNode).value();
}

/// What it raises in a session of its own.
QString SavingRaises(const DirectoryNode& node)
{
    DataBase dataBase;
    return RaisedBy([&] { SaveNode(dataBase, node); });
}

/// What a database file holds, in its order, down to the statements that made its tables.
QStringList Dump(const QString& fileName)
{
    QStringList rows = Query(fileName, u"SELECT sql FROM sqlite_master WHERE type = 'table' ORDER BY name"_s);
    for (const QString& table : Query(fileName, u"SELECT name FROM sqlite_master WHERE type = 'table'"_s)) {
        const QStringList columns =
            Query(fileName, u"SELECT 'quote(' || name || ')' FROM pragma_table_info('%1')"_s.arg(table));
        rows += Query(fileName, u"SELECT %1 FROM %2 ORDER BY rowid"_s.arg(columns.join(u" || ',' || "_s), table));
    }
    return rows;
}

} // namespace

class SharedTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;
    QTemporaryDir mFolder;
    const QByteArray mServices = ReadFile(qEnvironmentVariable("PGSERVICEFILE"));

    /// Nothing, or one clear sentence about this database, without a password; behind it what became of a save.
    void CompareTold(QString told, const QString& expected, int line = __builtin_LINE()) const
    {
        told.replace(mSample->FileName(), u"FILE"_s);
        const bool isClear = told.isEmpty() || (told.contains(u"FILE"_s) && !told.contains(u"secret"_s) &&
                                                !told.section(u"\r\n"_s, 0, 0).contains(u'\n'));
        QVERIFY2(isClear && Matches(told, expected), qPrintable(u"line %1: "_s.arg(line) + told));
    }
    void WriteServices(const QString& settings) const
    {
        WriteFile(mFolder.filePath(u"services"_s), QByteArray(mServices).replace("]", "]\n" + settings.toUtf8()));
    }
    void Sql(const QString& statement) const
    {
        const Outcome outcome = RunProgram(u"psql"_s, {u"-Xqc"_s, statement, u"service=private"_s});
        QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (!SampleDatabase::IsOnServer())
            QSKIP("scripts/with-server runs this.");
        Sql(u"CREATE DATABASE western ENCODING 'LATIN1' TEMPLATE template0"_s);
        Sql(u"CREATE DATABASE empty"_s);
        Sql(u"CREATE ROLE stranger LOGIN"_s);
        qputenv("PGSERVICEFILE", QFile::encodeName(mFolder.filePath(u"services"_s)));
        // For whoever is somebody else below.
        QVERIFY(QFile::setPermissions(mFolder.path(), QFile::Permissions(0x7755)));
    }

    void init()
    {
        WriteServices({});
        mSample = std::make_unique<SampleDatabase>();
    }

    void links_data()
    {
        const QString link = u"Provider=PostgreSQL;Service=private"_s;
        const QString improper = u"*is no proper link*"_s;
        AddCases({
            {"as written", link, {}},
            {"ended by CR LF", link + u"\r\n"_s, {}},
            {"a service that nobody knows", u"Provider=PostgreSQL;Service=other"_s, u"*names a service that is not*"_s},
            {"a password", link + u";Password=secret"_s, improper},
            {"another key", u"Provider=PostgreSQL;Host=localhost"_s, improper},
            {"a blank", u"Provider=PostgreSQL;Service=a b"_s, improper},
            {"no name", u"Provider=PostgreSQL;Service="_s, improper},
            {"two lines", link + u'\n' + link, improper},
            {"too long", link + QString(512, u'\n'), u"*is not a configuration database*"_s},
            {"nothing", {}, u"*is empty*"_s},
        });
    }

    void links()
    {
        QFETCH(const QString, given);
        QFETCH(const QString, expected);
        WriteFile(mSample->FileName(), given.toUtf8());
        CompareTold(SavingRaises(NodeWith(1)), expected);
    }

    void linksOutOfReach()
    {
        QVERIFY(QFile::setPermissions(mSample->FileName(), {}));
        QVERIFY(QFile::setPermissions(qEnvironmentVariable("KELDAR_COMMON_APPDATA"), QFile::Permissions(0x7755)));
        QVERIFY(RunAsOrdinaryUser([&] { CompareTold(SavingRaises(NodeWith(1)), u"*cannot be opened*"_s); }));
        QVERIFY(QFile::remove(mSample->FileName()) && QDir().mkpath(mSample->FileName()));
        CompareTold(SavingRaises(NodeWith(1)), u"*is not a file*"_s);
    }

    // What the service file says of the service.
    void services_data()
    {
        AddCases({
            {"no such database", u"dbname=nowhere"_s, u"*does not exist on its server*"_s},
            {"another encoding", u"dbname=western"_s, u"*has the encoding LATIN1*"_s},
            {"no tables", u"dbname=empty"_s, u"*lacks a table*"_s},
            {"nobody there", u"host=/nowhere"_s, u"*cannot be reached*"_s},
            {"nobody known", u"user=nobody"_s, u"*does not admit the user*"_s},
            {"no rights", u"user=stranger"_s, u"*does not allow that*"_s},
            {"only for reading", u"options=-c default_transaction_read_only=on"_s, u"*can only be read*"_s},
        });
    }

    void services()
    {
        QFETCH(const QString, given);
        QFETCH(const QString, expected);
        mSample->Run(u"GRANT USAGE ON SCHEMA public TO stranger"_s);
        WriteServices(u"password=secret\n"_s + given);
        CompareTold(SavingRaises(NodeWith(1)), expected);
        WriteServices({});
        QCOMPARE(StoredNode().entries.size(), std::size_t{40});
    }

    void textsThatAreNoNumbers()
    {
        for (const auto& [prompt, stored] : {std::pair(u"12x"_s, u"Null"_s),
                                             {u""_s, u"Null"_s},
                                             {u"12.0"_s, u"*"_s},
                                             {u"99999999999"_s, u"Null"_s},
                                             {u" 16 "_s, u"16"_s},
                                             {u"016"_s, u"16"_s}}) {
            CompareTold(SavingRaises(NodeWith(1, u"A"_s, prompt)), {});
            QVERIFY2(Matches(mSample->Entries(7).join(u';'), u"A|Anne|1|%1|1"_s.arg(stored)), qPrintable(prompt));
        }
        QCOMPARE(StoredNode().entries.front().prompt, u"16"_s);
        mSample->Run(u"UPDATE Detail_DIR SET NamePrompt = NULL"_s);
        QCOMPARE(StoredNode().entries.front().prompt, u"1"_s);
        CompareTold(SavingRaises(NodeWith(1, QString(1, QChar(u'\0')))), u"*cannot store*DIR 7 is stored as it was."_s);
    }

    // The next save makes the list whole.
    void cutOffWhileSaving()
    {
        mSample->Run(u"CREATE FUNCTION cut() RETURNS trigger LANGUAGE plpgsql AS $$BEGIN PERFORM "
                     "pg_terminate_backend(pg_backend_pid()); RETURN NEW; END$$; CREATE TRIGGER cut BEFORE INSERT ON "
                     "Detail_DIR FOR EACH ROW WHEN (NEW.SequenceNo = 3) EXECUTE FUNCTION cut()"_s);
        DataBase dataBase;
        const DirectoryNode node = NodeWith(5);
        CompareTold(RaisedBy([&] { SaveNode(dataBase, node); }), u"*was lost*not known."_s);
        mSample->Run(u"DROP FUNCTION cut CASCADE"_s);
        SaveNode(dataBase, node);
        QVERIFY(StoredNode().entries == node.entries);
    }

    // Another session could not answer for the commits of this one.
    void cutOffBeforeTheFlush()
    {
        DataBase dataBase;
        DeferredSync sync(dataBase.Conn);
        dataBase.Execute(CommandId::Delete_DIR_DetailsNode, {u"1"_s, u"1"_s, u"7"_s});
        mSample->Run(u"SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE pid <> pg_backend_pid() AND "
                     "backend_type = 'client backend'"_s);
        CompareTold(RaisedBy([&] { sync.Finish(); }), u"*was lost*"_s);
    }

    void serverThatGoesAway()
    {
        DataBase dataBase;
        const auto entries = LoadNode(dataBase, node7, highestNode)->entries;
        for (const QString& mode : {u"fast"_s, u"immediate"_s}) {
            QCOMPARE(Control({u"restart"_s, u"-m"_s, mode}).exitCode, 0);
            QVERIFY(LoadNode(dataBase, node7, highestNode)->entries == entries);
        }
        QCOMPARE(Control({u"stop"_s, u"-m"_s, u"immediate"_s}).exitCode, 0);
        QElapsedTimer timer;
        timer.start();
        CompareTold(RaisedBy([&] { LoadNode(dataBase, node7, highestNode); }), u"*cannot be reached*"_s);
        CompareTold(RaisedBy([&] { SaveNode(dataBase, NodeWith(5)); }), u"*DIR 7 is stored as it was."_s);
        QVERIFY(timer.elapsed() < 5'000);
        QCOMPARE(Control({u"start"_s}).exitCode, 0);
        QVERIFY(LoadNode(dataBase, node7, highestNode)->entries == entries);
        SaveNode(dataBase, NodeWith(5));
    }

    // It is halted: its connections stay, and nothing comes over them.
    void serverThatIsSilent()
    {
        DataBase dataBase;
        LoadNode(dataBase, node7, highestNode);
        SignalServer(SIGSTOP);
        std::promise<void> end;
        const auto rescue = std::async(std::launch::async, [isOver = end.get_future()] { // or this would never end
            isOver.wait_for(std::chrono::seconds(45));
            SignalServer(SIGCONT);
        });
        const QString told = RaisedBy([&] { LoadNode(dataBase, node7, highestNode); });
        end.set_value();
        rescue.wait();
        CompareTold(told, u"*was lost*no answer for 35 seconds*"_s);
        QCOMPARE(LoadNode(dataBase, node7, highestNode)->entries.size(), std::size_t{40});
    }

    // Another station makes the node while the question is open.
    void promptTakenMeanwhile()
    {
        DataBase dataBase;
        QStringList made;
        MakeMissingMessageNodes(
            dataBase, node7.partition, NodeWith(1, u"Smith"_s, u"13"_s).entries,
            {.checked = {.contains = [](const QString&) { return false; }, .add = [](const QString&) {}},
             .ask =
                 [&](const QString&) {
                     mSample->Run(u"INSERT INTO Node_General_Pool VALUES (1, 1, 0, 13, 'MSG', 'Other', '')"_s);
                     return ConfirmationAnswer::Yes;
                 },
             .made = [&](const QString& prompt) { made << prompt; },
             .taken = [](std::size_t) { return u"27"_s; }});
        QCOMPARE(made, QStringList{u"27"_s});
        QCOMPARE(mSample->Run(u"SELECT NodeNumber FROM Node_MSG WHERE NodeDescription = 'Anne Smith'"_s), made);
    }

    // Nobody waits for its answer where none is wanted.
    void frozenWhenTheConnectionGoes()
    {
        auto dataBase = std::make_unique<DataBase>();
        LoadNode(*dataBase, node7, highestNode);
        const QString youngest = u"SELECT pid FROM pg_stat_activity WHERE backend_type = 'client backend' ORDER BY "
                                 "backend_start DESC LIMIT 1"_s;
        const pid_t backend = mSample->Run(youngest).value(0).toInt();
        QVERIFY(backend > 0 && kill(backend, SIGSTOP) == 0);
        auto end = std::async(std::launch::async, [&] { dataBase.reset(); });
        const auto status = end.wait_for(std::chrono::seconds(5));
        kill(backend, SIGCONT);
        QCOMPARE(status, std::future_status::ready);
    }

    // One of two is first; the other one has not seen what it saved and leaves it alone.
    void savesAtOnce()
    {
        const QString misc = mFolder.path() + u'/';
        for (int pair = 0; pair < 20; ++pair) {
            const auto before = StoredNode();
            const auto save = [&](const QString& name) {
                return std::async(std::launch::async, [&, name] {
                    DataBase dataBase;
                    const KnownNode known{.stored = before, .attempted = {}, .isDeleted = false};
                    return SaveNodeKeepingVersion(dataBase, NodeWith(50, name), known, misc, highestNode).isOvertaken;
                });
            };
            auto first = save(u"First%1"_s.arg(pair));
            auto second = save(u"Second%1"_s.arg(pair));
            const bool isFirstLate = first.get();
            QCOMPARE(second.get(), !isFirstLate);
            QVERIFY(StoredNode().entries ==
                    NodeWith(50, (isFirstLate ? u"Second%1"_s : u"First%1"_s).arg(pair)).entries);
        }
    }

    void thereAndBack()
    {
        const QString file = mFolder.filePath(u"file"_s);
        const QString back = mFolder.filePath(u"back"_s);
        for (const QStringList& arguments : {QStringList{u"sample"_s, file}, {u"copy"_s, mSample->FileName(), back}}) {
            const Outcome outcome = DirDb(arguments);
            QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
        }
        QCOMPARE(Dump(back), Dump(file));
        const Outcome again = DirDb({u"copy"_s, file, mSample->FileName()});
        QCOMPARE(again.exitCode, 1);
        CompareTold(again.errors.trimmed(), u"*"_s);
    }

    // Where somebody has begun to read a large table the server goes on.
    void copiedInOrder()
    {
        const QString copy = mFolder.filePath(u"ordered"_s);
        mSample.reset();
        QCOMPARE(Control({u"restart"_s, u"-m"_s, u"fast"_s, u"-o"_s, u"-c shared_buffers=128kB"_s}).exitCode, 0);
        init();
        mSample->Run(
            u"INSERT INTO Detail_DIR SELECT 9, 9, 9, i, 'A', 'B', '1', 1, '1' FROM generate_series(1, 9999) AS i"_s);
        mSample->Run(u"SELECT 1 FROM Detail_DIR LIMIT 9000"_s);
        QCOMPARE(RunProgram(QStringLiteral(DIR_DB), {u"copy"_s, mSample->FileName(), copy}).exitCode, 0);
        const QString number = u"SELECT SequenceNo FROM Detail_DIR WHERE ConfigID = 9 ORDER BY "_s;
        QCOMPARE(Query(copy, number + u"rowid"_s), Query(copy, number + u"SequenceNo"_s));
    }

    // What was reported saved is there, else the list as it was or a beginning of the new one. QOR_SERVER_SEED gives
    // the moments.
    void killedAtAnyMoment()
    {
        QRandomGenerator moments(Seed("QOR_SERVER_SEED"));
        for (int round = 0; round < 20; ++round) {
            const auto before = StoredNode().entries;
            const DirectoryNode node = NodeWith(500, QString(round + 1, u'A'));
            auto save = std::async(std::launch::async, SavingRaises, node);
            save.wait_for(std::chrono::milliseconds(moments.bounded(200)));
            KillServer();
            const bool isReported = save.get().isEmpty();
            QVERIFY(QTest::qWaitFor([] { return Control({u"start"_s}).exitCode == 0; }));
            const auto entries = StoredNode().entries;
            const bool isBeginning = std::equal(entries.begin(), entries.end(), node.entries.begin(),
                                                node.entries.begin() + std::min(entries.size(), node.entries.size()));
            QVERIFY2(isReported ? entries == node.entries : isBeginning || entries == before,
                     qPrintable(u"round %1: %2 entries"_s.arg(round).arg(entries.size())));
        }
    }
};

QTEST_GUILESS_MAIN(SharedTest)
#include "SharedTest.moc"
