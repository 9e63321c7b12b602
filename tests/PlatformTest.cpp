// The lowest floor: numbers, error reports, registry and database as the floors above rely on them.
#include "platform/data/Command.h"
#include "platform/data/Connection.h"
#include "platform/data/DatabaseFile.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/runtime/Numbers.h"
#include "platform/shell/Registry.h"

#include <QDir>
#include <QScopeGuard>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>
#include <sys/stat.h>
#include <unistd.h>

using namespace qor;

namespace {

QByteArray ReadAll(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

void WriteAll(const QString& fileName, const QByteArray& bytes)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush());
}

/// What a body raised; number 0 when it raised nothing.
struct Raised
{
    ErrorNumber number{};
    QString text;
};

template <typename Body>
Raised RaisedBy(Body&& body)
{
    try {
        body();
    } catch (const RuntimeError& error) {
        return {error.Number(), error.Description()};
    }
    return {};
}

/// A file opened by somebody else.
class RawDatabase
{
public:
    explicit RawDatabase(const QString& fileName)
    {
        mDatabase = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"raw"_s);
        mDatabase.setDatabaseName(fileName);
        mDatabase.open();
    }
    ~RawDatabase()
    {
        mDatabase = QSqlDatabase();
        QSqlDatabase::removeDatabase(u"raw"_s);
    }
    Q_DISABLE_COPY_MOVE(RawDatabase)

    /// Runs the statements; the first value of the last one.
    QVariant Run(const QStringList& statements)
    {
        QSqlQuery query(mDatabase);
        for (const QString& statement : statements) {
            if (!query.exec(statement))
                qFatal("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
        }
        return query.next() ? query.value(0) : QVariant();
    }

private:
    QSqlDatabase mDatabase;
};

void Use(Connection& connection, const QString& fileName)
{
    connection.SetConnectionString(u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="_s + fileName);
    connection.SetLockTimeout(50);
}

/// Permissions mean something to an ordinary user only.
class AsOrdinaryUser
{
public:
    AsOrdinaryUser() : mUser(geteuid()) { mActive = mUser != 0 || seteuid(65534) == 0; }
    ~AsOrdinaryUser()
    {
        if (mActive && mUser == 0 && seteuid(0) != 0)
            std::abort();
    }
    Q_DISABLE_COPY_MOVE(AsOrdinaryUser)
    bool IsActive() const { return mActive; }

private:
    uid_t mUser;
    bool mActive;
};

QStringList shownErrors;

void RecordError(const QString& text, const QString& title, bool critical)
{
    shownErrors << title + (critical ? u"!|"_s : u"|"_s) + text;
}

/// Every value as "key/name=type:bytes in hex".
QStringList Flat(const RegistryValues& values)
{
    QStringList flat;
    for (auto key = values.begin(); key != values.end(); ++key) {
        for (auto value = key->begin(); value != key->end(); ++value) {
            flat << u"%1/%2=%3:%4"_s.arg(key.key(), value.key())
                        .arg(value->type)
                        .arg(QString::fromLatin1(value->data.toHex()));
        }
    }
    flat.sort();
    return flat;
}

} // namespace

class PlatformTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> mFolder;

    QString Path(const QString& name) const { return mFolder->filePath(name); }
    QString MakeDatabase(const QString& name, const QStringList& statements = {})
    {
        RawDatabase(Path(name)).Run(QStringList(u"CREATE TABLE t (n INTEGER, s TEXT)"_s) + statements);
        return Path(name);
    }
    QString UseRegistry(const QByteArray& bytes)
    {
        WriteAll(Path(u"registry.reg"_s), bytes);
        qputenv("KELDAR_REGISTRY", QFile::encodeName(Path(u"registry.reg"_s)));
        return Path(u"registry.reg"_s);
    }

