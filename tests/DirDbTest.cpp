// dir-db as people run it: what it makes, what it refuses and which faults its check finds.

#include "platform/runtime/RuntimeError.h"
#include "store/CommandCatalog.h"
#include "store/DataBase.h"
#include "support/Tool.h"

#include <QTemporaryDir>
#include <QTest>

using namespace qor;

namespace {

/// Changes a sound sample of this name into a faulty one.
using Spoil = void (*)(const QString& fileName);

Outcome DirDb(const QStringList& arguments)
{
    return RunProgram(QString::fromLocal8Bit(DIR_DB), arguments);
}

} // namespace

Q_DECLARE_METATYPE(qor::CommandId)
Q_DECLARE_METATYPE(Spoil)

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
    void leavesNothingWhenTheDiskIsFull();
    void everyCommandRuns_data();
    void everyCommandRuns();
    void everyCommandUsesTheKey_data();
    void everyCommandUsesTheKey();
    void checkChangesNothing();
    void checkAllowsMoreTablesAndColumns();
    void checkFinds_data();
    void checkFinds();
    void checkWarns_data();
    void checkWarns();
    void shows_data();
    void shows();
    void showTellsWhenTheDiskIsFull();

private:
    QString Path(const QString& name) const { return mFolder->filePath(name); }

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

void DirDbTest::commandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("said");
    QTest::newRow("help") << QStringList{u"help"_s} << 0 << u"sample FILE"_s;
    QTest::newRow("help on a command") << QStringList{u"check"_s, u"-h"_s} << 0 << u"check FILE"_s;
    QTest::newRow("nothing") << QStringList{} << 2 << u"command is missing"_s;
    QTest::newRow("unknown") << QStringList{u"%1"_s, u"x"_s} << 2 << u"no command \"%1\""_s;
    QTest::newRow("no file") << QStringList{u"check"_s} << 2 << u"takes 1, not 0"_s;
    QTest::newRow("two files") << QStringList{u"check"_s, u"a"_s, u"b"_s} << 2 << u"takes 1, not 2"_s;
    QTest::newRow("empty name") << QStringList{u"create"_s, u""_s} << 2 << u"must not be empty"_s;
    QTest::newRow("option") << QStringList{u"create"_s, u"-f"_s} << 2 << u"no option \"-f\""_s;
    QTest::newRow("option of another") << QStringList{u"check"_s, u"--csv"_s, u"a"_s} << 2 << u"no option \"--csv\""_s;
    QTest::newRow("two options in one") << QStringList{u"show"_s, u"--csv] [--passwords"_s, u"a"_s} << 2
                                        << u"no option"_s;
    QTest::newRow("no number") << QStringList{u"show"_s, u"a"_s, u"--config"_s} << 2 << u"needs a number"_s;
}

void DirDbTest::commandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, said);
    const Outcome outcome = DirDb(arguments);
    QCOMPARE(outcome.exitCode, exitCode);
    const QString& spoken = exitCode == 0 ? outcome.output : outcome.errors;
    QVERIFY2(spoken.contains(said), qPrintable(spoken));
    QCOMPARE(exitCode == 0 ? outcome.errors : outcome.output, QString());
}

void DirDbTest::createMakesAnEmptyDatabase()
{
    const QString fileName = Path(u"a#b?c%20 %1 ü.mdb"_s);
    const Outcome made = DirDb({u"create"_s, fileName});
    QVERIFY2(made.exitCode == 0, qPrintable(made.errors));
    QCOMPARE(EntriesOf(mFolder->path()).size(), 1);
    const QFileDevice::Permissions ownersOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    QCOMPARE(QFileInfo(fileName).permissions() & ~(QFileDevice::ReadUser | QFileDevice::WriteUser), ownersOnly);
    QCOMPARE(Query(fileName, u"PRAGMA journal_mode"_s), QStringList{u"wal"_s});
    QCOMPARE(DirDb({u"check"_s, fileName}).output, fileName + u": sound (0 directory nodes, 0 entries)\n"_s);
}

void DirDbTest::refusesToMake_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("said");
    QTest::newRow("a file that exists") << u"taken"_s << u"exists already"_s;
    QTest::newRow("a link to nowhere") << u"link"_s << u"exists already"_s;
    QTest::newRow("the folder itself") << u"."_s << u"exists already"_s;
    QTest::newRow("beside an old log") << u"logged"_s << u"logged-wal is left over"_s;
    QTest::newRow("in a missing folder") << u"missing/new"_s << u"No such file"_s;
    QTest::newRow("where nobody may write") << u"/proc/new"_s << u"choose a folder"_s;
    QTest::newRow("a name too long") << QString(300, u'a') << u"too long"_s;
}

