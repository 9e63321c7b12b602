// dir-db as people run it: what it makes, what it refuses and which faults its check finds.

#include "store/CommandCatalog.h"
#include "support/Cases.h"
#include "support/Tool.h"

#include <QTemporaryDir>

using namespace qor;

namespace {

const QString tool = QStringLiteral(DIR_DB);

Outcome DirDb(const QStringList& arguments)
{
    return RunProgram(tool, arguments);
}

/// With a shell's words before or behind it: "ulimit -f 32; exec \"$@\"".
Outcome DirDbInShell(const QString& script, const QStringList& arguments)
{
    return RunProgram(u"/bin/sh"_s, QStringList{u"-c"_s, script, u"sh"_s, tool} + arguments);
}

} // namespace

class DirDbTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void commandLine_data();
    void commandLine();
    void createMakesAnEmptyDatabase();
    void refusesToMake_data();
    void refusesToMake();
    void tellsWhenTheDiskIsFull();
    void everyCommandRunsOnItsKey_data();
    void everyCommandRunsOnItsKey();
    void checkChangesNothing();
    void checkFinds_data();
    void checkFinds();
    void checkWarns_data();
    void checkWarns();
    void shows_data();
    void shows();

private:
    QString Path(const QString& name) const { return mFolder->filePath(name); }
    /// A copy of the sample on which these statements have run.
    QString ChangedSample(const QString& statements) const;

    QTemporaryDir mSampleFolder;
    QString mSample;
    std::unique_ptr<QTemporaryDir> mFolder; ///< a fresh one for each row
};

void DirDbTest::initTestCase()
{
    mSample = mSampleFolder.filePath(u"sample.mdb"_s);
    const Outcome made = DirDb({u"sample"_s, mSample});
    QVERIFY2(made.exitCode == 0, qPrintable(made.errors));
}

void DirDbTest::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
}

QString DirDbTest::ChangedSample(const QString& statements) const
{
    QString fileName = Path(u"copy.mdb"_s);
    QFile::copy(mSample, fileName);
    for (const QString& statement : statements.split(u';', Qt::SkipEmptyParts))
        Query(fileName, statement);
    return fileName;
}

void DirDbTest::commandLine_data()
{
    AddCases({{"help", u"0|help"_s, u"sample FILE"_s},
              {"help on a command", u"0|check|-h"_s, u"check FILE"_s},
              {"nothing", u"2"_s, u"command is missing"_s},
              {"unknown", u"2|%1|x"_s, u"no command \"%1\""_s},
              {"no file", u"2|check"_s, u"takes 1, not 0"_s},
              {"two files", u"2|check|a|b"_s, u"takes 1, not 2"_s},
              {"empty name", u"2|create|"_s, u"must not be empty"_s},
              {"option of another", u"2|check|--csv|a"_s, u"no option \"--csv\""_s},
              {"two options in one", u"2|show|--csv] [--passwords|a"_s, u"no option"_s},
              {"no number", u"2|show|a|--config"_s, u"needs a number"_s},
              {"missing file", u"1|check|/proc/missing"_s, u"/proc/missing does not exist"_s},
              {"folder", u"1|check|/proc"_s, u"is not a file"_s}});
}

void DirDbTest::commandLine()
{
    QFETCH(QString, given);
    QFETCH(QString, expected);
    QStringList arguments = given.split(u'|');
    const int exitCode = arguments.takeFirst().toInt();
    const Outcome outcome = DirDb(arguments);
    QCOMPARE(outcome.exitCode, exitCode);
    const QString& spoken = exitCode == 0 ? outcome.output : outcome.errors;
    QVERIFY2(spoken.contains(expected), qPrintable(spoken));
    QCOMPARE(exitCode == 0 ? outcome.errors : outcome.output, QString());
}

void DirDbTest::createMakesAnEmptyDatabase()
{
    const QString fileName = Path(u"a#b?c%20 %1 ü.mdb"_s);
    QCOMPARE(DirDb({u"create"_s, fileName}).exitCode, 0);
    QCOMPARE(EntriesOf(mFolder->path()).size(), 1);
    const QFileDevice::Permissions ownersOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    QCOMPARE(QFileInfo(fileName).permissions() & ~(QFileDevice::ReadUser | QFileDevice::WriteUser), ownersOnly);
    QCOMPARE(Query(fileName, u"PRAGMA journal_mode"_s), QStringList{u"wal"_s});
    QCOMPARE(DirDb({u"check"_s, fileName}).output, fileName + u": sound (0 directory nodes, 0 entries)\n"_s);
    Query(fileName, u"ALTER TABLE Node_DIR ADD COLUMN Colour TEXT"_s);
    Query(fileName, u"CREATE TABLE Node_Other (Number INTEGER)"_s);
    QCOMPARE(DirDb({u"check"_s, fileName}).exitCode, 0);
}