private Q_SLOTS:
    void init() { mFolder = std::make_unique<QTemporaryDir>(); }
    void cleanup() { chmod(QFile::encodeName(mFolder->path()), 0700); }

    void numbersInTexts_data();
    void numbersInTexts();
    void fieldsAsIntegers_data();
    void fieldsAsIntegers();
    void paddedNumbersSortAsNumbers();
    void errorsAreReported();
    void registryValueLines_data();
    void registryValueLines();
    void registryKeyLines_data();
    void registryKeyLines();
    void registryKeepsOtherLines_data();
    void registryKeepsOtherLines();
    void registryReplacesItsOwnKeys();
    void registryThatCannotChange();
    void commandsAndRecordsets();
    void commandsRaise_data();
    void commandsRaise();
    void filesThatAreNoDatabase_data();
    void filesThatAreNoDatabase();
    void connectionStrings();
    void lockedDatabase();
    void readOnlyDatabase_data();
    void readOnlyDatabase();
    void fileNames_data();
    void fileNames();
    void newDatabaseFile();
    void journalModeStays_data();
    void journalModeStays();
    void hostConnectionsStay();
};

void PlatformTest::numbersInTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("number");
    const auto accepted = [](const char* text, double number) {
        QTest::addRow("'%s'", text) << QString::fromLatin1(text) << number;
    };
    accepted("12", 12);
    accepted(" \t-3.5 ", -3.5);
    accepted("+.5", .5);
    accepted("7.", 7);
    accepted("1e3", 1000);
    accepted("1E-2", .01);
    accepted("007", 7);
    for (const char* text : {"", " ", ".", "-", "+-1", "1 2", "1,5", "1.2.3", "e5", "1e", "1e+", "12a",
                             "0x1F", "inf", "nan", "1e999"})
        QTest::addRow("not '%s'", text) << QString::fromLatin1(text) << qQNaN();
    QTest::newRow("digits of another script") << u"\u0661\u0662"_s << qQNaN();
}

void PlatformTest::numbersInTexts()
{
    QFETCH(QString, text);
    QFETCH(double, number);
    const auto found = NumberFromText(text);
    QCOMPARE(IsNumeric(text), !qIsNaN(number));
    if (!qIsNaN(number))
        QCOMPARE(found.value(), number);
}

void PlatformTest::fieldsAsIntegers_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("error");
    constexpr int overflow = static_cast<int>(ErrorNumber::Overflow);
    constexpr int mismatch = static_cast<int>(ErrorNumber::TypeMismatch);
    QTest::newRow("integer") << QVariant(-32768) << -32768 << 0;
    QTest::newRow("text") << QVariant(u" 7 "_s) << 7 << 0;
    QTest::newRow("half goes to even, down") << QVariant(2.5) << 2 << 0;
    QTest::newRow("half goes to even, up") << QVariant(3.5) << 4 << 0;
    QTest::newRow("just inside") << QVariant(32767.4) << 32767 << 0;
    QTest::newRow("too large") << QVariant(32768) << 0 << overflow;
    QTest::newRow("too large when rounded") << QVariant(32767.5) << 0 << overflow;
    QTest::newRow("empty text") << QVariant(u""_s) << 0 << mismatch;
    QTest::newRow("word with a place marker") << QVariant(u"%1 x"_s) << 0 << mismatch;
}

void PlatformTest::fieldsAsIntegers()
{
    QFETCH(QVariant, value);
    QFETCH(int, error);
    QVERIFY(!Int16FromField(QVariant(), u"Max_number"_s));
    std::optional<qint16> found;
    const Raised raised = RaisedBy([&] { found = Int16FromField(value, u"Max_number"_s); });
    QCOMPARE(static_cast<int>(raised.number), error);
    if (error == 0)
        QTEST(int(found.value()), "number");
    else
        QVERIFY2(raised.text.startsWith(u"Max_number"_s) && raised.text.contains(value.toString()),
                 qPrintable(raised.text));
}

void PlatformTest::paddedNumbersSortAsNumbers()
{
    QCOMPARE(ZeroPaddedNumber(10), u"000000000000010.000"_s);
    QCOMPARE(ZeroPaddedNumber(-3.5), u"-000000000000003.500"_s);
    QVERIFY(ZeroPaddedNumber(9) < ZeroPaddedNumber(10));
}