void DirDbTest::refusesToMake()
{
    QFETCH(QString, target);
    QFETCH(QString, said);
    WriteFile(Path(u"taken"_s), "precious");
    WriteFile(Path(u"logged-wal"_s), "old");
    QVERIFY(QFile::link(u"nowhere"_s, Path(u"link"_s)));
    const QStringList before = EntriesOf(mFolder->path());
    const QString fileName = QDir(mFolder->path()).filePath(target);

    const Outcome outcome = DirDb({u"create"_s, fileName});
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.contains(fileName) && outcome.errors.contains(said), qPrintable(outcome.errors));
    QCOMPARE(EntriesOf(mFolder->path()), before);
    QCOMPARE(ReadFile(Path(u"taken"_s)), QByteArray("precious"));
}

void DirDbTest::leavesNothingWhenTheDiskIsFull()
{
    const QString fileName = Path(u"new.mdb"_s);
    const Outcome outcome = RunProgram(u"/bin/sh"_s, {u"-c"_s, u"ulimit -f 32; exec \"$@\""_s, u"sh"_s,
                                                      QString::fromLocal8Bit(DIR_DB), u"sample"_s, fileName});
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.contains(fileName), qPrintable(outcome.errors));
    QCOMPARE(EntriesOf(mFolder->path()), QStringList());
}