void DirDbTest::refusesToMake_data()
{
    AddCases({{"a file that exists", u"taken"_s, u"exists already"_s},
              {"a link to nowhere", u"link"_s, u"exists already"_s},
              {"beside an old log", u"logged"_s, u"logged-wal is left over"_s},
              {"in a missing folder", u"missing/new"_s, u"No such file"_s},
              {"where nobody may write", u"/proc/new"_s, u"choose a folder"_s},
              {"a name too long", QString(300, u'a'), u"too long"_s}});
}

void DirDbTest::refusesToMake()
{
    QFETCH(QString, given);
    QFETCH(QString, expected);
    WriteFile(Path(u"taken"_s), "precious");
    WriteFile(Path(u"logged-wal"_s), "old");
    QVERIFY(QFile::link(u"nowhere"_s, Path(u"link"_s)));
    const QStringList before = EntriesOf(mFolder->path());
    const QString fileName = QDir(mFolder->path()).filePath(given);

    const Outcome outcome = DirDb({u"create"_s, fileName});
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.contains(fileName) && outcome.errors.contains(expected), qPrintable(outcome.errors));
    QCOMPARE(EntriesOf(mFolder->path()), before);
    QCOMPARE(ReadFile(Path(u"taken"_s)), QByteArray("precious"));
}

void DirDbTest::tellsWhenTheDiskIsFull()
{
    const QString fileName = Path(u"new.mdb"_s);
    const Outcome made = DirDbInShell(u"ulimit -f 32; exec \"$@\""_s, {u"sample"_s, fileName});
    QVERIFY2(made.exitCode == 1 && made.errors.contains(fileName), qPrintable(made.errors));
    QCOMPARE(EntriesOf(mFolder->path()), QStringList());

    const Outcome shown = DirDbInShell(u"exec \"$@\" >/dev/full"_s, {u"show"_s, mSample});
    QVERIFY2(shown.exitCode == 1 && shown.errors.contains(u"cannot be written"), qPrintable(shown.errors));
}

void DirDbTest::everyCommandRunsOnItsKey_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("values");
    QTest::addColumn<int>("rows");       ///< that it returns or changes
    QTest::addColumn<int>("keyColumns"); ///< by which it finds them
    const auto row = [](CommandId id, const QString& values, int rows, int keyColumns) {
        QTest::newRow(CatalogEntry(id).name) << static_cast<int>(id) << values << rows << keyColumns;
    };
    row(CommandId::Get_Specific_Node_Type_Max, u"1,1,0"_s, 1, 3);
    row(CommandId::Get_All_DIR_Nodes, u"1,1,16"_s, 5, 2);
    row(CommandId::Get_DIR_Node, u"1,1,7,16"_s, 1, 4);
    row(CommandId::Get_DIR_DetailsNode, u"1,1,12"_s, 500, 3);
    row(CommandId::Get_All_Existing_MSG_NodeNumber, u"1,1"_s, 55, 2);
    row(CommandId::Delete_DIR_DetailsNode, u"1,1,7"_s, 40, 3);
    row(CommandId::Update_DIR_Node, u"Label,1,1234,5,1,1,7"_s, 1, 3);
    row(CommandId::Update_Node_General_Pool, u"Label,now,1,1,16,7"_s, 1, 4);
    row(CommandId::Add_Detail_DIR, u"1,1,1,20,Anne,Smith,101,5,1"_s, 1, 0);
    row(CommandId::Duplicate_MSG_Node, u"13,P01M013.wav,Anne Smith,1,1,0"_s, 1, 3);
    row(CommandId::Get_Description, u"1,1,0,5"_s, 1, 4);
    row(CommandId::Duplicate_Node_In_General_Pool, u"13,Anne Smith,now,1,1,0,0"_s, 1, 4);
}

