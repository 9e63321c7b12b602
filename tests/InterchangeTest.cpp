// A directory's way in and out: fields on any device, the import with its report, the export. Files and dialogs are
// real ones.
#include "interchange/DelimitedReader.h"
#include "platform/ui/MsgBox.h"
#include "rules/Validation.h"
#include "service/frmDIR.h"
#include "store/KELDARPlusFilesAndFolders.h"
#include "support/BoxScript.h"
#include "support/Cases.h"
#include "support/Files.h"
#include "support/SampleDatabase.h"

#include <csignal>
#include <QBuffer>
#include <QDir>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace qor;

namespace {

/// A device that knows no size. It hands out its data byte by byte; with another size than the data has it repeats
/// them up to there and then fails.
class Stream : public QIODevice
{
public:
    Stream(QByteArray data, qint64 size) : mData(std::move(data)), mSize(size) { open(ReadOnly | Unbuffered); }
    bool isSequential() const override { return true; }

    qint64 taken = 0;

protected:
    qint64 readData(char* to, qint64 room) override
    {
        const bool fails = mSize != mData.size();
        const qint64 count = std::min({room, mSize - taken, fails ? mSize : 1});
        for (qint64 i = 0; i < count; ++i)
            to[i] = mData[static_cast<qsizetype>(taken++ % mData.size())];
        return count > 0 || !fails ? count : -1;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    QByteArray mData;
    qint64 mSize;
};

/// As on a full disk, no file of this process grows beyond the size. Returns the old limit.
rlim_t LimitFileSize(rlim_t size)
{
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlim_t old = std::exchange(limit.rlim_cur, size);
    setrlimit(RLIMIT_FSIZE, &limit);
    return old;
}

/// Every field in brackets, and what ended the reading.
QString FieldsOn(QIODevice& device)
{
    QString fields;
    const QString raised = RaisedBy([&] {
        for (DelimitedReader reader(device); !reader.AtEnd();)
            fields += u'[' + reader.ReadField() + u']';
    });
    return fields + raised.section(u':', 1);
}

/// The last row, its key first.
QString LastOf(const ListItems& items)
{
    QString text = items.RowCount() == 0 ? u"none"_s : items.Key(items.RowCount() - 1);
    for (int subItem = 0; items.RowCount() > 0 && subItem <= 5; ++subItem)
        text += u' ' + items.Text(items.RowCount() - 1, subItem);
    return text;
}

/// Whatever a box says, its buttons stay in reach.
void FitsTheScreen(QMessageBox& box)
{
    const QRect frame = box.frameGeometry();
    QVERIFY2(box.screen()->availableGeometry().contains(frame), qPrintable(QDebug::toString(frame)));
    const QAbstractButton* button = box.buttons().constFirst();
    QVERIFY(button->isVisible() && box.rect().contains(QRect(button->mapTo(&box, QPoint()), button->size())));
}

const QString listHead = u"CSV File format: (LastName,FirstName,Extension)\n\nERROR IN FOLLOWING ENTRIES:\n"_s;
const QString badEntry = u"1,B,x"_s;
const ExpectedBox limit = Notice(u"Limited to 500 names in Directory list "_s);
const ExpectedBox invalidFile{u"Invalid csv file format."_s, u"Error"_s, QMessageBox::Warning};

ExpectedBox Rejects(const QStringList& entries, const QString& before = {}, const QString& after = {})
{
    QString text = before + listHead;
    for (const QString& entry : entries) {
        const QStringList fields = entry.split(u',');
        text += u"(%1) :\n%2\n"_s.arg(entry, ValidateData(fields[0], fields[1], fields[2]).remove(u'\r'));
    }
    return {text + after, u"Error"_s, QMessageBox::Warning};
}

ExpectedBox Overwrite(QMessageBox::StandardButton answer)
{
    return {u"Do you want to overwrite the directory list?"_s, u"Question"_s, QMessageBox::Question, answer};
}

} // namespace

class InterchangeTest : public QObject
{
    Q_OBJECT

private:
    SampleDatabase mSample;
    std::unique_ptr<QTemporaryDir> mFolder; // of the files and the user's settings
    std::unique_ptr<frmDIR> mForm;

    ListItems& Items() const { return mForm->LVDirectory->Items(); }
    QString Path(const QString& name) const { return QDir(mFolder->path()).filePath(name); }
    static QString ReportFile() { return GetMiscFolder() + u"DIRNodeError.txt"_s; }