void DirDbTest::everyCommandRuns_data()
{
    QTest::addColumn<CommandId>("id");
    QTest::addColumn<QString>("values");
    QTest::addColumn<int>("rows");       ///< that it returns or changes
    QTest::addColumn<int>("keyColumns"); ///< by which it finds them
    const auto row = [](CommandId id, const QString& values, int rows, int keyColumns) {
        QTest::newRow(CatalogEntry(id).name) << id << values << rows << keyColumns;
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

void DirDbTest::everyCommandRuns()
{
    QFETCH(CommandId, id);
    QFETCH(QString, values);
    QFETCH(int, rows);
    const QString fileName = Path(u"copy.mdb"_s);
    QVERIFY(QFile::copy(mSample, fileName));
    const EngineStatement statement = TranslateStoredSql(QString::fromLatin1(CatalogEntry(id).sql));
    Connection connection;
    connection.SetConnectionString(ConnectionStringFor(fileName));
    Command command(connection, u"the command"_s, statement.text, static_cast<int>(statement.parameters.size()));
    const QStringList parts = values.split(u',');
    QCOMPARE(CatalogEntry(id).recordset ? static_cast<int>(command.Open(parts).RecordCount()) : command.Execute(parts),
             rows);
}

void DirDbTest::everyCommandUsesTheKey_data()
{
    everyCommandRuns_data();
}

void DirDbTest::everyCommandUsesTheKey()
{
    QFETCH(CommandId, id);
    QFETCH(QString, values);
    QFETCH(int, keyColumns);
    const EngineStatement statement = TranslateStoredSql(QString::fromLatin1(CatalogEntry(id).sql));
    Connection connection;
    connection.SetConnectionString(ConnectionStringFor(mSample));
    Command plan(connection, u"the plan"_s, u"EXPLAIN QUERY PLAN "_s + statement.text,
                 static_cast<int>(statement.parameters.size()));
    const Recordset steps = plan.Open(values.split(u','));
    QCOMPARE(steps.RecordCount(), keyColumns > 0 ? 1 : 0); // a sort would be a step of its own
    const QString step = keyColumns > 0 ? steps.Field(u"detail"_s).toString() : QString();
    QVERIFY2(step.count(u"=?") == keyColumns, qPrintable(step));
}

void DirDbTest::checkChangesNothing()
{
    const QString fileName = Path(u"copy.mdb"_s);
    QVERIFY(QFile::copy(mSample, fileName));
    const Outcome outcome = DirDb({u"check"_s, fileName});
    QCOMPARE(outcome.exitCode, 3);
    QVERIFY2(outcome.output.startsWith(fileName + u": sound (7 directory nodes, 567 entries)\nWarning: "_s),
             qPrintable(outcome.output));
    QCOMPARE(ReadFile(fileName), ReadFile(mSample));
    QCOMPARE(EntriesOf(mFolder->path()), QStringList{u"copy.mdb"_s});
}

void DirDbTest::checkAllowsMoreTablesAndColumns()
{
    const QString fileName = Path(u"new.mdb"_s);
    QCOMPARE(DirDb({u"create"_s, fileName}).exitCode, 0);
    Query(fileName, u"ALTER TABLE Node_DIR ADD COLUMN Colour TEXT"_s);
    Query(fileName, u"CREATE TABLE Node_Other (Number INTEGER)"_s);
    QCOMPARE(DirDb({u"check"_s, fileName}).exitCode, 0);
}

void DirDbTest::checkFinds_data()
{
    QTest::addColumn<Spoil>("spoil");
    QTest::addColumn<QStringList>("said");
    const auto row = [](const char* fault, Spoil spoil, const QStringList& said) {
        QTest::newRow(fault) << spoil << said;
    };
    row("missing", [](const QString& file) { QFile::remove(file); }, {u"does not exist"_s});
    row("empty", [](const QString& file) { WriteFile(file, ""); }, {u"is empty"_s});
    row("text", [](const QString& file) { WriteFile(file, "Smith,Anne,101\r\n"); },
        {u"is not a configuration database"_s});
    row("Jet", [](const QString& file) { WriteFile(file, QByteArray("\0\1\0\0Standard Jet DB\0\1", 21)); },
        {u"is a Jet database"_s});
    row("truncated", [](const QString& file) { WriteFile(file, ReadFile(file).left(50'000)); }, {u"is damaged"_s});
    row("overwritten",
        [](const QString& file) { WriteFile(file, ReadFile(file).replace(16 * 4096 + 100, 99, QByteArray(99, 'x'))); },
        {u"is damaged"_s});
    row("folder",
        [](const QString& file) {
            QFile::remove(file);
            QDir().mkdir(file);
        },
        {u"is not a file"_s});
    row("missing table", [](const QString& file) { Query(file, u"DROP TABLE Node_MSG"_s); },
        {u"The table Node_MSG is missing"_s});
    row("two faults",
        [](const QString& file) {
            Query(file, u"ALTER TABLE Detail_DIR DROP COLUMN Password"_s);
            Query(file, u"ALTER TABLE Node_MSG RENAME COLUMN KELFilename TO WaveFile"_s);
        },
        {u"Detail_DIR lacks the column Password"_s, u"Node_MSG lacks the column KELFilename"_s});
    row("wrong type",
        [](const QString& file) {
            Query(file, u"ALTER TABLE Detail_DIR DROP COLUMN Extension"_s);
            Query(file, u"ALTER TABLE Detail_DIR ADD COLUMN Extension INTEGER"_s);
        },
        {u"Extension of the table Detail_DIR has the type \"INTEGER\", not TEXT"_s});
    row("no key",
        [](const QString& file) {
            Query(file, u"CREATE TABLE Copy AS SELECT * FROM Node_DIR"_s);
            Query(file, u"DROP TABLE Node_DIR"_s);
            Query(file, u"ALTER TABLE Copy RENAME TO Node_DIR"_s);
        },
        {u"key of the table Node_DIR is not (ConfigID, PartID, NodeNumber, NodeTypeID)"_s});
}

void DirDbTest::checkFinds()
{
    QFETCH(Spoil, spoil);
    QFETCH(QStringList, said);
    const QString fileName = Path(u"copy.mdb"_s);
    QVERIFY(QFile::copy(mSample, fileName));
    spoil(fileName);
    const Outcome outcome = DirDb({u"check"_s, fileName});
    QCOMPARE(outcome.exitCode, 1);
    for (const QString& part : QStringList{fileName} + said)
        QVERIFY2(outcome.errors.contains(part), qPrintable(outcome.errors));
    QCOMPARE(outcome.output, QString());
}

void DirDbTest::checkWarns_data()
{
    QTest::addColumn<QString>("entries"); ///< LastName, FirstName, Extension, NamePrompt, Password
    QTest::addColumn<QString>("said");
    const auto row = [](const char* name, const QString& entries, const QString& said) {
        QTest::newRow(name) << entries << said;
    };
    const QString place = u"configuration 1, partition 1, DIR 12"_s;
    row("nothing", u"('O''Neil 2', 'Anne', ' 1e3 ', 2, '1'), ('Smith', 'Anne', '12', 3, '1')"_s, {});
    row("no message node", u"('Smith', 'Anne', '12', 13, '1')"_s,
        u"message node is missing: 1\n  "_s + place + u", entry 1: MSG 13\n"_s);
    row("not in the pool", u"('Smith', 'Anne', '12', 9, '1')"_s, u", entry 1: MSG 9\n"_s);
    row("duplicate",
        u"('Smith', 'Anne', '12', 2, '1'), ('Smith', 'Anne', '12', 3, '1'), ('Smith', 'Anne', '12', 2, '1')"_s,
        u"more than once: 1\n  "_s + place + u": prompt 2 in the entries 1, 3\n"_s);
    row("duplicate as shown", u"('Smith', 'Anne', '12', 1, '1'), ('Smith', 'Anne', '12', 1000, '1')"_s,
        u"prompt 1 in the entries 1, 2\n"_s);
    row("invalid", u"('Smith', 'Anne', '12' || char(27) || 'a', 2, '1')"_s,
        u"refuses to save: 1\n  "_s + place + u", entry 1: the extension \"12␛a\" is not a number\n"_s);
    row("defaults", u"('', NULL, '', NULL, NULL)"_s,
        u"missing values: 1\n  "_s + place + u", entry 1: LastName, FirstName, Extension, NamePrompt, Password\n"_s);
    row("many", u"('Smith', 'Anne', '12', 13, '1')"_s + u", ('Smith', 'Anne', '12', 13, '1')"_s.repeated(21),
        u", entry 20: MSG 13\n  and 2 more\n"_s);
}

void DirDbTest::checkWarns()
{
    QFETCH(QString, entries);
    QFETCH(QString, said);
    const QString fileName = Path(u"copy.mdb"_s);
    QVERIFY(QFile::copy(mSample, fileName));
    Query(fileName, u"DELETE FROM Detail_DIR"_s);
    Query(fileName, u"DELETE FROM Node_General_Pool WHERE NodeTypeID = 0 AND NodeNumber = 9"_s);
    Query(fileName, u"INSERT INTO Detail_DIR SELECT 1, 1, 12, row_number() OVER (), * FROM (VALUES %1)"_s.arg(entries));
    const Outcome outcome = DirDb({u"check"_s, fileName});
    QCOMPARE(outcome.exitCode, said.isEmpty() ? 0 : 3);
    QVERIFY2(outcome.output.contains(said) && outcome.errors.isEmpty(), qPrintable(outcome.output));
}

void DirDbTest::shows_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("said");
    const QStringList second{u"--config"_s, u"2"_s};
    QTest::newRow("table") << second
                           << uR"(DIR 3: NodeDescription "Front office", UsePasswords "1", StartingPromptNumber "2"
  SequenceNo  LastName  FirstName  Extension  NamePrompt
  1           Smith␛"   Anne       101        1
  2           a,b)"_s;
    QTest::newRow("CSV")
        << second + QStringList{u"--csv"_s}
        << uR"(NodeNumber,NodeDescription,UsePasswords,StartingPromptNumber,SequenceNo,LastName,FirstName,Extension,NamePrompt
3,Front office,1,2,1,"Smith␛""",Anne,101,1
3,Front office,1,2,2,"a,b",)"_s;
    QTest::newRow("CSV of all") << second + QStringList{u"--csv"_s, u"--passwords"_s} << u",AccessCode,"_s;
    QTest::newRow("passwords") << second + QStringList{u"--passwords"_s} << u"AccessCode \"secret\""_s;
    QTest::newRow("partition") << QStringList{u"--partition"_s, u"2"_s} << u"DIR 5: NodeDescription \"Workshop\""_s;
    QTest::newRow("no entries")
        << QStringList{}
        << u"DIR 20: NodeDescription \"Visitors\", UsePasswords \"0\", StartingPromptNumber \"250\"\n  no entries\n"_s;
    QTest::newRow("no nodes") << QStringList{u"--partition"_s, u"9"_s} << u"no directory nodes in partition 9"_s;
}

void DirDbTest::shows()
{
    QFETCH(QStringList, options);
    QFETCH(QString, said);
    const QString fileName = Path(u"copy.mdb"_s);
    QVERIFY(QFile::copy(mSample, fileName));
    Query(fileName,
          u"UPDATE Detail_DIR SET LastName = 'Smith' || char(27) || '\"' WHERE ConfigID = 2 AND SequenceNo = 1"_s);
    Query(fileName,
          u"UPDATE Detail_DIR SET LastName = 'a,b', Password = 'secret' WHERE ConfigID = 2 AND SequenceNo = 2"_s);
    Query(fileName, u"UPDATE Node_DIR SET AccessCode = 'secret' WHERE ConfigID = 2"_s);
    const Outcome outcome = DirDb(QStringList{u"show"_s} + options + QStringList{fileName});
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(outcome.output.contains(said), qPrintable(outcome.output));
    QCOMPARE(outcome.output.contains(u"secret"), options.contains(u"--passwords"));
}

void DirDbTest::showTellsWhenTheDiskIsFull()
{
    const Outcome outcome = RunProgram(u"/bin/sh"_s, {u"-c"_s, u"exec \"$@\" >/dev/full"_s, u"sh"_s,
                                                      QString::fromLocal8Bit(DIR_DB), u"show"_s, mSample});
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.contains(u"cannot be written"), qPrintable(outcome.errors));
}

QTEST_GUILESS_MAIN(DirDbTest)
#include "DirDbTest.moc"