void PlatformTest::errorsAreReported()
{
    shownErrors.clear();
    SetErrorBox(RecordError);
    bool finished = false;
    const int number = ReportErrors(u"LoadData"_s, [&]() -> int {
        const auto guard = qScopeGuard([&] { finished = shownErrors.isEmpty(); });
        throw RuntimeError(ErrorNumber::Overflow, u"too large"_s, u"ENGINE"_s);
    });
    QCOMPARE(number, 0);
    QVERIFY2(finished, "the body's guards run before the report is shown");
    QVERIFY(!ReportErrors(u"Check"_s, []() -> bool { throw std::bad_alloc(); }));
    ReportErrors(u"Odd"_s, [] { throw 1; });
    QCOMPARE(ReportErrors(u"Fine"_s, [] { return 5; }), 5);
    GuardEvent([] { throw RuntimeError(ErrorNumber::TypeMismatch, u"no %1 number"_s); });
    GuardEvent([] { throw std::runtime_error("plain"); });
    const QStringList expected{
        u"Error|Source: ENGINE - LoadData \r\nDescription: too large"_s,
        u"Error|Source: QOR_DIR_NODE - Check \r\nDescription: Out of memory. Close other programs and try again."_s,
        u"Error|Source: QOR_DIR_NODE - Odd \r\nDescription: Internal error."_s,
        u"QOR_DIR_NODE!|Run-time error '13':\r\n\r\nno %1 number"_s,
        u"QOR_DIR_NODE!|Run-time error '51':\r\n\r\nplain"_s};
    QCOMPARE(shownErrors, expected);
}

void PlatformTest::registryValueLines_data()
{
    QTest::addColumn<QString>("lines");
    QTest::addColumn<QString>("value"); // "type:bytes in hex" of the value v, or empty
    QTest::addColumn<bool>("version4");
    const auto row = [](const char* name, const QString& lines, const QString& value, bool version4 = false) {
        QTest::newRow(name) << lines << value << version4;
    };
    row("text", u"\"v\"=\"a\\\\b \\\"c\\\" [d];\""_s, u"1:615c6220226322205b645d3b00"_s);
    row("empty text", u"\"v\"=\"\""_s, u"1:00"_s);
    row("text that ends in a backslash", u"\"v\"=\"C:\\\\\""_s, u"1:433a5c00"_s);
    row("name in capitals, blanks", u" \"V\" = \"a\" "_s, u"1:6100"_s);
    row("number", u"\"v\"=dword:0000002a"_s, u"4:2a000000"_s);
    row("largest number", u"\"v\"=dword:ffffffff"_s, u"4:ffffffff"_s);
    row("bytes", u"\"v\"=hex:00,ff,7"_s, u"3:00ff07"_s);
    row("no bytes", u"\"v\"=hex:"_s, u"3:"_s);
    row("wide text", u"\"v\"=hex(2):e4,00,25,00,00,00"_s, u"2:c3a42500"_s);
    row("narrow text of version 4", u"\"v\"=hex(2):25,41,00"_s, u"2:254100"_s, true);
    row("wide texts", u"\"v\"=hex(7):61,00,00,00,62,00,00,00,00,00"_s, u"7:6100620000"_s);
    row("another type", u"\"v\"=hex(b):01,00"_s, u"11:0100"_s);
    row("continued bytes", u"\"v\"=hex:01,\\\r\n  02,\\\r\n  03"_s, u"3:010203"_s);
    row("continuation cut off", u"\"v\"=hex:01,\\"_s, {});
    row("no value", u"\"v\"="_s, {});
    row("no equals sign", u"\"v\" \"a\""_s, {});
    row("open name", u"\"v=\"a\""_s, {});
    row("open text", u"\"v\"=\"a"_s, {});
    row("text that is an escape only", u"\"v\"=\"\\"_s, {});
    row("bare text", u"\"v\"=a"_s, {});
    row("not a number", u"\"v\"=dword:12x"_s, {});
    row("number too large", u"\"v\"=dword:100000000"_s, {});
    row("byte too large", u"\"v\"=hex:100"_s, {});
    row("not a byte", u"\"v\"=hex:0g"_s, {});
    row("not a type", u"\"v\"=hex(x):00"_s, {});
    row("open type", u"\"v\"=hex(1:00"_s, {});
    row("another word", u"\"v\"=word:1"_s, {});
    row("comment", u";\"v\"=\"a\""_s, {});
    row("zeros and noise", u"\0\uFFFF]=[\"@\\"_s, {});
}

