// Where the data lies, what the registry answers, and the catalog of commands.
#include "platform/runtime/RuntimeError.h"
#include "store/CommandCatalog.h"
#include "store/KELDARPlusFilesAndFolders.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace qor;

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
    void init();
    void foldersOfTheShell();
    void foldersOfTheRegistry();
    void registryValues_data();
    void registryValues();
    void registryValueOfAnotherType();
    void catalog_data();
    void catalog();
    void catalogKeepsTheStoredTexts();
};

void StoreTest::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    qputenv("KELDAR_COMMON_APPDATA", QFile::encodeName(Path(u"data/"_s)));
    qputenv("KELDAR_COMMON_DOCUMENTS", QFile::encodeName(Path(u"papers"_s)));
    qputenv("KELDAR_REGISTRY", QFile::encodeName(Path(u"registry.reg"_s)));
}

void StoreTest::foldersOfTheShell()
{
    QVERIFY(QDir().mkpath(Path(u"data/Quorvanta/KELDAR+"_s)) &&
            QDir().mkpath(Path(u"papers/Quorvanta/KELDAR+"_s)));
    QCOMPARE(GetSpecialFolderPath(35), Path(u"data"_s));
    QCOMPARE(GetSpecialFolderPath(46), Path(u"papers"_s));
    QVERIFY(GetSpecialFolderPath(0).isEmpty());
    QCOMPARE(GetDatabaseFolder(), Path(u"data/Quorvanta/KELDAR+/Database/"_s));
    QCOMPARE(GetMiscFolder(), Path(u"data/Quorvanta/KELDAR+/Misc/"_s));
    QCOMPARE(GetConfigsFolder({}), Path(u"papers/Quorvanta/KELDAR+/Configs/"_s));
    QCOMPARE(GetConfigsFolder(u"North"_s), Path(u"papers/Quorvanta/KELDAR+/North/Configs/"_s));
    QCOMPARE(GetConnectionString(), u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="_s +
                                        Path(u"data/Quorvanta/KELDAR+/Database/NewDB.mdb"_s));

    qunsetenv("KELDAR_COMMON_APPDATA");
    qunsetenv("KELDAR_COMMON_DOCUMENTS");
    QCOMPARE(GetSpecialFolderPath(35), u"/var/lib"_s);
    QCOMPARE(GetSpecialFolderPath(46), u"/srv"_s);
    qputenv("KELDAR_COMMON_APPDATA", "/");
    QCOMPARE(QDir::cleanPath(GetSpecialFolderPath(35) + u"/Quorvanta"_s), u"/Quorvanta"_s);
}

void StoreTest::foldersOfTheRegistry()
{
    QCOMPARE(GetProductAppDataFolder(), u"/Quorvanta/KELDAR+/"_s);
    WriteRegistry(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders"_s,
                  u"\"Common AppData\"=\"/none/data\"\r\n\"common documents\"=\"/none/papers\"\r\n"_s);
    QCOMPARE(GetProductAppDataFolder(), u"/none/data/Quorvanta/KELDAR+/"_s);
    QCOMPARE(GetConfigsFolder(u"a b"_s), u"/none/papers/Quorvanta/KELDAR+/a b/Configs/"_s);
    QVERIFY(QDir().mkpath(Path(u"data/Quorvanta/KELDAR+"_s)));
    QCOMPARE(GetProductAppDataFolder(), Path(u"data/Quorvanta/KELDAR+/"_s));
    QCOMPARE(GetProductDocumentsFolder(), u"/none/papers/Quorvanta/KELDAR+/"_s);
}

void StoreTest::registryValues_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QVariant>("value");
    const QString inner = u"a\0b"_s;
    QTest::newRow("text") << u"\"\u00e4%X%\""_s << QVariant(u"\u00e4%X%"_s);
    QTest::newRow("empty text") << u"\"\""_s << QVariant(u""_s);
    QTest::newRow("text without its zero") << u"hex(1):"_s << QVariant(u""_s);
    QTest::newRow("text to expand") << u"hex(2):25,00,41,00,25,00,00,00"_s << QVariant(u"%A%"_s);
    QTest::newRow("bytes") << u"hex:00,ff"_s << QVariant(QByteArray("\0\xFF", 2));
    QTest::newRow("number") << u"dword:ffffffff"_s << QVariant(-1);
    QTest::newRow("number of two bytes") << u"hex(4):02,01"_s << QVariant(258);
    QTest::newRow("number of six bytes") << u"hex(4):01,00,00,00,ff,ff"_s << QVariant(1);
    QTest::newRow("texts") << u"hex(7):61,00,00,00,62,00,00,00,00,00"_s << QVariant(inner);
    QTest::newRow("one zero only") << u"hex(7):00,00"_s << QVariant(u""_s);
    QTest::newRow("damaged") << u"hex(7):x"_s << QVariant(u"default"_s);
}

