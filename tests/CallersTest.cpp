// What callers will meet: the warnings of dir-db check, its sheet of recordings and the keys of names. On either
// engine.

#include "PauseOfSaves.h"
#include "Query.h"
#include "rules/TelephoneKeys.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"
#include "support/Tool.h"

#include <QTemporaryDir>

using namespace qor;

class CallersTest : public QObject
{
    Q_OBJECT

private:
    void Run(const QString& statements) const
    {
        for (const QString& statement : statements.split(u';', Qt::SkipEmptyParts))
            mSample->Run(statement);
    }
    QString File() const { return mSample->FileName(); }
    void SetEntries(const QString& values) const
    {
        Run(u"DELETE FROM Detail_DIR; INSERT INTO Detail_DIR SELECT 1, 1, 12, row_number() OVER (), * FROM (VALUES %1) AS v"_s
                .arg(values));
    }

    std::unique_ptr<SampleDatabase> mSample; ///< with one directory, in which nothing is odd

private Q_SLOTS:
    void init()
    {
        mSample = std::make_unique<SampleDatabase>();
        Run(u"DELETE FROM Node_DIR WHERE NodeNumber <> 12; UPDATE Node_DIR SET AccessCode = '4711'"_s);
        SetEntries(u"('Smith', 'Anne', '101', 2, '1'), ('Jones', 'Bob', '102', 3, '1')"_s);
    }