void PlatformTest::registryValueLines()
{
    QFETCH(QString, lines);
    QFETCH(bool, version4);
    QFETCH(QString, value);
    const QString header = version4 ? u"REGEDIT4"_s : u"Windows Registry Editor Version 5.00"_s;
    const QString text =
        header + u"\r\n\r\n[K]\r\n\"a\"=dword:1\r\n"_s + lines + u"\r\n\"z\"=dword:2\r\n@=\"d\"\r\n"_s;
    QStringList expected{u"k/=1:6400"_s, u"k/a=4:01000000"_s, u"k/z=4:02000000"_s};
    if (!value.isEmpty())
        expected.insert(2, u"k/v="_s + value);
    QCOMPARE(Flat(ParseRegistryText(text)), expected);
}

void PlatformTest::registryKeyLines_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("key"); // that the value after the line belongs to, or empty
    QTest::newRow("key, capitals") << u"[Other\\Sub]"_s << u"other\\sub"_s;
    QTest::newRow("key with a bracket") << u"[a]b]"_s << u"a]b"_s;
    QTest::newRow("deletion") << u"[-K]"_s << QString();
    QTest::newRow("open key") << u"[Other"_s << QString();
    QTest::newRow("empty key") << u"[]"_s << QString();
    QTest::newRow("key after cut bytes") << u"\"x\"=hex:01,\\\n[Other]"_s << u"other"_s;
}

void PlatformTest::registryKeyLines()
{
    QFETCH(QString, line);
    QFETCH(QString, key);
    QStringList expected{u"k/a=4:01000000"_s};
    if (!key.isEmpty())
        expected << key + u"/v=4:02000000"_s;
    expected.sort();
    QCOMPARE(Flat(ParseRegistryText(u"[K]\n\"a\"=dword:1\n"_s + line + u"\n\"v\"=dword:2"_s)), expected);
}

