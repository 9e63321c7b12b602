// A configuration database on a server: what link files may say, what a server refuses or cannot hold, saves at once.
// Run by scripts/with-server.
#include "rules/MessageNodes.h"
#include "support/OrdinaryUser.h"
#include "support/ServerNode.h"
#include "support/Tool.h"

#include <future>

using namespace qor;

namespace {

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
        QCOMPARE(DirDb({u"copy"_s, mSample->FileName(), copy}).exitCode, 0);
        const QString number = u"SELECT SequenceNo FROM Detail_DIR WHERE ConfigID = 9 ORDER BY "_s;
        QCOMPARE(Query(copy, number + u"rowid"_s), Query(copy, number + u"SequenceNo"_s));
    }
};

QTEST_GUILESS_MAIN(SharedTest)
#include "SharedTest.moc"