    /// given: statements; those that begin with VALUES are LastName, FirstName, Extension, NamePrompt, Password.
    void checkWarns_data()
    {
        const QString entry = u"('Smith', 'Anne', '12', %1, '1')"_s;
        const QString values = u"VALUES"_s + entry;
        const QString place = u"configuration 1, partition 1"_s;
        const QString directory = place + u", DIR 12"_s;
        const QString first = directory + u", entry 1: "_s;
        AddCases({
            {"nothing", {}, {}},
            {"nothing, of unusual texts", u"VALUES('Smith', '3', ' 1e3 ', 2, '1'),"_s + entry.arg(3), {}},
            {"no maximum", u"DELETE FROM Node_Type_Max"_s, place + u": none"_s},
            {"maximum 0", u"UPDATE Node_Type_Max SET Max_number = 0"_s, place + u": 0"_s},
            {"maximum no number", u"UPDATE Node_Type_Max SET Max_number = 'x'"_s, place + u": 'x'"_s},
            {"node numbers",
             u"UPDATE Node_DIR SET NodeNumber = 'x'; UPDATE Detail_DIR SET NodeMasterID = 'x';"
             "UPDATE Node_General_Pool SET NodeNumber = 'x' WHERE NodeTypeID = 16 AND NodeNumber = 12"_s,
             place + u", DIR x: NodeNumber"_s},
            {"no node", u"UPDATE Detail_DIR SET NodeMasterID = 99"_s, place + u", DIR 99: 2 entries"_s},
            {"not in the pool", u"DELETE FROM Node_General_Pool WHERE NodeTypeID = 16"_s, directory},
            {"message not in the pool", u"DELETE FROM Node_General_Pool WHERE NodeNumber = 4"_s, place + u", MSG 4"_s},
            {"no message node 0", u"DELETE FROM Node_MSG WHERE NodeNumber = 0"_s, place + u": in Node_MSG"_s},
            {"label refused", u"UPDATE Node_DIR SET NodeDescription = 'a''''b'"_s, directory + u": refused"_s},
            {"label cut", u"UPDATE Node_DIR SET NodeDescription = '%1\"'"_s.arg(QString(31, u'0')),
             directory + u": cut after 30 characters\n"_s},
            {"access code short", u"UPDATE Node_DIR SET AccessCode = '4x71'"_s,
             directory + u": what is no digit is dropped, refused, as it has fewer than 4 digits"_s},
            {"access code long", u"UPDATE Node_DIR SET AccessCode = '471147114'"_s, directory + u": cut after 8"_s},
            {"starting prompt", u"UPDATE Node_DIR SET StartingPromptNumber = 251"_s,
             directory + u": 251, not from 1 to 250"_s},
            {"header defaults",
             u"UPDATE Node_DIR SET NodeDescription = NULL, AccessCode = NULL, UsePasswords = 2, StartingPromptNumber = NULL"_s,
             directory + u": NodeDescription, AccessCode, UsePasswords, StartingPromptNumber"_s},
            {"label in another encoding", u"UPDATE Node_DIR SET NodeDescription = CAST(x'fc' AS TEXT)"_s,
             u"Node_DIR (ConfigID, PartID, NodeNumber, NodeTypeID) = (1, 1, 12, 16): NodeDescription"_s},
            {"entry in another encoding", u"UPDATE Detail_DIR SET Password = CAST(x'ff' AS TEXT)"_s,
             u"other characters, as a text is not UTF-8: 2\n  "_s + first + u"Password\n"_s},
            {"no message node", values.arg(13), u"message node is missing: 1\n  "_s + first + u"MSG 13\n"_s},
            {"message in the pool only", u"DELETE FROM Node_MSG WHERE NodeNumber = 2"_s, first + u"MSG 2\n"_s},
            {"prompt twice", values.arg(2) + u",('Jones', 'Bob', '13', 3, '1'),('May', 'Eve', '14', 2, '1')"_s,
             u"more than once: 1\n  "_s + directory + u": prompt 2 in the entries 1, 3\n"_s},
            {"prompt twice as shown", values.arg(1) + u",('Jones', 'Bob', '13', 1, '1')"_s,
             u"prompt 1 in the entries"_s},
            {"extension twice", values.arg(2) + u","_s + entry.arg(3), u": extension 12 in the entries 1, 2\n"_s},
            {"extension 1", u"UPDATE Detail_DIR SET Extension = '1'"_s, first + u"Anne Smith\n"_s},
            {"refused", u"VALUES('Smith', 'Anne', '12\u001ba', 2, '1')"_s,
             u"refuses to save: 1\n  "_s + first + u"the extension \"12␛a\" is not a number\n"_s},
            {"defaults", u"VALUES('', NULL, '12', 2, NULL)"_s,
             u"missing values: 1\n  "_s + first + u"LastName, FirstName, Password\n"_s},
            {"no key", u"VALUES('O''Neil', 'Anne', '12', 2, '1')"_s, first + u"Anne O'Neil\n"_s},
            {"described as another",
             u"UPDATE Node_MSG SET NodeDescription = 'Anne Smith' WHERE NodeNumber BETWEEN 2 AND 3"_s,
             u"described as another entry: 1\n  "_s + directory + u", entry 2: MSG 3 is \"Anne Smith\", as "_s +
                 directory + u", entry 1\n"_s},
        });
    }
    /// One kind of warning, and never an access code.
    void checkWarns()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        if (SampleDatabase::IsOnServer() && (given.contains(u"'x'") || given.contains(u"(x'")))
            QSKIP("The server takes no such value.");
        if (given.startsWith(u"VALUES"))
            SetEntries(given.sliced(6));
        else
            Run(given);
        const Outcome outcome = DirDb({u"check"_s, File()});
        QCOMPARE(outcome.exitCode, expected.isEmpty() ? 0 : 3);
        QVERIFY2(outcome.output.contains(expected) && outcome.errors.isEmpty(), qPrintable(outcome.output));
        QVERIFY2(outcome.output.count(u"Warning: ") == (expected.isEmpty() ? 0 : 1), qPrintable(outcome.output));
        QVERIFY2(!outcome.output.contains(u"471"), qPrintable(outcome.output));
    }

    void checkShowsTheFirstPlaces()
    {
        Run(u"INSERT INTO Detail_DIR SELECT 1, 1, 12, 9 + NodeNumber, 'A', 'B', 500 + NodeNumber, 60 + NodeNumber, '1' "
            "FROM Node_MSG WHERE ConfigID = 1 AND PartID = 1 AND NodeNumber BETWEEN 1 AND 26"_s);
        const QString said = DirDb({u"check"_s, File()}).output;
        QVERIFY2(said.contains(u"missing: 25\n") && said.endsWith(u"\n  and 5 more\n"), qPrintable(said));
    }

    void recordings()
    {
        Run(u"UPDATE Node_MSG SET KELFilename = 'names\\Bob, \"B\".wav' WHERE NodeNumber = 3;"
            "UPDATE Node_MSG SET KELFilename = '' WHERE NodeNumber = 4;"
            "INSERT INTO Detail_DIR VALUES (1, 1, 12, 3, 'May', 'Eve', '103', 4, '1'), (1, 1, 12, 4, 'Roe', 'Al', '104', 13, '1')"_s);
        const QString heading = u"File,Say,Extension\n"_s;
        const QString later = u"P01M004.wav,Eve May,103\nP01M013.wav,Al Roe,104\n"_s;
        QCOMPARE(DirDb({u"recordings"_s, File()}).output, heading +
                                                              u"P01M002.wav,Anne Smith,101\n"
                                                              "\"names\\Bob, \"\"B\"\".wav\",Bob Jones,102\n"_s +
                                                              later);

        const QTemporaryDir folder;
        WriteFile(folder.filePath(u"p01m002.WAV"_s), "");
        WriteFile(folder.filePath(u"Bob, \"b\".wav"_s), "");
        const QStringList missing{u"recordings"_s, u"--missing"_s, folder.path(), u"--node"_s, u"12"_s, File()};
        QCOMPARE(DirDb(missing).output, heading + later);
        const Outcome checked = DirDb({u"check"_s, u"--recordings"_s, folder.path(), File()});
        QVERIFY2(checked.output.contains(
                     u"names is missing: 1\n  configuration 1, partition 1, DIR 12, entry 3: MSG 4, \"\"\n"),
                 qPrintable(checked.output));

        for (const QStringList& command :
             {QStringList{u"check"_s, u"--recordings"_s}, {u"recordings"_s, u"--missing"_s}}) {
            const Outcome outcome = DirDb(command + QStringList{folder.filePath(u"none"_s), File()});
            QVERIFY2(outcome.exitCode == 1 && outcome.output.isEmpty() &&
                         outcome.errors.contains(u"none cannot be read"),
                     qPrintable(outcome.errors));
        }
        QVERIFY(DirDb({u"recordings"_s, u"--node"_s, u"7"_s, File()}).errors.contains(u"no DIR 7 in partition 1"));
    }

    void keysOfNames_data()
    {
        AddCases({{"every key", u"AbcDefGhiJklMnoPqrsTuvWxyz"_s, u"22233344455566677778889999"_s},
                  {"without keys", u"O'Neil-de la Cruz 3"_s, u"66345335227893"_s},
                  {"accents", u"MÜLLERü Nguyễn Ångström"_s, u"685537864893626478766"_s},
                  {"written out", u"ẞßÆłØ"_s, u"77772356"_s},
                  {"in other letters", u"Иван"_s, {}}});
    }
    void keysOfNames()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        QCOMPARE(TelephoneKeys(given), expected);
    }

    /// given: the arguments behind the file.
    void keys_data()
    {
        AddCases(
            {{"reached", u"764"_s,
              u"764 reaches 2 people\n  entry 1: Anne Smith, extension 101\n  entry 3: Rob "
              "Śmigly, extension 13\n"_s},
             {"more keys", u"7648"_s, u"reaches 1 person\n  entry 1: Anne"_s},
             {"nobody", u"999"_s, u"reaches 0 people\n"_s},
             {"by first name", u"--by first 762"_s, u"1 person\n  entry 3: Rob"_s},
             {"shared", {}, u"DIR 12: 764 is shared by 2 people\n  entry 1: Anne"_s},
             {"not shared", u"--digits 4"_s, u"no code of 4 keys is shared\n"_s},
             {"shared, either", u"--by either --digits 2"_s,
              u"DIR 12: 56 is shared by 2 people\n  entry 2: Bob Jones, extension 102\n  entry 4: Lo Jo, extension 14\n"_s},
             {"no keys", u"76a"_s, u"\"76a\" are no keys"_s},
             {"no digits", u"--digits 0"_s, u"at least 1 digit"_s}});
    }
    void keys()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        Run(u"INSERT INTO Detail_DIR VALUES (1, 1, 12, 3, 'Śmigly', 'Rob', '13', 4, '1'), (1, 1, 12, 4, 'Jo', 'Lo', '14', 5, '1')"_s);
        const Outcome outcome = DirDb(QStringList{u"keys"_s, File()} + given.split(u' ', Qt::SkipEmptyParts));
        const QString said = outcome.output + outcome.errors;
        QVERIFY2(said.contains(expected), qPrintable(said));
        QCOMPARE(outcome.output.startsWith(u"By this rule: "), outcome.exitCode == 0);
    }

    void readsOneMoment()
    {
        Connection connection;
        connection.SetConnectionString(ConnectionStringFor(File()));
        const StillReading still(connection, File());
        Run(u"DELETE FROM Detail_DIR"_s);
        QCOMPARE(CountOf(connection, u"Detail_DIR"_s), 2);
    }
};

QTEST_GUILESS_MAIN(CallersTest)
#include "CallersTest.moc"
