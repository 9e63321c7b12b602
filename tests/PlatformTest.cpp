// The lowest floor: numbers, error reports, registry and database as the floors above rely on them.
#include "platform/com/Component.h"
#include "platform/data/Command.h"
#include "platform/data/Connection.h"
#include "platform/data/DatabaseFile.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/runtime/Numbers.h"
#include "platform/shell/Registry.h"
#include "support/Cases.h"
#include "support/Files.h"

#include <QDir>
#include <QScopeGuard>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace qor;

namespace {

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

/// Permissions stop ordinary users only: runs the body as one, or not at all.
template <typename Body>
bool RunAsOrdinaryUser(Body&& body)
{
    const bool isRoot = geteuid() == 0;
    if (isRoot && seteuid(65534) != 0)
        return false;
    const auto guard = qScopeGuard([isRoot] {
        if (isRoot && seteuid(0) != 0)
            std::abort();
    });
    body();
    return true;
}

QStringList shownErrors;

void RecordError(const QString& text, const QString& title, bool critical)
{
    shownErrors << title + (critical ? u"!|"_s : u"|"_s) + text;
}

/// Every value of a text (with ' for ") as "key/name=type:bytes in hex ", in order.
QString FlatValues(QString text)
{
    QStringList flat;
    const RegistryValues values = ParseRegistryText(text.replace(u'\'', u'"'));
    for (auto key = values.begin(); key != values.end(); ++key) {
        for (auto value = key->begin(); value != key->end(); ++value) {
            const QString bytes = QString::fromLatin1(value->data.toHex());
            flat << u"%1/%2=%3:%4 "_s.arg(key.key(), value.key()).arg(value->type).arg(bytes);
        }
    }
    flat.sort();
    return flat.join(QString());
}

void Use(Connection& connection, const QString& fileName)
{
    connection.SetConnectionString(ConnectionStringFor(fileName));
    connection.SetLockTimeout(50);
}

void RunOn(const QString& fileName, const QString& statement)
{
    Connection connection;
    Use(connection, fileName);
    Command(connection, u"Run"_s, statement, 0).Execute({});
}

} // namespace

class PlatformTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> mFolder;
    QString mFile;

    void SetModes(int file, int folder) const
    {
        chmod(QFile::encodeName(mFile), static_cast<mode_t>(file));
        chmod(QFile::encodeName(mFolder->path()), static_cast<mode_t>(folder));
    }