void StoreTest::registryValues()
{
    QFETCH(QString, data);
    QFETCH(QVariant, value);
    WriteRegistry(u"SOFTWARE\\K"_s, u"\"V\"="_s + data);
    const auto get = [](const char* key, const char* name, const QVariant& defaultValue = {}) {
        return RegGetValue(RegistryRoot::LocalMachine, QString::fromLatin1(key), QString::fromLatin1(name),
                           defaultValue);
    };
    QCOMPARE(get("software\\k", "v", u"default"_s), value);
    QCOMPARE(get("SOFTWARE\\K", "W", 5), QVariant(5));
    QCOMPARE(get("SOFTWARE", "V"), QVariant());
    QCOMPARE(RegGetValue(RegistryRoot::ClassesRoot, u"SOFTWARE\\K"_s, u"V"_s), QVariant());
}

void StoreTest::registryValueOfAnotherType()
{
    for (const QString& data : {u"hex(0):"_s, u"hex(5):1"_s, u"hex(b):1"_s, u"hex(ffffffff):1"_s}) {
        WriteRegistry(u"K"_s, u"\"V\"="_s + data);
        try {
            RegGetValue(RegistryRoot::LocalMachine, u"K"_s, u"V"_s, 5);
            QFAIL("no error");
        } catch (const RuntimeError& error) {
            QCOMPARE(static_cast<int>(error.Number()), 1001);
            QCOMPARE(error.Description(), u"Unsupported value type"_s);
        }
    }
}

void StoreTest::catalog_data()
{
    QTest::addColumn<CommandId>("id");
    QTest::addColumn<bool>("hasRows");
    QTest::addColumn<QString>("parameters");
    int position = 0;
    const auto row = [&](const char* name, bool hasRows, const char* parameters) {
        QTest::newRow(name) << static_cast<CommandId>(position++) << hasRows
                            << QString::fromLatin1(parameters);
    };
    row("Get_Specific_Node_Type_Max", true, "ConfigID PartID NodeTypeID");
    row("Get_All_DIR_Nodes", true, "ConfigID PartID NodeTypeID");
    row("Get_DIR_Node", true, "ConfigID PartID NodeNumber NodeTypeID");
    row("Get_DIR_DetailsNode", true, "ConfigID PartID NodeMasterID");
    row("Get_All_Existing_MSG_NodeNumber", true, "ConfigID PartID");
    row("Delete_DIR_DetailsNode", false, "ConfigID PartID NodeMasterID");
    row("Update_DIR_Node", false,
        "NodeDescription UsePasswords AccessCode StartingPromptNumber ConfigID PartID NodeNumber");
    row("Update_Node_General_Pool", false, "Description DateModified ConfigID PartID NodeTypeID NodeNumber");
    row("Add_Detail_DIR", false,
        "ConfigID PartID SequenceNo NodeMasterID FirstName LastName Extension NamePrompt Password");
    row("Duplicate_MSG_Node", false, "DesNodeNumber KELFilename NodeDescription ConfigID PartID NodeNumber");
    row("Get_Description", true, "ConfigID PartID NodeTypeID NodeNumber");
    row("Duplicate_Node_In_General_Pool", false,
        "DesNodeNumber NodeDescription DateModified ConfigID PartID NodeNumber NodeTypeID");
}

void StoreTest::catalog()
{
    QFETCH(CommandId, id);
    QFETCH(bool, hasRows);
    QFETCH(QString, parameters);
    const StoredCommand& stored = CatalogEntry(id);
    QCOMPARE(stored.name, QTest::currentDataTag());
    QCOMPARE(QByteArray(stored.recordset), hasRows ? QByteArray("rs") + stored.name : QByteArray());

    const EngineStatement statement = TranslateStoredSql(QString::fromLatin1(stored.sql));
    QStringList names = parameters.split(u' ');
    QCOMPARE(statement.parameters, names.replaceInStrings(QRegularExpression(u"^"_s), u"Given_"_s));
    // Put back in place of the placeholders, the names give the stored text, its back-quotes apart.
    QString back = statement.text;
    for (int i = static_cast<int>(names.size()); i > 0; --i)
        back.replace(u'?' + QString::number(i), names[i - 1]);
    QCOMPARE(back.remove(u'`'), QString::fromLatin1(stored.sql).remove(u'`'));
    QCOMPARE(statement.text.count(u"`Password`"_s), QByteArray(stored.sql).count("`Password`"));
}

void StoreTest::catalogKeepsTheStoredTexts()
{
    QCOMPARE(CommandCatalog().size(), std::size_t(12));
    QVERIFY(
        QByteArray(CatalogEntry(CommandId::Get_Specific_Node_Type_Max).sql).endsWith("`Given_NodeTypeID` "));
    QCOMPARE(QByteArray(CatalogEntry(CommandId::Update_Node_General_Pool).sql).count("\r\n"), 6);
    QCOMPARE(TranslateStoredSql(u"a=`Given_X` OR b=Given_X OR c=Given_Y OR Not_Given_X=`n`"_s).text,
             u"a=?1 OR b=?1 OR c=?2 OR Not_Given_X=`n`"_s);
}

QTEST_GUILESS_MAIN(StoreTest)
#include "StoreTest.moc"