void PlatformTest::registryKeepsOtherLines_data()
{
    QTest::addColumn<QByteArray>("before");
    const QString text =
        u"Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CLASSES_ROOT\\CLSID\\{A}B]\r\n@=\"\u00e4\"\n"
        "damaged \"[\r\n; remark\n[HKEY_LOCAL_MACHINE\\CLSID\\{A}]\r\n\"x\"=hex:1,\\\r\n 2\r\n\r\n"_s;
    const auto encoded = [&](QStringConverter::Encoding encoding, QStringConverter::Flag flag) {
        QStringEncoder encode(encoding, flag);
        return QByteArray(encode(text));
    };
    QTest::newRow("UTF-8") << text.toUtf8();
    QTest::newRow("UTF-8 with mark") << encoded(QStringConverter::Utf8, QStringConverter::Flag::WriteBom);
    QTest::newRow("UTF-16") << encoded(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
    QTest::newRow("UTF-16, other byte order")
        << encoded(QStringConverter::Utf16BE, QStringConverter::Flag::WriteBom);
    QTest::newRow("8-bit") << text.toLatin1();
}

void PlatformTest::registryKeepsOtherLines()
{
    QFETCH(QByteArray, before);
    const QString fileName = UseRegistry(before);
    const RegistryEntry entry{u"CLSID\\{A}"_s, {{u""_s, u"C:\\a \"b\""_s}, {u"n"_s, u"\u00e4"_s}}};
    QCOMPARE(ChangeClassKeys({entry.path}, {entry}), std::nullopt);
    QVERIFY(ReadAll(fileName) != before);
    const auto key = RegistryKey::Open(RegistryRoot::ClassesRoot, u"clsid\\{a}"_s);
    QVERIFY(key);
    QCOMPARE(key->Query(u""_s).value().data, QByteArray("C:\\a \"b\"\0", 9));
    QCOMPARE(key->Query(u"N"_s).value().data, QByteArray("\xC3\xA4\0", 3));
    QCOMPARE(ChangeClassKeys({entry.path}, {}), std::nullopt);
    QCOMPARE(ReadAll(fileName), before);
}

void PlatformTest::registryReplacesItsOwnKeys()
{
    const QString fileName =
        UseRegistry("[HKEY_CLASSES_ROOT\\Q]\n@=\"old\"\n[hkey_classes_root\\q\\Clsid]\n@=\"old\"\n"
                    "[HKEY_CLASSES_ROOT\\R]\n@=\"kept\"");
    const RegistryEntry entry{u"Q"_s, {{u""_s, u"new"_s}}};
    QCOMPARE(ChangeClassKeys({u"Q"_s}, {entry}), std::nullopt);
    const QByteArray once = ReadAll(fileName);
    QCOMPARE(once,
             QByteArray("[HKEY_CLASSES_ROOT\\R]\n@=\"kept\"\r\n[HKEY_CLASSES_ROOT\\Q]\r\n@=\"new\"\r\n\r\n"));
    QCOMPARE(ChangeClassKeys({u"Q"_s}, {entry}), std::nullopt);
    QCOMPARE(ReadAll(fileName), once);

    qputenv("KELDAR_REGISTRY", QFile::encodeName(Path(u"new/folder/registry.reg"_s)));
    QVERIFY(!RegistryKey::Open(RegistryRoot::ClassesRoot, u"Q"_s));
    QCOMPARE(ChangeClassKeys({u"Q"_s}, {}), std::nullopt);
    QVERIFY2(!QFileInfo::exists(Path(u"new"_s)), "nothing to take out, nothing is made");
    QCOMPARE(ChangeClassKeys({}, {entry}), std::nullopt);
    QVERIFY(RegistryKey::Open(RegistryRoot::ClassesRoot, u"Q"_s));
}

void PlatformTest::registryThatCannotChange()
{
    const RegistryEntry entry{u"Q"_s, {{u""_s, u"new"_s}}};
    const QString fileName = UseRegistry("[HKEY_CLASSES_ROOT\\R]\n");
    qputenv("KELDAR_REGISTRY", QFile::encodeName(mFolder->path()));
    QVERIFY(ChangeClassKeys({}, {entry}).value().contains(mFolder->path()));
    qputenv("KELDAR_REGISTRY", QFile::encodeName(fileName + u"/below"_s));
    QVERIFY(ChangeClassKeys({}, {entry}).value().contains(fileName));
    qputenv("KELDAR_REGISTRY", "/proc/self/mem"); // opens, but its first bytes cannot be read
    QVERIFY(ChangeClassKeys({}, {entry}).value().contains(u"cannot be read"_s));

    qputenv("KELDAR_REGISTRY", QFile::encodeName(fileName));
    chmod(QFile::encodeName(mFolder->path()), 0555);
    const AsOrdinaryUser user;
    if (!user.IsActive())
        QSKIP("cannot become an ordinary user");
    QVERIFY(ChangeClassKeys({}, {entry}).value().contains(u"cannot be written"_s));
    QCOMPARE(ReadAll(fileName), QByteArray("[HKEY_CLASSES_ROOT\\R]\n"));
}

void PlatformTest::commandsAndRecordsets()
{
    Connection connection;
    Use(connection, MakeDatabase(u"d.mdb"_s, {u"INSERT INTO t VALUES (1, NULL)"_s}));
    Command add(connection, u"Add"_s, u"INSERT INTO t (s, n) VALUES (?2, ?1)"_s, 2);
    QCOMPARE(add.Execute({u"2"_s, u"O'Neil; \u4e2d\"--"_s}), 1);
    QCOMPARE(add.Execute({u"x"_s, QString()}), 1);
    Command all(connection, u"All"_s,
                u"SELECT s, n AS Number FROM t WHERE n <> ?1 ORDER BY rowid"_s, 1);
    Recordset rows = all.Open({u"0"_s});
    QCOMPARE(rows.RecordCount(), 3);
    QVERIFY(rows.Field(u"S"_s).isNull());
    QCOMPARE(rows.Field(u"number"_s), QVariant(1));
    rows.MoveNext();
    QCOMPARE(rows.Field(u"s"_s), QVariant(u"O'Neil; \u4e2d\"--"_s));
    QCOMPARE(rows.Field(u"NUMBER"_s), QVariant(2));
    rows.MoveNext();
    QVERIFY2(!rows.Field(0).isNull() && rows.Field(0).toString().isEmpty(), "a null text is the empty text");
    QVERIFY(RaisedBy([&] { rows.FieldIndex(u"Nix"_s); }).text.contains(u"Nix"_s));
    rows.MoveNext();
    QVERIFY(rows.EndOfFile());
    QVERIFY(RaisedBy([&] { rows.Field(0); }).number == ErrorNumber::Provider);
    QVERIFY(RaisedBy([&] { rows.MoveNext(); }).number == ErrorNumber::Provider);

    QVERIFY(RaisedBy([&] { all.Open({u"0"_s}); }).text.contains(u"All"_s));
    const Recordset moved = std::move(rows);
    QVERIFY(RaisedBy([&] { add.Execute({u"0"_s, u"while rows are read"_s}); }).number == ErrorNumber{});
    QVERIFY(RaisedBy([&] { all.Open({u"0"_s}); }).text.contains(u"open"_s));
    const_cast<Recordset&>(moved).Close();
    QVERIFY(RaisedBy([&] { moved.EndOfFile(); }).number == ErrorNumber::ObjectNotSet);
    QVERIFY(all.Open({u"1"_s}).RecordCount() == 3);
    QVERIFY2(all.Open({u"1"_s}).IsOpen(), "a recordset that is gone is closed");
}

void PlatformTest::commandsRaise_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("text");
    QTest::newRow("fewer values") << u"SELECT ?1"_s << QStringList() << u"takes 1 values, not 0"_s;
    QTest::newRow("more values") << u"SELECT ?1"_s << QStringList{u"1"_s, u"2"_s}
                                 << u"takes 1 values, not 2"_s;
    QTest::newRow("no such table") << u"SELECT ?1 FROM x"_s << QStringList(u"1"_s) << u"dir-db check"_s;
    QTest::newRow("no such column") << u"SELECT x FROM t WHERE n = ?1"_s << QStringList(u"1"_s)
                                    << u"dir-db check"_s;
    QTest::newRow("not a statement") << u"SELEC ?1"_s << QStringList(u"1"_s) << u"syntax"_s;
    QTest::newRow("broken rule") << u"INSERT INTO u VALUES (?1)"_s << QStringList(u"1"_s) << u"UNIQUE"_s;
}