    void Append(int count, const DirectoryEntry& entry)
    {
        for (int i = 0; i < count; ++i)
            Items().Insert(Items().RowCount(), EntryRow(Items().RowCount() + 1, entry));
    }
    void Run(QPushButton* button, const ExpectedFileDialog& dialog, const QList<ExpectedBox>& boxes = {})
    {
        BoxScript script;
        script.Expect(dialog);
        for (ExpectedBox box : boxes) {
            box.inspect = box.inspect ? box.inspect : FitsTheScreen;
            script.Expect(box);
            if (box.title == u"Save"_s && box.answer == QMessageBox::No)
                script.Expect(ExpectedFileDialog{u"Save"_s}); // it asks for another name
        }
        button->click();
    }
    void Import(const QByteArray& contents, const QList<ExpectedBox>& boxes)
    {
        WriteFile(Path(u"names.csv"_s), contents);
        Run(mForm->cmdOpenCSVFilename, {u"Open"_s, Path(u"names.csv"_s)}, boxes);
    }

private Q_SLOTS:
    void init()
    {
        InstallErrorBox();
        std::signal(SIGXFSZ, SIG_IGN);
        mFolder = std::make_unique<QTemporaryDir>();
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, mFolder->path());
        QDir(GetMiscFolder()).removeRecursively();
        mForm = std::make_unique<frmDIR>();
        mForm->Load();
        mForm->SetConfigID(1);
        mForm->SetPartitionID(1);
        QVERIFY(BusinessRules().LoadPromptMSGNodeNumber(*mForm));
        mForm->show();
        mForm->cmdApply->setEnabled(false);
    }
    void cleanup()
    {
        QVERIFY(!QGuiApplication::overrideCursor());
        QVERIFY(mForm->StatusBar1->isHidden() && mForm->Frame1->isEnabled());
        QCOMPARE(mForm->StatusBar1->PanelText(), QString());
    }

    // Bytes, and the fields.
    void fields_data()
    {
        const QString tooLong = u" A field is longer than 8192 bytes. Check that the file is a directory list."_s;
        const QString longest(DelimitedReader::highestFieldLength, u'x');
        const QString zoe = u"[Zo\u00EB][\U0001F600]"_s;
        const auto hex = [](const char* bytes) { return QString::fromLatin1(QByteArray::fromHex(bytes)); };
        AddCases(
            {{"line ends", u"a,b\r\nc,d\re,f\ng"_s, u"[a][b][c][d][e][f][g]"_s},
             {"blank lines", u"a\r\n\r\n\n\rb\r\n\r\n"_s, u"[a][][][][b][]"_s},
             {"blanks and tabs around", u"  \ta b\t ,\t, c \r\n"_s, u"[a b][][c]"_s},
             {"quoted", u"\"a,b\r\nc\" , \" d \"\r\n\"\",\"\"\"\",\"e\"\"f\""_s, u"[a,b\r\nc][ d ][][\"][e\"f]"_s},
             {"quotes inside", u"a\"b,\"c\"d\""_s, u"[a\"b][cd\"]"_s},
             {"unterminated", u"a,\"b\"\",c\r\n"_s, u"[a] The file ends inside a quoted field."_s},
             {"end-of-file character", u"\"a\x1A,b\",c\r\n\x1A,d"_s, u"[a\x1A,b][c]"_s},
             {"nothing but a mark", u"\u00EF\u00BB\u00BF"_s, {}},
             {"UTF-8 mark", hex("EFBBBF 5A6FC3AB 2C F09F9880"), zoe},
             {"UTF-16 LE", hex("FFFE 5A006F00EB00 2C00 3DD800DE"), zoe},
             {"UTF-16 BE", hex("FEFF 005A006F00EB 002C D83DDE00"), zoe},
             {"Windows-1252", hex("5AEB 2C 809F 2C 5A6FC3AB 2C C3"), u"[Z\u00EB][\u20AC\u0178][Zo\u00EB][\u00C3]"_s},
             {"across a chunk", QString(65534, u',') + u"\"a\"\"b\""_s, u"[]"_s.repeated(65534) + u"[a\"b]"_s},
             {"longest", longest + u",\""_s + longest + u'"', u"[%1][%1]"_s.arg(longest)},
             {"too long", u"a,"_s + longest + u"x,c"_s, u"[a]"_s + tooLong}});
    }
    void fields()
    {
        QFETCH(QString, given);
        QByteArray bytes = given.toLatin1();
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QTEST(FieldsOn(buffer), "expected");
        Stream single(bytes, bytes.size());
        QTEST(FieldsOn(single), "expected");
    }

