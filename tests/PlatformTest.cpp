// The floors below the rules: numbers, error reports, registry and folders as the floors above rely on them.
#include "platform/runtime/ErrorReport.h"
#include "platform/runtime/Numbers.h"
#include "platform/shell/ReadFile.h"
#include "platform/shell/Registry.h"
#include "platform/shell/ReplaceFile.h"
#include "platform/shell/TrustedPath.h"
#include "store/KELDARPlusFilesAndFolders.h"
#include "support/Cases.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"

#include <QScopeGuard>
#include <QStringEncoder>

using namespace qor;

namespace {

QStringList shownErrors;

QVariant ValueV(const QString& key = u"K"_s, const QVariant& defaultValue = {})
{
    return RegGetValue(RegistryRoot::LocalMachine, key, u"V"_s, defaultValue);
}

} // namespace

class PlatformTest : public FileTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        StartAnew();
        qputenv("KELDAR_REGISTRY", QFile::encodeName(mFile));
    }
    void cleanup() { SetModes(0600, 0700); }

    void numbersInTexts()
    {
        for (const auto& [text, number] : {std::pair(" \t-03.5 ", -3.5), {"+.5", 0.5}, {"7.E-2", 0.07}})
            QCOMPARE(NumberFromText(QString::fromLatin1(text)), std::optional(number));
        for (const char* text : {" ", ".", "+-1", "1,5", "1 2", "e5", "1e+", "0x1F", "inf", "1e999"})
            QVERIFY2(!NumberFromText(QString::fromLatin1(text)), text);
    }

    void errorsAreReported()
    {
        SetErrorBox([](const QString& text, const QString& title, bool critical) {
            shownErrors << title + (critical ? u"!|"_s : u"|"_s) + text;
        });
        bool isFinished = false;
        ReportErrors(u"LoadData"_s, [&] {
            const auto guard = qScopeGuard([&] { isFinished = shownErrors.isEmpty(); });
            throw RuntimeError(ErrorNumber::Overflow, u"too large"_s, u"ENGINE"_s);
        });
        QVERIFY2(isFinished, "the body's guards run before the report is shown");
        QVERIFY(!ReportErrors(u"Check"_s, []() -> bool { throw 1; }));
        GuardEvent([] { throw RuntimeError(ErrorNumber::TypeMismatch, u"no %1 number"_s); });
        GuardEvent([] { throw std::runtime_error("plain"); });
        QCOMPARE(shownErrors.join(u'\n'), u"Error|Source: ENGINE - LoadData \r\nDescription: too large\n"
                                          "Error|Source: QOR_DIR_NODE - Check \r\nDescription: Internal error.\n"
                                          "QOR_DIR_NODE!|Run-time error '13':\r\n\r\nno %1 number\n"
                                          "QOR_DIR_NODE!|Run-time error '51':\r\n\r\nplain"_s);
    }

    // Lines (with ' for ") behind a good one, and the value v that is read of them; the key after them is always read.
    void registryValues()
    {
        const auto read = [&](const QString& lines, const QString& header = {}) {
            const QString text = header + u"[HKEY_LOCAL_MACHINE\\K]\n'a'=dword:1\n"_s + lines +
                                 u"\r\n[hkey_local_machine\\NEXT]\r\n'v'='next'"_s;
            WriteFile(mFile, QString(text).replace(u'\'', u'"').toUtf8());
            return ValueV(u"Next"_s) == u"next"_s ? ValueV() : QVariant(u"The next key is lost"_s);
        };
        QCOMPARE(read(u"'v'='a\\\\b \\'c\\' [d];\u00e4%X%'"_s), QVariant(u"a\\b \"c\" [d];\u00e4%X%"_s));
        QCOMPARE(read(u" 'V' = 'C:\\\\' "_s), QVariant(u"C:\\"_s));
        QCOMPARE(read(u"'v'=dword:fffffffe"_s), QVariant(-2));
        QCOMPARE(read(u"'v'=hex:00,\\\r\n  ff,7,\\\r\n  03"_s), QVariant(QByteArray("\0\xFF\7\3", 4)));
        QCOMPARE(read(u"'v'=hex(2):25,00,e4,00,00,00"_s), QVariant(u"%\u00e4"_s));
        QCOMPARE(read(u"'v'=hex(2):25,41,00"_s, u"REGEDIT4\n\n"_s), QVariant(u"%A"_s));
        QCOMPARE(read(u"'v'=hex(7):61,00,00,00,62,00,00,00,00,00"_s), QVariant(u"a\0b"_s));
        QCOMPARE(read(u"'v'=hex(7):00,00"_s), QVariant(u""_s));
        QCOMPARE(read(u"'v'=hex(4):"_s), QVariant(0));
        QCOMPARE(RaisedBy([&] { read(u"'v'=hex(b):1"_s); }), u"1001: Unsupported value type"_s);
        QCOMPARE(read(u"'v'=hex:01,\\\n'v'=dword:5"_s), QVariant(5));
        for (const QString& lines :
             {u"'v'=hex:01,\\"_s, u"'v'=\n'v'=a\n'v'='\\\n'v'=dword:100000000"_s,
              u"'v'=hex:100\n'v'=hex:0g\n'v'=hex(x):00\n'v'=hex(1:00"_s, u"'v' 'a'\n'v='a'\n\0\uFFFF]=['@\\"_s,
              u"[-HKEY_LOCAL_MACHINE\\K]\n'v'='a'"_s, u"[HKEY_LOCAL_MACHINE\\K\n'v'='a'"_s, u"[]\n'v'='a'"_s})
            QCOMPARE(read(lines), QVariant());
        QCOMPARE(ValueV(u"K"_s, 5), QVariant(5));
    }

    void registryKeepsOtherLines()
    {
        const QString text = u"Version 5.00\r\n[HKEY_CLASSES_ROOT\\CLSID\\{A}B]\r\n@=\"\u00e4\"\ndamaged \"[\r\n"
                             "; remark\n[HKEY_LOCAL_MACHINE\\CLSID\\{A}]\r\n\"x\"=hex:1,\\\r\n 2\r\n"_s;
        const auto marked = [&](QStringConverter::Encoding encoding) {
            return QByteArray(QStringEncoder(encoding, QStringEncoder::Flag::WriteBom)(text));
        };
        const RegistryEntry entry{u"HKEY_CLASSES_ROOT\\CLSID\\{A}"_s, {{{}, u"C:\\a \"b\""_s}, {u"n"_s, u"\u00e4"_s}}};
        for (const QByteArray& before :
             {marked(QStringConverter::Utf8), marked(QStringConverter::Utf16LE), text.chopped(2).toLatin1()}) {
            WriteFile(mFile, before);
            AddToRegistry({entry});
            for (const auto& [name, value] : entry.texts)
                QCOMPARE(RegGetValue(RegistryRoot::ClassesRoot, u"clsid\\{a}"_s, name), QVariant(value));
            RemoveFromRegistry({entry});
            QCOMPARE(ReadFile(mFile), before);
        }
    }

    void registryChangesItsOwnValuesOnly()
    {
        const QByteArray others = "\"x\"=\"kept\"\n\n[hkey_classes_root\\q\\Sub]\n@=\"kept\"\n; note\n";
        const auto text = [&](const QByteArray& q, const QByteArray& s, const QByteArray& n = {}) {
            return "[HKEY_CLASSES_ROOT\\Q]\n" + q + others + s + "; note\n[HKEY_CLASSES_ROOT\\N]\n" + n + "damaged";
        };
        const QByteArray keyS = "[HKEY_CLASSES_ROOT\\Q\\S]\n";
        const QByteArray value = "@=\"new\"\r\n";
        const QList<RegistryEntry> entries{{u"HKEY_CLASSES_ROOT\\Q"_s, {{{}, u"new"_s}, {u"n"_s, u"1"_s}}},
                                           {u"HKEY_CLASSES_ROOT\\Q\\S"_s, {{{}, u"new"_s}}},
                                           {u"HKEY_CLASSES_ROOT\\N"_s, {{{}, u"new"_s}}}};
        WriteFile(mFile, text("@=hex(2):41,\\\n 00\n", keyS));
        AddToRegistry(entries);
        QCOMPARE(ReadFile(mFile), text("\"n\"=\"1\"\r\n" + value, keyS + value, value));
        RemoveFromRegistry(entries);
        QCOMPARE(ReadFile(mFile), text({}, {}));
    }

    void registryThatCannotChange()
    {
        const auto raisedFor = [](const QString& fileName) {
            qputenv("KELDAR_REGISTRY", QFile::encodeName(fileName));
            return RaisedBy([] { AddToRegistry({{u"Q"_s, {{{}, u"new"_s}}}}); });
        };
        for (const auto& [bytes, why] : {std::pair(QByteArray("\xFF\xFE["), u"no text"_s),
                                         {QByteArray(1024 * 1024 + 1, ' '), u"larger than 1048576 bytes"_s}}) {
            WriteFile(mFile, bytes);
            QVERIFY(raisedFor(mFile).contains(why));
            QVERIFY(ReadFile(mFile) == bytes);
        }
        WriteFile(mFile, "[HKEY_LOCAL_MACHINE\\K]\n\"v\"=dword:1\n");
        QCOMPARE(ValueV(), QVariant(1));
        SetModes(0666, 0700); // who can write it could have any library loaded
        QVERIFY(ValueV().isNull() && raisedFor(mFile).contains(u"by others"_s));
        const QString pipe = Path(u"pipe"_s);
        QCOMPARE(mkfifo(QFile::encodeName(pipe), 0600), 0);
        // The last one opens, but its first bytes cannot be read.
        for (const QString& fileName : {mFolder->path(), pipe, u"/proc/self/mem"_s})
            QVERIFY(raisedFor(fileName).contains(fileName + u" cannot be read"_s));
    }

    void trustedPaths()
    {
        MakeFolder(Path(u"lib/own"_s), Readers::Owner);
        WriteFile(Path(u"lib/c.so"_s), {});
        WriteFile(Path(u"lib/own/c.so"_s), {});
        QVERIFY(QFile::link(u"lib/../lib/./c.so"_s, Path(u"link"_s)) && QFile::link(u"loop"_s, Path(u"loop"_s)));
        const auto problem = [&](const QString& name) {
            return TrustProblem(Path(name)).value_or(u"none"_s).remove(mFolder->path() + u'/');
        };
        const auto change = [&](const QString& name, mode_t mode) { chmod(QFile::encodeName(Path(name)), mode); };
        for (const QString& name : {u"lib/c.so"_s, u"link"_s, u"none/c.so"_s, u"lib/c.so/none"_s})
            QCOMPARE(problem(name), u"none"_s);
        QVERIFY(problem(u"loop"_s).contains(u"leads nowhere"_s));
        for (const auto& [name, mode] : {std::pair(u"lib/c.so"_s, 0620), {u"lib"_s, 0702}}) {
            change(name, mode_t(mode));
            QVERIFY(problem(u"link"_s).startsWith(name + u" can be written by others"_s));
            change(name, 0700);
        }
        change(u"lib"_s, 01777);
        for (const QString& name : {u"lib/c.so"_s, u"lib/none"_s})
            QVERIFY(problem(name).startsWith(name + u" lies in a folder where others"_s));
        QCOMPARE(problem(u"lib/own/c.so"_s), u"none"_s);
        for (const QString& name : {u"lib"_s, u"link"_s, u"lib/c.so"_s}) {
            if (lchown(QFile::encodeName(Path(name)), 65534, 0) != 0)
                QSKIP("cannot give files away");
            QVERIFY(problem(u"link"_s).startsWith(name + u" belongs to another user"_s));
            lchown(QFile::encodeName(Path(name)), 0, 0);
        }
    }

    void modesOfNewFiles()
    {
        const auto guard = qScopeGuard([before = umask(0)] { umask(before); });
        for (const auto& [mask, modes] :
             {std::pair(mode_t(0), u"755 755 644 755 600"_s), {mode_t(077), u"755 755 644 700 600"_s}}) {
            init();
            umask(mask);
            qputenv("KELDAR_REGISTRY", QFile::encodeName(Path(u"a/b/registry"_s)));
            AddToRegistry({{u"Q"_s, {{{}, u"new"_s}}}});
            MakeFolder(Path(u"misc/"_s), Readers::Owner);
            ReplaceFile(mFile, "people", {});
            QStringList seen;
            for (const char* name : {"/a", "/a/b", "/a/b/registry", "/misc", "/file"}) {
                struct stat status
                {
                };
                QCOMPARE(stat(QFile::encodeName(mFolder->path()) + name, &status), 0);
                seen << QString::number(status.st_mode & 07777, 8);
            }
            QCOMPARE(seen.join(u' '), modes);
        }
    }

    void filesThatMakeWay()
    {
        const QString link = Path(u"link"_s);
        const QString second = Path(u"second"_s);
        QVERIFY(QFile::link(second, link) && QFile::link(mFile, second));
        for (const char* text : {"made where the links lead", "replaced there"}) {
            ReplaceFile(link, text, {.followsLink = true});
            QVERIFY(QFileInfo(link).isSymLink() && QFileInfo(second).isSymLink() && ReadFile(mFile) == text);
        }
        ReplaceFile(link, "3", {.synced = false});
        QVERIFY(!QFileInfo(link).isSymLink() && ReadFile(mFile) == "replaced there" && ReadFile(link) == "3");
        QVERIFY(!ReadWholeFile(Path(u"none"_s), 9) && !ReadWholeFile(mFile + u"/none"_s, 9));

        const auto refused = [&](const QString& name, const QString& why) {
            const QString raised = RaisedBy([&] { ReplaceFile(Path(name), "4", {.followsLink = true}); }) +
                                   RaisedBy([&] { ReadWholeFile(Path(name), 9); });
            QVERIFY2(raised.count(Path(name)) == 2 && raised.count(why) == 2, qPrintable(raised));
        };
        QCOMPARE(mkfifo(QFile::encodeName(Path(u"pipe"_s)), 0600), 0);
        QVERIFY(QFile::link(Path(u"pipe"_s), Path(u"to-pipe"_s)) && QDir(mFolder->path()).mkdir(u"folder"_s));
        const QStringList before = EntriesOf(mFolder->path());
        for (const QString& name : {u"pipe"_s, u"to-pipe"_s, u"folder"_s})
            refused(name, u"not a file"_s);
        SetModes(0, 0555);
        if (!RunAsOrdinaryUser([&] { refused(u"file"_s, u"Permission denied"_s); }))
            QSKIP("cannot become an ordinary user");
        QCOMPARE(EntriesOf(mFolder->path()), before);
    }

    void folders()
    {
        const QString data = Path(u"data/Quorvanta/KELDAR+/"_s);
        const QString papers = Path(u"papers/Quorvanta/KELDAR+/"_s);
        qputenv("KELDAR_COMMON_APPDATA", QFile::encodeName(Path(u"data/"_s)));
        qputenv("KELDAR_COMMON_DOCUMENTS", QFile::encodeName(Path(u"papers"_s)));
        QCOMPARE(GetProductAppDataFolder(), u"/Quorvanta/KELDAR+/"_s);
        WriteFile(mFile, "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders]\n"
                         "\"Common AppData\"=\"/none/data\"\r\n\"common documents\"=\"/none/papers\"\r\n");
        QCOMPARE(GetDatabaseFolder(), u"/none/data/Quorvanta/KELDAR+/Database/"_s);
        QCOMPARE(GetProductDocumentsFolder(), u"/none/papers/Quorvanta/KELDAR+/"_s);
        QVERIFY(QDir().mkpath(data) && QDir().mkpath(papers));
        QCOMPARE(GetMiscFolder(), data + u"Misc/"_s);
        QCOMPARE(GetConfigsFolder({}), papers + u"Configs/"_s);
        QCOMPARE(GetConfigsFolder(u"North"_s), papers + u"North/Configs/"_s);
        QCOMPARE(GetConnectionString(),
                 u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="_s + data + u"Database/NewDB.mdb"_s);
        qunsetenv("KELDAR_COMMON_APPDATA");
        qunsetenv("KELDAR_COMMON_DOCUMENTS");
        QCOMPARE(GetSpecialFolderPath(35) + GetSpecialFolderPath(46) + GetSpecialFolderPath(0), u"/var/lib/srv"_s);
    }
};

QTEST_GUILESS_MAIN(PlatformTest)
#include "PlatformTest.moc"