void PlatformTest::commandsRaise()
{
    QFETCH(QString, statement);
    QFETCH(QStringList, values);
    QFETCH(QString, text);
    Connection connection;
    Use(connection,
        MakeDatabase(u"d.mdb"_s, {u"CREATE TABLE u (n UNIQUE)"_s, u"INSERT INTO u VALUES ('1')"_s}));
    Command command(connection, u"Name"_s, statement, 1);
    for (int i = 0; i < 2; ++i) {
        const Raised raised = RaisedBy([&] { command.Open(values); });
        QVERIFY(raised.number == ErrorNumber::Provider);
        QVERIFY2(raised.text.contains(text), qPrintable(raised.text));
    }
}

void PlatformTest::filesThatAreNoDatabase_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("text") << QByteArray("Node,Name\r\n").repeated(100)
                          << u"is not a configuration database"_s;
    QTest::newRow("empty") << QByteArray() << u"is empty"_s;
    QTest::newRow("Jet") << QByteArray("\0\1\0\0Standard Jet DB\0", 20).leftJustified(4096)
                         << u"is a Jet database"_s;
    QTest::newRow("Jet, cut") << QByteArray("\0\1\0\0Standard Jet DB", 19) << u"is a Jet database"_s;
    QTest::newRow("Jet's successor") << QByteArray("\0\1\0\0Standard ACE DB\0", 20).leftJustified(4096)
                                     << u"is a Jet database"_s;
    QTest::newRow("noise behind the signature")
        << QByteArray("SQLite format 3\0", 16).leftJustified(4096, 'x') << u"is damaged"_s;
    QTest::newRow("half the file") << QByteArray("half") << u"is damaged"_s;
    QTest::newRow("damaged list of tables") << QByteArray("list") << u"is damaged"_s;
}