void DirDbTest::everyCommandRunsOnItsKey()
{
    QFETCH(int, id);
    QFETCH(QString, values);
    QFETCH(int, rows);
    QFETCH(int, keyColumns);
    const EngineStatement statement =
        TranslateStoredSql(QString::fromLatin1(CatalogEntry(static_cast<CommandId>(id)).sql));
    const int valueCount = static_cast<int>(statement.parameters.size());
    const QStringList parts = values.split(u',');
    Connection connection;
    connection.SetConnectionString(ConnectionStringFor(ChangedSample({})));
    const Recordset steps =
        Command(connection, u"the plan"_s, u"EXPLAIN QUERY PLAN "_s + statement.text, valueCount).Open(parts);
    QCOMPARE(steps.RecordCount(), keyColumns > 0 ? 1 : 0); // a sort would be a step of its own
    QCOMPARE(keyColumns > 0 ? steps.Field(u"detail"_s).toString().count(u"=?") : 0, keyColumns);

    Command command(connection, u"the command"_s, statement.text, valueCount);
    const bool reads = statement.text.startsWith(u"SELECT");
    QCOMPARE(reads ? static_cast<int>(command.Open(parts).RecordCount()) : command.Execute(parts), rows);
}

void DirDbTest::checkChangesNothing()
{
    const QString fileName = ChangedSample({});
    const QString said = DirDb({u"check"_s, fileName}).output;
    QVERIFY2(said.startsWith(fileName + u": sound (7 directory nodes, 567 entries)\nWarning: "_s), qPrintable(said));
    QCOMPARE(ReadFile(fileName), ReadFile(mSample));
    QCOMPARE(EntriesOf(mFolder->path()), QStringList{u"copy.mdb"_s});
}

void DirDbTest::checkFinds_data()
{
    QTest::addColumn<QByteArray>("content"); ///< a null one leaves the sample, on which the statements run
    QTest::addColumn<QString>("statements");
    QTest::addColumn<QString>("said");
    const auto row = [](const char* said, const QByteArray& content, const QString& statements = {}) {
        QTest::newRow(said) << content << statements << QString::fromLatin1(said);
    };
    row("is empty", "");
    row("is not a configuration database", "Smith,Anne,101\r\n");
    row("is a Jet database", QByteArray("\0\1\0\0Standard Jet DB\0\1", 21));
    row("is damaged. Restore it", ReadFile(mSample).left(50'000));
    row("The file is damaged: ", ReadFile(mSample).replace(16 * 4096 + 100, 99, QByteArray(99, 'x')));
    row("The table Node_MSG is missing", {}, u"DROP TABLE Node_MSG"_s);
    row("Detail_DIR lacks the column Password. The table Node_MSG lacks the column KELFilename", {},
        u"ALTER TABLE Detail_DIR DROP COLUMN Password; ALTER TABLE Node_MSG RENAME COLUMN KELFilename TO WaveFile"_s);
    row("Extension of the table Detail_DIR has the type \"INTEGER\", not TEXT", {},
        u"ALTER TABLE Detail_DIR DROP COLUMN Extension; ALTER TABLE Detail_DIR ADD COLUMN Extension INTEGER"_s);
    row("key of the table Node_DIR is not (ConfigID, PartID, NodeNumber, NodeTypeID)", {},
        u"CREATE TABLE Copy AS SELECT * FROM Node_DIR; DROP TABLE Node_DIR; ALTER TABLE Copy RENAME TO Node_DIR"_s);
}

void DirDbTest::checkFinds()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, statements);
    QFETCH(QString, said);
    const QString fileName = ChangedSample(statements);
    if (!content.isNull())
        WriteFile(fileName, content);
    const Outcome outcome = DirDb({u"check"_s, fileName});
    QCOMPARE(outcome.exitCode, 1);
    const QString told = outcome.errors.simplified();
    QVERIFY2(told.contains(fileName) && told.contains(said), qPrintable(told));
    QCOMPARE(outcome.output, QString());
}

