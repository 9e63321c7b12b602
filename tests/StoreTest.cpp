// Where the data lies, what the registry answers, and the catalog of commands.
#include "store/CommandCatalog.h"
#include "store/KELDARPlusFilesAndFolders.h"
#include "support/Cases.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace qor;

namespace {

QVariant ValueV(const QString& key = u"SOFTWARE\\K"_s, const QVariant& defaultValue = {})
{
    return RegGetValue(RegistryRoot::LocalMachine, key, u"v"_s, defaultValue);
}

} // namespace

class StoreTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> mFolder;

    QString Path(const QString& name) const { return mFolder->filePath(name); }
    void WriteRegistry(const QString& key, const QString& lines)
    {
        QFile file(Path(u"registry.reg"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write((u"[HKEY_LOCAL_MACHINE\\"_s + key + u"]\r\n"_s + lines).toUtf8());
    }

private Q_SLOTS:
    void init()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        qputenv("KELDAR_COMMON_APPDATA", QFile::encodeName(Path(u"data/"_s)));
        qputenv("KELDAR_COMMON_DOCUMENTS", QFile::encodeName(Path(u"papers"_s)));
        qputenv("KELDAR_REGISTRY", QFile::encodeName(Path(u"registry.reg"_s)));
    }

    void foldersOfTheShell()
    {
        const QString data = Path(u"data/Quorvanta/KELDAR+/"_s);
        const QString papers = Path(u"papers/Quorvanta/KELDAR+/"_s);
        QVERIFY(QDir().mkpath(data) && QDir().mkpath(papers));
        QVERIFY(GetSpecialFolderPath(0).isEmpty());
        QCOMPARE(GetMiscFolder(), data + u"Misc/"_s);
        QCOMPARE(GetConfigsFolder({}), papers + u"Configs/"_s);
        QCOMPARE(GetConfigsFolder(u"North"_s), papers + u"North/Configs/"_s);
        QCOMPARE(GetConnectionString(),
                 u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="_s + data + u"Database/NewDB.mdb"_s);
        qunsetenv("KELDAR_COMMON_APPDATA");
        qunsetenv("KELDAR_COMMON_DOCUMENTS");
        QCOMPARE(GetSpecialFolderPath(35), u"/var/lib"_s);
        QCOMPARE(GetSpecialFolderPath(46), u"/srv"_s);
    }

    void foldersOfTheRegistry()
    {
        QCOMPARE(GetProductAppDataFolder(), u"/Quorvanta/KELDAR+/"_s);
        WriteRegistry(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders"_s,
                      u"\"Common AppData\"=\"/none/data\"\r\n\"common documents\"=\"/none/papers\"\r\n"_s);
        QCOMPARE(GetDatabaseFolder(), u"/none/data/Quorvanta/KELDAR+/Database/"_s);
        QCOMPARE(GetProductDocumentsFolder(), u"/none/papers/Quorvanta/KELDAR+/"_s);
        QVERIFY(QDir().mkpath(Path(u"data/Quorvanta/KELDAR+"_s)));
        QCOMPARE(GetProductAppDataFolder(), Path(u"data/Quorvanta/KELDAR+/"_s));
    }

    void registryValues_data()
    {
        QTest::addColumn<QString>("data");
        QTest::addColumn<QVariant>("expected");
        QTest::newRow("text") << u"\"\u00e4%X%\""_s << QVariant(u"\u00e4%X%"_s);
        QTest::newRow("text to expand") << u"hex(2):25,00,25,00,00,00"_s << QVariant(u"%%"_s);
        QTest::newRow("bytes") << u"hex:00,ff"_s << QVariant(QByteArray("\0\xFF", 2));
        QTest::newRow("number") << u"dword:ffffffff"_s << QVariant(-1);
        QTest::newRow("texts") << u"hex(7):61,00,00,00,62,00,00,00,00,00"_s << QVariant(u"a\0b"_s);
        QTest::newRow("one zero only") << u"hex(7):00,00"_s << QVariant(u""_s);
    }
    void registryValues()
    {
        QFETCH(QString, data);
        WriteRegistry(u"SOFTWARE\\K"_s, u"\"V\"="_s + data);
        QTEST(ValueV(), "expected");
        QCOMPARE(ValueV(u"SOFTWARE"_s, 5), QVariant(5));
        QVERIFY(RegGetValue(RegistryRoot::ClassesRoot, u"SOFTWARE\\K"_s, u"V"_s).isNull());
    }

    void registryValueOfAnotherType()
    {
        WriteRegistry(u"SOFTWARE\\K"_s, u"\"V\"=hex(b):1"_s);
        QCOMPARE(RaisedBy([] { ValueV(); }), u"1001: Unsupported value type"_s);
    }

    // The engine takes values in the order in which the placeholders stand, so each stands once, in order.
    void storedTextsAreTranslated()
    {
        for (const StoredCommand& stored : CommandCatalog()) {
            const EngineStatement statement = TranslateStoredSql(QString::fromLatin1(stored.sql));
            QString text = statement.text;
            for (int i = 0; i < statement.parameters.size(); ++i) {
                const qsizetype at = text.indexOf(u'?');
                QVERIFY2(at > 0 && text.sliced(at, 2) == u'?' + QString::number(i + 1), stored.name);
                text.replace(at, 2, statement.parameters[i]);
            }
            QCOMPARE(text.remove(u'`'), QString::fromLatin1(stored.sql).remove(u'`'));
        }
    }
};

QTEST_GUILESS_MAIN(StoreTest)
#include "StoreTest.moc"