void PlatformTest::filesThatAreNoDatabase()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    const QString fileName = Path(u"d.mdb"_s);
    if (bytes == "half" || bytes == "list") {
        MakeDatabase(u"d.mdb"_s, {u"INSERT INTO t VALUES (1, zeroblob(20000))"_s});
        const QByteArray sound = ReadAll(fileName);
        bytes = bytes == "half" ? sound.first(sound.size() / 2)
                                : QByteArray(sound).replace(100, 200, QByteArray(200, 'x'));
    }
    WriteAll(fileName, bytes);
    for (int i = 0; i < 2; ++i) {
        Connection connection;
        Use(connection, fileName);
        Command read(connection, u"Read"_s, u"SELECT * FROM t"_s, 0);
        const Raised raised = RaisedBy([&] { read.Open({}); });
        QVERIFY(raised.number == ErrorNumber::Provider);
        QVERIFY2(raised.text.contains(fileName) && raised.text.contains(text), qPrintable(raised.text));
    }
    QCOMPARE(ReadAll(fileName), bytes);
    QCOMPARE(QDir(mFolder->path()).entryList(QDir::Files), QStringList(u"d.mdb"_s));
}

void PlatformTest::connectionStrings()
{
    const auto openError = [](const QString& connectionString) {
        Connection connection;
        connection.SetConnectionString(connectionString);
        const Raised raised = RaisedBy([&] { connection.Open(); });
        return connection.IsOpen() || raised.number != ErrorNumber::Provider ? u"none"_s : raised.text;
    };
    const QString jet = u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="_s;
    QVERIFY(openError(jet + Path(u"none.mdb"_s)).contains(Path(u"none.mdb"_s) + u" does not exist"_s));
    QVERIFY(openError(jet + mFolder->path()).contains(u"is not a file"_s));
    QVERIFY(openError(u"Provider=Other;Data Source=x"_s).contains(u"Other"_s));
    QVERIFY(openError(u"Data Source=x"_s).contains(u"form"_s));
    QVERIFY(openError({}).contains(u"form"_s));
    QVERIFY(QDir(mFolder->path()).isEmpty());
}

void PlatformTest::lockedDatabase()
{
    Connection connection;
    Use(connection, MakeDatabase(u"d.mdb"_s));
    Command add(connection, u"Add"_s, u"INSERT INTO t VALUES (?1, NULL)"_s, 1);
    {
        RawDatabase other(Path(u"d.mdb"_s));
        other.Run({u"BEGIN EXCLUSIVE"_s});
        QVERIFY(RaisedBy([&] { connection.Open(); }).text.contains(u"is locked"_s));
        QVERIFY(!connection.IsOpen());
        other.Run({u"COMMIT"_s});
        add.Execute({u"1"_s});
        other.Run({u"BEGIN EXCLUSIVE"_s});
        QVERIFY(RaisedBy([&] { add.Execute({u"2"_s}); }).text.contains(u"is locked"_s));
    }
    QCOMPARE(add.Execute({u"2"_s}), 1);
    QCOMPARE(RawDatabase(Path(u"d.mdb"_s)).Run({u"SELECT group_concat(n) FROM t"_s}).toString(), u"1,2"_s);
}

void PlatformTest::readOnlyDatabase_data()
{
    QTest::addColumn<QString>("journal");
    QTest::addColumn<int>("fileMode");
    QTest::addColumn<int>("folderMode");
    QTest::newRow("file") << u"DELETE"_s << 0444 << 0777;
    QTest::newRow("folder") << u"DELETE"_s << 0666 << 0555;
    QTest::newRow("file, write-ahead") << u"WAL"_s << 0444 << 0777;
    QTest::newRow("folder, write-ahead") << u"WAL"_s << 0666 << 0555;
    QTest::newRow("unreadable") << u"DELETE"_s << 0 << 0555;
}

void PlatformTest::readOnlyDatabase()
{
    QFETCH(QString, journal);
    QFETCH(int, fileMode);
    QFETCH(int, folderMode);
    const QString fileName = MakeDatabase(u"d.mdb"_s, {u"PRAGMA journal_mode="_s + journal});
    const QByteArray before = ReadAll(fileName);
    chmod(QFile::encodeName(fileName), static_cast<mode_t>(fileMode));
    chmod(QFile::encodeName(mFolder->path()), static_cast<mode_t>(folderMode));
    {
        const AsOrdinaryUser user;
        if (!user.IsActive())
            QSKIP("cannot become an ordinary user");
        Connection connection;
        Use(connection, fileName);
        Command add(connection, u"Add"_s, u"INSERT INTO t VALUES (1, NULL)"_s, 0);
        const Raised raised = RaisedBy([&] { add.Execute({}); });
        QVERIFY2(raised.text.contains(fileName) && raised.text.contains(u" folder."_s),
                 qPrintable(raised.text));
    }
    chmod(QFile::encodeName(fileName), 0600);
    QCOMPARE(ReadAll(fileName), before);
}