private Q_SLOTS:
    void init()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        mFile = mFolder->filePath(u"file"_s);
        qputenv("KELDAR_REGISTRY", QFile::encodeName(mFile));
    }
    void cleanup() { SetModes(0600, 0700); }

    void numbersInTexts_data()
    {
        AddCases({{"blanks and sign", u" \t-03.5 "_s, u"-3.5"_s},
                  {"no digit before the point", u"+.5"_s, u"0.5"_s},
                  {"exponent behind the point", u"7.E-2"_s, u"0.07"_s}});
        for (const char* text : {" ", ".", "+-1", "1,5", "1 2", "e5", "1e+", "0x1F", "inf", "1e999"})
            QTest::addRow("refused: %s", text) << QString::fromLatin1(text) << QString();
    }
    void numbersInTexts()
    {
        QFETCH(QString, given);
        const auto number = NumberFromText(given);
        QTEST(number ? QString::number(*number) : QString(), "expected");
    }

    void errorsAreReported()
    {
        shownErrors.clear();
        SetErrorBox(RecordError);
        bool isFinished = false;
        const int number = ReportErrors(u"LoadData"_s, [&]() -> int {
            const auto guard = qScopeGuard([&] { isFinished = shownErrors.isEmpty(); });
            throw RuntimeError(ErrorNumber::Overflow, u"too large"_s, u"ENGINE"_s);
        });
        QCOMPARE(number, 0);
        QVERIFY2(isFinished, "the body's guards run before the report is shown");
        QVERIFY(!ReportErrors(u"Check"_s, []() -> bool { throw 1; }));
        GuardEvent([] { throw RuntimeError(ErrorNumber::TypeMismatch, u"no %1 number"_s); });
        GuardEvent([] { throw std::runtime_error("plain"); });
        QCOMPARE(shownErrors.join(u'\n'), u"Error|Source: ENGINE - LoadData \r\nDescription: too large\n"
                                          "Error|Source: QOR_DIR_NODE - Check \r\nDescription: Internal error.\n"
                                          "QOR_DIR_NODE!|Run-time error '13':\r\n\r\nno %1 number\n"
                                          "QOR_DIR_NODE!|Run-time error '51':\r\n\r\nplain"_s);
    }

    // A line between two good ones, with ' for ", and the value v that is read of it.
    void registryLines_data()
    {
        AddCases({{"text", u"'v'='a\\\\b \\'c\\' [d];'"_s, u"1:615c6220226322205b645d3b00"_s},
                  {"text that ends in a backslash", u"'v'='C:\\\\'"_s, u"1:433a5c00"_s},
                  {"name in capitals, blanks", u" 'V' = '' "_s, u"1:00"_s},
                  {"number", u"'v'=dword:8000002a"_s, u"4:2a000080"_s},
                  {"bytes, continued", u"'v'=hex:00,\\\r\n  ff,7,\\\r\n  03"_s, u"3:00ff0703"_s},
                  {"wide texts", u"'v'=hex(7):e4,00,00,00,62,00,00,00,00,00"_s, u"7:c3a400620000"_s},
                  {"another type", u"'v'=hex(b):01,00"_s, u"11:0100"_s},
                  {"continuation cut off", u"'v'=hex:01,\\"_s, {}},
                  {"no data", u"'v'=\r\n'v'=a\r\n'v'='\\\r\n'v'=dword:100000000"_s, {}},
                  {"no bytes", u"'v'=hex:100\r\n'v'=hex:0g\r\n'v'=hex(x):00\r\n'v'=hex(1:00"_s, {}},
                  {"no value", u"'v' 'a'\r\n'v='a'\r\n\0\uFFFF]=['@\\"_s, {}}});
    }
    void registryLines()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        const QString text = u"[K]\r\n'a'=dword:1\r\n"_s + given + u"\r\n'z'=dword:2\r\n@='d'"_s;
        const QString value = expected.isEmpty() ? expected : u"k/v="_s + expected + u' ';
        QCOMPARE(FlatValues(text), u"k/=1:6400 k/a=4:01000000 "_s + value + u"k/z=4:02000000 "_s);
    }

    void registryKeys_data()
    {
        AddCases({{"key, capitals", u"[Other\\Sub]"_s, u"other\\sub/v=2:4100 "_s},
                  {"key with a bracket", u"[a]b]"_s, u"a]b/v=2:4100 "_s},
                  {"key behind cut bytes", u"'x'=hex:01,\\\n[Other]"_s, u"other/v=2:4100 "_s},
                  {"no key", u"[-K]\n'v'=dword:1\n[Other\n'v'=dword:1\n[]"_s, {}}});
    }
    void registryKeys()
    {
        QFETCH(QString, given);
        QTEST(FlatValues(u"REGEDIT4\n\n[K]\n"_s + given + u"\n'v'=hex(2):41,00"_s), "expected");
    }

    void registryKeepsOtherLines_data()
    {
        QTest::addColumn<QByteArray>("before");
        const QString text = u"Version 5.00\r\n[HKEY_CLASSES_ROOT\\CLSID\\{A}B]\r\n@=\"\u00e4\"\ndamaged \"[\r\n"
                             "; remark\n[HKEY_LOCAL_MACHINE\\CLSID\\{A}]\r\n\"x\"=hex:1,\\\r\n 2\r\n"_s;
        const auto marked = [&](QStringConverter::Encoding encoding) {
            return QByteArray(QStringEncoder(encoding, QStringEncoder::Flag::WriteBom)(text));
        };
        QTest::newRow("UTF-8") << text.toUtf8();
        QTest::newRow("UTF-8 with mark") << marked(QStringConverter::Utf8);
        QTest::newRow("UTF-16") << marked(QStringConverter::Utf16LE);
        QTest::newRow("8-bit, open at its end") << text.chopped(2).toLatin1();
    }
    void registryKeepsOtherLines()
    {
        QFETCH(QByteArray, before);
        WriteFile(mFile, before);
        const RegistryEntry entry{u"HKEY_CLASSES_ROOT\\CLSID\\{A}"_s, {{{}, u"C:\\a \"b\""_s}, {u"n"_s, u"\u00e4"_s}}};
        AddToRegistry({entry});
        const auto data = [](const QString& name) {
            return Registry().Query(RegistryRoot::ClassesRoot, u"clsid\\{a}"_s, name).value().data;
        };
        QCOMPARE(data({}), QByteArray("C:\\a \"b\"\0", 9));
        QCOMPARE(data(u"N"_s), QByteArray("\xC3\xA4\0", 3));
        RemoveFromRegistry({entry});
        QCOMPARE(ReadFile(mFile), before);
    }

    void registryChangesItsOwnValuesOnly()
    {
        const QByteArray others = "\"x\"=\"kept\"\n\n[hkey_classes_root\\q\\Sub]\n@=\"kept\"\n; note\n";
        WriteFile(mFile,
                  "[HKEY_CLASSES_ROOT\\Q]\n@=hex(2):41,\\\n 00\n" + others + "[HKEY_CLASSES_ROOT\\Q\\S]\n; note");
        const QList<RegistryEntry> entries{{u"HKEY_CLASSES_ROOT\\Q"_s, {{{}, u"new"_s}, {u"n"_s, u"1"_s}}},
                                           {u"HKEY_CLASSES_ROOT\\Q\\S"_s, {{{}, u"new"_s}}}};
        for (int i = 0; i < 2; ++i) {
            AddToRegistry(entries);
            QCOMPARE(ReadFile(mFile), "[HKEY_CLASSES_ROOT\\Q]\n\"n\"=\"1\"\r\n@=\"new\"\r\n" + others +
                                          "[HKEY_CLASSES_ROOT\\Q\\S]\n@=\"new\"\r\n; note");
        }
        RemoveFromRegistry(entries);
        QCOMPARE(ReadFile(mFile), "[HKEY_CLASSES_ROOT\\Q]\n" + others + "; note");
    }

    void registryThatCannotChange()
    {
        const auto sentenceFor = [](const QString& fileName) {
            qputenv("KELDAR_REGISTRY", QFile::encodeName(fileName));
            return RaisedBy([] { AddToRegistry({{u"Q"_s, {{{}, u"new"_s}}}}); });
        };
        WriteFile(mFile, "\xFF\xFE[");
        QVERIFY(sentenceFor(mFile).contains(u"no text"_s));
        WriteFile(mFile, "[HKEY_CLASSES_ROOT\\R]\n");
        QVERIFY(sentenceFor(mFolder->path()).contains(mFolder->path() + u" cannot be read"_s));
        QVERIFY(sentenceFor(mFile + u"/below"_s).contains(u"cannot be written"_s));
        // It opens, but its first bytes cannot be read.
        QVERIFY(sentenceFor(u"/proc/self/mem"_s).contains(u"cannot be read"_s));
        SetModes(0644, 0555);
        QString sentence;
        if (!RunAsOrdinaryUser([&] { sentence = sentenceFor(mFile); }))
            QSKIP("cannot become an ordinary user");
        QVERIFY(sentence.contains(mFile + u" cannot be written"_s));
        QCOMPARE(ReadFile(mFile), "[HKEY_CLASSES_ROOT\\R]\n");
    }

    void registryIsReadOnceForAnObject()
    {
        WriteFile(mFile, "[HKEY_CLASSES_ROOT\\P\\Clsid]\n@=\"{C}\"\n"
                         "[HKEY_CLASSES_ROOT\\CLSID\\{C}\\InprocServer32]\n@=\"/none.so\"\n");
        const int watch = inotify_init1(IN_NONBLOCK);
        inotify_add_watch(watch, QFile::encodeName(mFile), IN_OPEN | IN_CLOSE);
        QVERIFY(RaisedBy([] { CreateObject(u"P"_s); }).contains(u"/none.so does not exist"_s));
        std::array<inotify_event, 9> events;
        QCOMPARE(read(watch, events.data(), sizeof events), ssize_t(2 * sizeof(inotify_event))); // opened, closed
        close(watch);
    }

    void commandsAndRecordsets()
    {
        OtherProgram(mFile).Run(u"CREATE TABLE t (n INTEGER, s TEXT)"_s);
        Connection connection;
        Use(connection, mFile);
        Command add(connection, u"Add"_s, u"INSERT INTO t VALUES (?1, nullif(?2, 'Null'))"_s, 2);
        for (const QString& text : {u"O'Neil; \u4e2d\"--"_s, u"Null"_s, QString()})
            QCOMPARE(add.Execute({u"2"_s, text}), 1);
        Command all(connection, u"All"_s, u"SELECT s, n AS Number FROM t WHERE n = ?1 ORDER BY rowid"_s, 1);
        Recordset rows = all.Open({u"2"_s});
        QCOMPARE(rows.RecordCount(), 3);
        QCOMPARE(rows.Field(u"S"_s), QVariant(u"O'Neil; \u4e2d\"--"_s));
        QCOMPARE(rows.Field(u"NUMBER"_s), QVariant(2));
        QVERIFY(RaisedBy([&] { rows.FieldIndex(u"Nix"_s); }).startsWith(u"3000: The column Nix"_s));
        rows.MoveNext();
        QVERIFY(rows.Field(0).isNull());
        rows.MoveNext();
        QCOMPARE(rows.Field(0), QVariant(u""_s));
        rows.MoveNext();
        QVERIFY(rows.EndOfFile());
        QVERIFY(RaisedBy([&] { rows.Field(0); }).startsWith(u"3000"_s));
        QVERIFY(RaisedBy([&] { rows.MoveNext(); }).startsWith(u"3000"_s));

        QCOMPARE(add.Execute({u"3"_s, u"while rows are open"_s}), 1);
        QVERIFY(RaisedBy([&] { all.Open({u"2"_s}); }).contains(u"its recordset is open"_s));
        rows.Close();
        QVERIFY(RaisedBy([&] { rows.EndOfFile(); }).startsWith(u"91"_s));
        for (int i = 0; i < 2; ++i) // the recordset that went closed itself
            QCOMPARE(all.Open({u"3"_s}).RecordCount(), 1);
    }

    void commandsRaise()
    {
        OtherProgram(mFile).Run(u"CREATE TABLE t AS SELECT '1' AS n"_s);
        OtherProgram(mFile).Run(u"CREATE UNIQUE INDEX i ON t (n)"_s);
        Connection connection;
        Use(connection, mFile);
        const auto raisedBy = [&](const QString& statement) {
            Command command(connection, u"Name"_s, statement, 1);
            return RaisedBy([&] { command.Open({u"1"_s}); }) + RaisedBy([&] { command.Open({u"1"_s, {}}); });
        };
        QVERIFY(raisedBy(u"SELECT n FROM t WHERE n = ?1"_s).contains(u"Name takes 1 values, not 2"_s));
        QVERIFY(raisedBy(u"SELECT ?1 FROM x"_s).contains(u"dir-db check"_s));
        QVERIFY(raisedBy(u"INSERT INTO t VALUES (?1)"_s).contains(u"UNIQUE"_s));
    }

    void connectionsRaise()
    {
        const auto openError = [](const QString& connectionString) {
            Connection connection;
            connection.SetConnectionString(connectionString);
            return RaisedBy([&] { connection.Open(); });
        };
        QVERIFY(RaisedBy([&] { RunOn(mFile, {}); }).contains(mFile + u" does not exist"_s));
        QVERIFY(RaisedBy([&] { RunOn(mFolder->path(), {}); }).contains(u"is not a file"_s));
        QVERIFY(openError(u"Provider=Other;Data Source="_s + mFile).contains(u"\"Other\" is not known"_s));
        QVERIFY(openError(u"Data Source="_s + mFile).contains(u"must have the form"_s));
        QVERIFY(QDir(mFolder->path()).isEmpty());
    }

    void filesThatAreNoDatabase_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected");
        const QTemporaryDir folder;
        OtherProgram(folder.filePath(u"f"_s)).Run(u"CREATE TABLE t AS SELECT zeroblob(20000)"_s);
        const QByteArray sound = ReadFile(folder.filePath(u"f"_s));
        const QByteArray jet("\0\1\0\0Standard Jet DB", 19);
        QTest::newRow("text") << QByteArray(5000, 'x') << u"is not a configuration database"_s;
        QTest::newRow("empty") << QByteArray() << u"is empty"_s;
        QTest::newRow("Jet") << jet.leftJustified(4096) << u"is a Jet database"_s;
        QTest::newRow("noise behind the signature") << sound.first(16).leftJustified(4096) << u"is damaged"_s;
        QTest::newRow("tables") << QByteArray(sound).replace(100, 99, QByteArray(99, 'x')) << u"is damaged"_s;
    }
    void filesThatAreNoDatabase()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, expected);
        WriteFile(mFile, bytes);
        for (int i = 0; i < 2; ++i) {
            const QString raised = RaisedBy([&] { RunOn(mFile, u"SELECT * FROM t"_s); });
            QVERIFY2(raised.contains(mFile) && raised.contains(expected), qPrintable(raised));
        }
        QCOMPARE(ReadFile(mFile), bytes);
        QCOMPARE(QDir(mFolder->path()).entryList(QDir::Files), QStringList(u"file"_s));
    }

    void lockedDatabase()
    {
        OtherProgram(mFile).Run(u"CREATE TABLE t (n)"_s);
        Connection connection;
        Use(connection, mFile);
        Command add(connection, u"Add"_s, u"INSERT INTO t VALUES (?1)"_s, 1);
        {
            OtherProgram other(mFile);
            other.Run(u"BEGIN EXCLUSIVE"_s);
            QVERIFY(RaisedBy([&] { connection.Open(); }).contains(u"is locked"_s) && !connection.IsOpen());
            other.Run(u"COMMIT"_s);
            add.Execute({u"1"_s});
            other.Run(u"BEGIN EXCLUSIVE"_s);
            QVERIFY(RaisedBy([&] { add.Execute({u"2"_s}); }).contains(u"is locked"_s));
        }
        QCOMPARE(add.Execute({u"3"_s}), 1);
        QCOMPARE(OtherProgram(mFile).Run(u"SELECT group_concat(n) FROM t"_s), u"1,3"_s);
    }

    void readOnlyDatabase_data()
    {
        QTest::addColumn<QString>("journal");
        QTest::addColumn<int>("fileMode");
        QTest::addColumn<int>("folderMode");
        QTest::newRow("file") << u"DELETE"_s << 0444 << 0777;
        QTest::newRow("folder, write-ahead") << u"WAL"_s << 0666 << 0555;
        QTest::newRow("unreadable") << u"DELETE"_s << 0 << 0555;
    }
    void readOnlyDatabase()
    {
        QFETCH(QString, journal);
        QFETCH(int, fileMode);
        QFETCH(int, folderMode);
        OtherProgram(mFile).Run(u"PRAGMA journal_mode="_s + journal);
        OtherProgram(mFile).Run(u"CREATE TABLE t (n)"_s);
        const QByteArray before = ReadFile(mFile);
        SetModes(fileMode, folderMode);
        QString raised;
        if (!RunAsOrdinaryUser([&] { raised = RaisedBy([&] { RunOn(mFile, u"DELETE FROM t"_s); }); }))
            QSKIP("cannot become an ordinary user");
        QVERIFY2(raised.contains(mFile) && raised.contains(u"its folder."_s), qPrintable(raised));
        SetModes(0600, 0700);
        QCOMPARE(ReadFile(mFile), before);
    }

    void fileNames_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString& name :
             {u"a#b"_s, u"a?mode=ro"_s, u"a%41"_s, u" a  b "_s, u"a;b='\"\\"_s, u"\u4e2d"_s, u"/a"_s})
            QTest::newRow(qPrintable(name)) << name;
    }
    void fileNames()
    {
        QFETCH(QString, name);
        const QString slash = name.startsWith(u'/') ? u"/"_s : QString(); // one more in front of the whole path
        const QString fileName = slash + mFolder->path() + u'/' + name;
        const QString raised = RaisedBy([&] {
            CreateDatabaseFile(fileName);
            RunOn(fileName, u"CREATE TABLE made (n)"_s);
        });
        QCOMPARE(raised, QString());
        QCOMPARE(QDir(mFolder->path()).entryList(QDir::Files).size(), 1);
        QCOMPARE(OtherProgram(fileName).Run(u"PRAGMA journal_mode"_s), u"wal"_s);
    }

    void hostConnectionsAndJournalModeStay()
    {
        OtherProgram(mFile).Run(u"CREATE TABLE t (n)"_s);
        QSqlDatabase host = QSqlDatabase::addDatabase(u"QSQLITE"_s);
        host.setDatabaseName(u":memory:"_s);
        QVERIFY(host.open());
        const QStringList before = QSqlDatabase::connectionNames();
        RunOn(mFile, u"DELETE FROM t"_s);
        QVERIFY(!RaisedBy([&] { RunOn(mFile, u"DELETE FROM x"_s); }).isEmpty());
        QCOMPARE(QSqlDatabase::connectionNames(), before);
        QVERIFY(host.isOpen() && QSqlDatabase::database().databaseName() == u":memory:"_s);
        QCOMPARE(OtherProgram(mFile).Run(u"PRAGMA journal_mode"_s), u"delete"_s);
    }
};

QTEST_GUILESS_MAIN(PlatformTest)
#include "PlatformTest.moc"
