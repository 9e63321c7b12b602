// Servers that cut a session off, go away, fall silent or are killed while a node is read and saved. Run by
// scripts/with-server.
#include "platform/data/DeferredSync.h"
#include "support/ServerNode.h"
#include "support/Tool.h"

#include <algorithm>
#include <csignal>
#include <future>
#include <QElapsedTimer>

using namespace qor;

namespace {

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

} // namespace

class OutageTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<SampleDatabase> mSample;

private Q_SLOTS:
    void init()
    {
        if (!SampleDatabase::IsOnServer())
            QSKIP("scripts/with-server runs this.");
        mSample = std::make_unique<SampleDatabase>();
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

    // It is halted: its connections stay, and nothing comes over them.
    void serverThatIsSilent()
    {
        if (!qEnvironmentVariableIsSet("QOR_SLOW"))
            QSKIP("takes half a minute; QOR_SLOW=1 runs it");
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
            const auto differing = std::ranges::mismatch(entries, node.entries);
            const bool isBeginning = differing.in1 == entries.end();
            QVERIFY2(isReported ? entries == node.entries : isBeginning || entries == before,
                     qPrintable(u"round %1: %2 entries"_s.arg(round).arg(entries.size())));
        }
    }
};

QTEST_GUILESS_MAIN(OutageTest)
#include "OutageTest.moc"