void PlatformTest::fileNames_data()
{
    QTest::addColumn<QString>("name");
    int row = 0;
    for (const QString& name :
         {u"a#b.mdb"_s, u"a?mode=ro.mdb"_s, u"a%41.mdb"_s, u" a  b .mdb"_s, u"a;b='\".mdb"_s, u"a+&=\\.mdb"_s,
          u"\u00e4\u4e2d.mdb"_s, u"file:a.mdb"_s, u":memory:"_s})
        QTest::addRow("%d: %s", ++row, qPrintable(name)) << name;
}

void PlatformTest::fileNames()
{
    QFETCH(QString, name);
    for (const QString& fileName : {Path(name), u'/' + Path(u"2"_s + name)}) {
        CreateDatabaseFile(fileName);
        Connection connection;
        Use(connection, fileName);
        Command(connection, u"Make"_s, u"CREATE TABLE made (n)"_s, 0).Execute({});
        Command read(connection, u"Read"_s, u"SELECT * FROM made"_s, 0);
        QCOMPARE(read.Open({}).RecordCount(), 0);
    }
    QCOMPARE(QDir(mFolder->path()).entryList(QDir::Files, QDir::Unsorted).size(), 2);
    QVERIFY(QFileInfo::exists(Path(name)));
}

void PlatformTest::newDatabaseFile()
{
    const QString fileName = Path(u"new.mdb"_s);
    CreateDatabaseFile(fileName);
    const auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    QVERIFY(!(QFile::permissions(fileName) & ~ownerOnly));
    const QByteArray before = ReadAll(fileName);
    QVERIFY(RaisedBy([&] { CreateDatabaseFile(fileName); }).text.contains(u"exists already"_s));
    QCOMPARE(ReadAll(fileName), before);
    const QString nowhere = Path(u"none/new.mdb"_s);
    QVERIFY(RaisedBy([&] { CreateDatabaseFile(nowhere); }).text.contains(nowhere));
    QCOMPARE(QDir(mFolder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList(u"new.mdb"_s));
}

void PlatformTest::journalModeStays_data()
{
    QTest::addColumn<QString>("mode");
    QTest::newRow("delete") << u"delete"_s;
    QTest::newRow("write-ahead") << u"wal"_s;
}

void PlatformTest::journalModeStays()
{
    QFETCH(QString, mode);
    const QString fileName = MakeDatabase(u"d.mdb"_s, {u"PRAGMA journal_mode="_s + mode});
    {
        Connection connection;
        Use(connection, fileName);
        Command(connection, u"Add"_s, u"INSERT INTO t VALUES (1, NULL)"_s, 0).Execute({});
    }
    QCOMPARE(RawDatabase(fileName).Run({u"PRAGMA journal_mode"_s}).toString(), mode);
    QCOMPARE(QDir(mFolder->path()).entryList(QDir::Files), QStringList(u"d.mdb"_s));
}

void PlatformTest::hostConnectionsStay()
{
    const QString fileName = MakeDatabase(u"d.mdb"_s);
    QSqlDatabase host = QSqlDatabase::addDatabase(u"QSQLITE"_s);
    host.setDatabaseName(u":memory:"_s);
    QVERIFY(host.open());
    const QStringList before = QSqlDatabase::connectionNames();
    {
        Connection one;
        Connection two;
        Use(one, fileName);
        Use(two, fileName);
        one.Open();
        two.Open();
        QCOMPARE(QSqlDatabase::connectionNames().size(), before.size() + 2);
        Use(one, Path(u"none"_s));
        one.Open();
        Connection failing;
        Use(failing, mFolder->path());
        QVERIFY(RaisedBy([&] { failing.Open(); }).number == ErrorNumber::Provider);
    }
    QCOMPARE(QSqlDatabase::connectionNames(), before);
    QVERIFY(host.isOpen() && QSqlDatabase::database().databaseName() == u":memory:"_s);
    host = QSqlDatabase();
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
}

QTEST_GUILESS_MAIN(PlatformTest)
#include "PlatformTest.moc"