    // What a device without an end repeats, or one that fails holds; the last row.
    void devices_data()
    {
        AddCases({{"letters", u"A"_s, u"none"_s},
                  {"blanks", u" "_s, u"none"_s},
                  {"quotes", u"\""_s, u"none"_s},
                  {"entries", u"A,B,1\n"_s, u"500a 500 A B 1 162 1"_s},
                  {"bad entries", u"A,B,1\n1,B,1\n"_s, u"21a 21 A B 1 75 1"_s},
                  {"failure", u"Adams,Anne,101\nBaker,Ben,102\nClark,..."_s, u"2a 2 Baker Ben 102 27 1"_s}});
    }
    void devices()
    {
        QFETCH(QString, given);
        BusinessRules rules;
        Stream device(given.toLatin1(), given.size() > 35 ? 35 : 8 << 20);
        QCOMPARE(ReadDirectory(*mForm, rules, device).Broken, !given.endsWith(u'\n'));
        QTEST(LastOf(Items()), "expected");
        QVERIFY(device.taken <= 1 << 20);
    }

    // Rows that are there, the file, the boxes; the last row.
    void imports_data()
    {
        QTest::addColumn<int>("before");
        QTest::addColumn<QByteArray>("given");
        QTest::addColumn<QList<ExpectedBox>>("boxes");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, int before, const QByteArray& given, const QList<ExpectedBox>& boxes,
                            const QString& expected) { QTest::newRow(name) << before << given << boxes << expected; };
        const QByteArray adams("Adams,Anne,101\r\n");
        const auto lines = [](const QString& entry, int count) { return (entry.toLatin1() + "\r\n").repeated(count); };
        const QString longEntry = QString(400, u'W') + u",2,1"_s;
        const QString wideEntry = QString(100, u'W') + u",2,1"_s;
        const QString one = u"1a 1 Adams Anne 101 13 1"_s;
        const QString full = u"500a 500 Adams Anne 101 162 1"_s;
        const ExpectedBox bad20 = Rejects(QStringList(20, badEntry));
        row("empty", 0, "", {}, u"none"_s);
        row("header line", 0, "LastName,FirstName,Extension\r\n" + adams,
            {Rejects({u"LastName,FirstName,Extension"_s})}, one);
        row("faults", 0, "\"Smith, Jr\",M\xFCller,1\r\n, ,1a\r\n" + adams,
            {{listHead +
                  u"(Smith, Jr,M\u00FCller,1) :\n     Invalid LastName\n     Invalid FirstName\n(,,1a) :\n     No "
                  "Data in LastName\n     No Data in FirstName\n     Invalid Extension\n"_s,
              u"Error"_s, QMessageBox::Warning}},
            one);
        row("long and short lines", 0, "A,B,1,C\r\nD,2\r\nE\r\n\"F\"\r\n3", {}, u"3a 3 E F 3 41 1"_s);
        row("ends inside an entry", 0, adams + "Baker,Ben\r\n", {invalidFile}, one);
        row("trailing blank line", 0, adams + "\r\n", {invalidFile}, one);
        row("ends inside after rejects", 0, "1,B,x," + adams + "B", {Rejects({badEntry}, invalidFile.text + u"\n\n"_s)},
            one);
        row("few wide rejects", 0, lines(wideEntry, 3), {Rejects(QStringList(3, wideEntry))}, u"none"_s);
        row("30 long rejects", 0, lines(longEntry, 30),
            {Rejects(QStringList(21, longEntry), {}, u"Too many errors in this CSV file.\n\n"_s)}, u"none"_s);
        row("500 entries", 0, adams.repeated(500), {}, full);
        row("600 entries", 0, adams.repeated(600), {limit}, full);
        row("limit and rejects", 0, lines(badEntry, 20) + adams.repeated(500) + "1,B,x", {limit, bad20}, full);
        row("beyond the limit", 501, adams, {Overwrite(QMessageBox::No)}, u"502a 502 Adams Anne 101 13 1"_s);
        row("append", 499, lines(badEntry, 1) + adams + adams, {Overwrite(QMessageBox::No), limit, Rejects({badEntry})},
            u"500a 500 Adams Anne 101 13 1"_s);
        row("overwrite", 2, adams, {Overwrite(QMessageBox::Yes)}, one);
        row("call off", 1, adams, {Overwrite(QMessageBox::Cancel)}, u"1a 1 Old Row 1 5 2"_s);
    }
    void imports()
    {
        QFETCH(QList<ExpectedBox>, boxes);
        QFETCH(int, before);
        QFETCH(QByteArray, given);
        QFile older(ReportFile());
        if (before == 0) { // else there is not even a folder
            QVERIFY(QDir().mkpath(GetMiscFolder()));
            WriteFile(ReportFile(), "old");
            QVERIFY(older.open(QIODevice::ReadOnly));
        }
        Append(before, {u"Old"_s, u"Row"_s, u"1"_s, u"5"_s, u"2"_s});
        Import(given, boxes);
        QTEST(LastOf(Items()), "expected");
        QCOMPARE(mForm->txtCSVFilename->text(), Path(u"names.csv"_s));
        QCOMPARE(mForm->cmdApply->isEnabled(), boxes.isEmpty() || boxes.first().answer != QMessageBox::Cancel);
        QString record = before == 0 ? u"old"_s : QString();
        if (!boxes.isEmpty() && boxes.last().text.startsWith(listHead))
            record = QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat) +
                     u"\n============================\n"_s + boxes.last().text + u"\n\n"_s;
        QCOMPARE(ReadFile(ReportFile()), record.replace(u'\n', u"\r\n"_s).toUtf8());
        QVERIFY(before > 0 || older.readAll() == "old"); // replaced, not written over
    }

    // What becomes of the file after it was chosen.
    void unreadableFiles_data()
    {
        AddCases({{"gone", {}, {}}, {"folder", {}, {}}, {"pipe", {}, {}}, {"locked", {}, {}}});
    }
    void unreadableFiles()
    {
        const QLatin1String becomes(QTest::currentDataTag());
        if (becomes == "locked"_L1 && geteuid() == 0)
            QSKIP("every file can be read here");
        const QString name = Path(u"names.txt"_s);
        WriteFile(name, "Adams,Anne,101\r\n");
        ExpectedBox notice = Notice(u"Please select a csv file"_s);
        notice.inspect = [&](QMessageBox&) {
            QVERIFY(becomes == "locked"_L1 ? QFile::setPermissions(name, {}) : QFile::remove(name));
            QVERIFY(becomes != "folder"_L1 || QDir().mkdir(name));
            QVERIFY(becomes != "pipe"_L1 || mkfifo(QFile::encodeName(name).constData(), 0600) == 0);
        };
        Run(mForm->cmdOpenCSVFilename, {u"Open"_s, name}, {notice, invalidFile});
        QVERIFY(Items().RowCount() == 0 && mForm->cmdApply->isEnabled());
    }

    void reportThatCannotBeWritten()
    {
        WriteFile(GetMiscFolder().chopped(1), {}); // so that no folder can be made
        Import("1,B,x\r\n", {Rejects({badEntry})});
        QVERIFY(QFile::remove(GetMiscFolder().chopped(1)) && QDir().mkpath(GetMiscFolder()));
        const rlim_t old = LimitFileSize(10);
        Import("1,B,x\r\n", {Rejects({badEntry})});
        LimitFileSize(old);
        QCOMPARE(QDir(GetMiscFolder()).entryList(QDir::Files), QStringList());
    }

    void thereAndBack()
    {
        for (const QString& entry :
             u"Evans|Eve|9,|Ben|1,Clark||1,Davies|Ed|x,Fox|Fay|,M\u00FC\"l ;|D| 1e2,Adams|Anne|101"_s.split(u','))
            Append(1, {entry.section(u'|', 0, 0), entry.section(u'|', 1, 1), entry.section(u'|', 2), u"5"_s, u"2"_s});
        const QString name = Path(u"names.csv"_s);
        Run(mForm->cmdDirSaveList, {u"Save"_s, name},
            {{u"Error in entry. Invalid entry wouldn't be saved to the file."_s, u"ERROR"_s, QMessageBox::Warning}});
        const QByteArray written(
            "\"Evans\",\"Eve\",\"9\"\r\n\"M\xC3\xBC\"\"l ;\",\"D\",\" 1e2\"\r\n\"Adams\",\"Anne\",\"101\"\r\n");
        QCOMPARE(ReadFile(name), written);
        QString red;
        for (int cell = 0; cell < 7 * 6; ++cell)
            red += Items().ForeColor(cell / 6, cell % 6) == invalidRowColour ? u'r' : u'-';
        QCOMPARE(red, u"------"_s + u"-rrrr-"_s.repeated(4) + u"------"_s.repeated(2));
        QVERIFY(!mForm->cmdApply->isEnabled());

        mForm->cmdDirEdit->click();
        Import(written, {Overwrite(QMessageBox::Yes), Rejects({u"M\u00FC\"l ;,D, 1e2"_s})});
        QVERIFY(!mForm->InEditMode() && mForm->cmdDirSaveList->isEnabled());
        QCOMPARE(Items().Text(0, 1), u"Evans"_s);
        QCOMPARE(LastOf(Items()), u"2a 2 Adams Anne 101 27 1"_s);
    }

    // What is typed, the answer to the question that follows and the size that the disk still takes; the files that
    // are there then, with * if they were replaced.
    void saves_data()
    {
        AddCases({{"without ending", u"other"_s, u"names.csv,other.csv,text.txt.csv"_s},
                  {"upper case", u"other.CSV"_s, u"names.csv,other.CSV,text.txt.csv"_s},
                  {"other ending", u"other.txt"_s, u"names.csv,other.txt.csv,text.txt.csv"_s},
                  {"replaced", u"names Yes"_s, u"names.csv*,text.txt.csv"_s},
                  {"kept", u"names No"_s, u"names.csv,text.txt.csv"_s},
                  {"both endings, replaced", u"text.txt Yes"_s, u"names.csv,text.txt.csv*"_s},
                  {"both endings, kept", u"text.txt No"_s, u"names.csv,text.txt.csv"_s},
                  {"nowhere to write", u"/proc/names No 9999"_s, u"names.csv,text.txt.csv"_s},
                  {"disk full at the end", u"names Yes 100"_s, u"names.csv,text.txt.csv"_s},
                  {"disk full on the way", u"names Yes 5000"_s, u"names.csv,text.txt.csv"_s}});
    }
    void saves()
    {
        QFETCH(QString, given);
        const QString name = given.section(u' ', 0, 0);
        const auto answer = given.contains(u"Yes") ? QMessageBox::Yes : QMessageBox::No;
        const QString size = given.section(u' ', 2);
        Append(size == u"5000"_s ? 500 : 10, {QString(40, u'A'), u"Anne"_s, u"1"_s, u"5"_s, u"1"_s});
        const QStringList older{u"names.csv"_s, u"text.txt.csv"_s};
        for (const QString& file : older)
            WriteFile(Path(file), "old");
        const QString question = u" already exists.\nDo you want to replace it?"_s;
        QList<ExpectedBox> boxes;
        if (name == u"names"_s)
            boxes = {{u"names.csv"_s + question, u"Save"_s, QMessageBox::Warning, answer}};
        else if (name == u"text.txt"_s)
            boxes = {{Path(u"text.txt.csv"_s) + question, u"Confirmation"_s, QMessageBox::Question, answer}};
        if (!size.isEmpty())
            boxes << ExpectedBox{u"ERROR in saving entries... \nDESCRIPTION:%1 cannot be written: *. Choose another "
                                 "folder or free some space.\nLocation: [cmdDirSaveList]"_s.arg(Path(name) + u".csv"_s),
                                 u"ERROR"_s, QMessageBox::Warning};
        const rlim_t old = LimitFileSize(size.isEmpty() ? RLIM_INFINITY : size.toUInt());
        Run(mForm->cmdDirSaveList, {u"Save"_s, Path(name)}, boxes);
        LimitFileSize(old);
        QStringList files = QDir(mFolder->path()).entryList(QDir::Files);
        for (QString& file : files)
            file += older.contains(file) && ReadFile(Path(file)) != "old" ? u"*"_s : QString();
        QTEST(files.join(u','), "expected");
    }

    // The saved folder and the form's file; the folder in which the dialogs start.
    void startFolders_data()
    {
        AddCases({{"setting", u"a|b/x.csv"_s, u"a"_s},
                  {"file", u"|b/x.csv"_s, u"b"_s},
                  {"neither", u"|"_s, GetConfigsFolder({}).chopped(1)},
                  {"setting of no folder", u"gone|b/x.csv"_s, QDir::homePath()}});
    }
    void startFolders()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        const QString folder = Path(expected); // an absolute one stays as it is
        QVERIFY(QDir().mkpath(folder) && QDir().mkpath(Path(u"Quorvanta"_s)));
        const QString saved = given.section(u'|', 0, 0);
        if (!saved.isEmpty())
            WriteFile(Path(u"Quorvanta/KELDAR+.ini"_s), "[DialogDir]\nDialogDir=" + Path(saved).toUtf8() + '\n');
        if (given.contains(u'x'))
            mForm->txtCSVFilename->setText(Path(given.section(u'|', 1)));
        Run(mForm->cmdDirSaveList, {u"Save"_s, {}, folder});
        QVERIFY(!mForm->cmdApply->isEnabled());
        Run(mForm->cmdOpenCSVFilename, {u"Open"_s, {}, folder});
        QVERIFY(mForm->cmdApply->isEnabled()); // though nothing was read
    }
};

QTEST_MAIN(InterchangeTest)
#include "InterchangeTest.moc"