/// given: LastName, FirstName, Extension, NamePrompt, Password of each entry.
void DirDbTest::checkWarns_data()
{
    const QString entry = u"('Smith', 'Anne', '12', %1, '1')"_s;
    const QString absent = entry.arg(13);
    const QString place = u"configuration 1, partition 1, DIR 12"_s;
    AddCases(
        {{"nothing", u"('O''Neil 2', 'Anne', ' 1e3 ', 2, '1'), "_s + entry.arg(3), {}},
         {"no message node", absent, u"message node is missing: 1\n  "_s + place + u", entry 1: MSG 13\n"_s},
         {"not in the pool", entry.arg(9), u", entry 1: MSG 9\n"_s},
         {"in the pool only", entry.arg(10), u", entry 1: MSG 10\n"_s},
         {"duplicate", QStringList{entry.arg(2), entry.arg(3), entry.arg(2)}.join(u','),
          u"more than once: 1\n  "_s + place + u": prompt 2 in the entries 1, 3\n"_s},
         {"duplicate as shown", entry.arg(1) + u',' + entry.arg(1000), u"prompt 1 in the entries 1, 2\n"_s},
         {"invalid", u"('Smith', 'Anne', '12' || char(27) || 'a', 2, '1')"_s,
          u"refuses to save: 1\n  "_s + place + u", entry 1: the extension \"12␛a\" is not a number\n"_s},
         {"defaults", u"('', NULL, '', NULL, NULL)"_s,
          u"missing values: 1\n  "_s + place + u", entry 1: LastName, FirstName, Extension, NamePrompt, Password\n"_s},
         {"many", absent + (u", "_s + absent).repeated(21), u", entry 20: MSG 13\n  and 2 more\n"_s}});
}

void DirDbTest::checkWarns()
{
    QFETCH(QString, given);
    QFETCH(QString, expected);
    const QString fileName =
        ChangedSample(u"DELETE FROM Detail_DIR; DELETE FROM Node_General_Pool WHERE NodeTypeID = 0 AND NodeNumber = 9; "
                      "DELETE FROM Node_MSG WHERE NodeNumber = 10; "
                      "INSERT INTO Detail_DIR SELECT 1, 1, 12, row_number() OVER (), * FROM (VALUES %1)"_s.arg(given));
    const Outcome outcome = DirDb({u"check"_s, fileName});
    QCOMPARE(outcome.exitCode, expected.isEmpty() ? 0 : 3);
    QVERIFY2(outcome.output.contains(expected) && outcome.errors.isEmpty(), qPrintable(outcome.output));
}

/// given: the options.
void DirDbTest::shows_data()
{
    AddCases(
        {{"table", u"--config 2"_s,
          uR"(DIR 3: NodeDescription "Front office", UsePasswords "1", StartingPromptNumber "2"
  SequenceNo  LastName  FirstName  Extension  NamePrompt
  1           Smith␛"   Anne       101        1
  2           a,b)"_s},
         {"CSV", u"--config 2 --csv"_s,
          uR"(NodeNumber,NodeDescription,UsePasswords,StartingPromptNumber,SequenceNo,LastName,FirstName,Extension,NamePrompt
3,Front office,1,2,1,"Smith␛""",Anne,101,1
3,Front office,1,2,2,"a,b",)"_s},
         {"CSV of all", u"--config 2 --csv --passwords"_s, u",AccessCode,"_s},
         {"passwords", u"--config 2 --passwords"_s, u"AccessCode \"secret\""_s},
         {"partition", u"--partition 2"_s, u"DIR 5: NodeDescription \"Workshop\""_s},
         {"no entries",
          {},
          u"DIR 20: NodeDescription \"Visitors\", UsePasswords \"0\", StartingPromptNumber \"250\"\n  no entries\n"_s},
         {"no nodes", u"--partition 9"_s, u"no directory nodes in partition 9"_s}});
}

void DirDbTest::shows()
{
    QFETCH(QString, given);
    QFETCH(QString, expected);
    const QString fileName = ChangedSample(
        u"UPDATE Detail_DIR SET LastName = 'Smith' || char(27) || '\"' WHERE ConfigID = 2 AND SequenceNo = 1; "
        "UPDATE Detail_DIR SET LastName = 'a,b', Password = 'secret' WHERE ConfigID = 2 AND SequenceNo = 2; "
        "UPDATE Node_DIR SET AccessCode = 'secret' WHERE ConfigID = 2"_s);
    const QStringList options = given.split(u' ', Qt::SkipEmptyParts);
    const Outcome outcome = DirDb(QStringList{u"show"_s} + options + QStringList{fileName});
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(outcome.output.contains(expected), qPrintable(outcome.output));
    QCOMPARE(outcome.output.contains(u"secret"), options.contains(u"--passwords"));
}

QTEST_GUILESS_MAIN(DirDbTest)
#include "DirDbTest.moc"
